#include "siblings/basekit/services.h"

#include "siblings/basekit/format/version_record.h"
#include "core/contracts/boundary_call.h"
#include "siblings/common/product.h"
#include "infra/runtime/exceptions.h"

// The start of this module in memory, as the linker names it.
extern "C" IMAGE_DOS_HEADER __ImageBase;

namespace smh {

namespace {

// Of the module's own version resource, which the whole product shares.
std::wstring OwnVersionNumber() {
  const auto module = reinterpret_cast<HMODULE>(&__ImageBase);
  const HRSRC resource = FindResourceW(module, MAKEINTRESOURCEW(VS_VERSION_INFO), RT_VERSION);
  if (resource == nullptr) RaiseLastOSError();
  const HGLOBAL loaded = LoadResource(module, resource);
  if (loaded == nullptr) RaiseLastOSError();
  const auto* const bytes = static_cast<const std::byte*>(LockResource(loaded));
  return VersionRecord({bytes, SizeofResource(module, resource)}).FileVersionNumber();
}

}  // namespace

HRESULT Globals::Reserved1() {
  return E_NOTIMPL;
}

HRESULT Globals::GetVendorName(BoundaryText* name) {
  return GuardedText(name, [] { return kVendorName; });
}

HRESULT Globals::GetProductName(BoundaryText* name) {
  return GuardedText(name, [] { return kProductName; });
}

HRESULT Globals::GetProductVersion(BoundaryText* version) {
  return GuardedText(version, OwnVersionNumber);
}

}  // namespace smh
