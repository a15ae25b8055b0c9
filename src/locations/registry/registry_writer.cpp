#include "locations/registry/registry_writer.h"

#include "core/contracts/uDllGlobals.h"
#include "infra/runtime/exceptions.h"
#include "infra/runtime/import_function.h"
#include "locations/registry/uSafeguardRegistry.h"

namespace smh {

namespace {

// The registry through the service, at an address.
class RecordedRegistry {
 public:
  explicit RecordedRegistry(const RegistryValueAddress& address) : registry_(&DLLGlobals::Safeguard()) {
    registry_.SetRootKey(address.root);
    registry_.SetAccess(address.viewBits | KEY_ALL_ACCESS);
  }
  ~RecordedRegistry() { registry_.CloseKey(); }
  RecordedRegistry(const RecordedRegistry&) = delete;
  RecordedRegistry& operator=(const RecordedRegistry&) = delete;
  TSgRegistryEx* operator->() noexcept { return &registry_; }

 private:
  TSgRegistryEx registry_;
};

// Answers what `change` answers: whether the service says that it is done.
template <typename Change>
bool RunRecorded(const RegistryValueAddress& address, const LastLook& look, Change&& change) {
  const ScopedLook last(look);
  RecordedRegistry registry(address);
  const bool isDone = change(registry);
  last.RequireKept();
  return isDone;
}

ScopedKey MakePlainKey(const RegistryValueAddress& address, bool& isNew) {
  ScopedKey key;
  DWORD disposition = 0;
  CheckStatus(RegCreateKeyExW(address.root, address.key.c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE,
                              address.viewBits | KEY_ALL_ACCESS, nullptr, key.Put(), &disposition));
  isNew = disposition == REG_CREATED_NEW_KEY;
  return key;
}

void SetPlain(HKEY key, const std::wstring& name, const RegistryData& data) {
  // The platform adds a NUL that it finds behind a text: there must be none, or other bytes get stored.
  std::vector<std::byte> padded = data.bytes;
  padded.resize(padded.size() + 2 * sizeof(wchar_t), std::byte{0xFF});
  CheckStatus(RegSetValueExW(key, name.c_str(), 0, data.type, reinterpret_cast<const BYTE*>(padded.data()),
                             static_cast<DWORD>(data.bytes.size())));
}

bool IsMissing(LSTATUS status) noexcept {
  return status == ERROR_FILE_NOT_FOUND || status == ERROR_PATH_NOT_FOUND || status == ERROR_KEY_DELETED;
}

// A 32-bit Windows may lack the function with the view, and has one view.
LSTATUS DeletePlainKey(const RegistryValueAddress& address) noexcept {
  const auto deleteKey =
      ImportFunction<decltype(&RegDeleteKeyExW)>(GetModuleHandleW(L"advapi32.dll"), "RegDeleteKeyExW");
  return deleteKey == nullptr ? RegDeleteKeyW(address.root, address.key.c_str())
                              : deleteKey(address.root, address.key.c_str(), address.viewBits, 0);
}

}  // namespace

void RegistryWriter::SetValue(const RegistryValueAddress& address, const RegistryData& data,
                              const LastLook& look) const {
  if (recorded_) {
    RunRecorded(address, look, [&](RecordedRegistry& registry) {
      registry->OpenKey(address.key, true);
      return registry->PutRaw(address.valueName, data.type, data.bytes.data(),
                              static_cast<DWORD>(data.bytes.size()));
    });
    return;
  }
  bool isNew = false;
  const ScopedKey key = MakePlainKey(address, isNew);
  RequireStill(look);
  SetPlain(key.Get(), address.valueName, data);
}

bool RegistryWriter::DeleteValue(const RegistryValueAddress& address, const LastLook& look) const {
  if (recorded_) {
    return RunRecorded(address, look, [&](RecordedRegistry& registry) {
      if (!registry->OpenKey(address.key, false)) return !registry->KeyExists(address.key);
      return !registry->ValueExists(address.valueName) || registry->DeleteValue(address.valueName);
    });
  }
  ScopedKey key;
  const LSTATUS opened =
      RegOpenKeyExW(address.root, address.key.c_str(), 0, address.viewBits | KEY_ALL_ACCESS, key.Put());
  if (IsMissing(opened)) return true;
  CheckStatus(opened);
  RequireStill(look);
  const LSTATUS deleted = RegDeleteValueW(key.Get(), address.valueName.c_str());
  if (!IsMissing(deleted)) CheckStatus(deleted);
  return true;
}

bool RegistryWriter::DeleteKey(const RegistryValueAddress& address, const LastLook& look) const {
  if (recorded_) {
    return RunRecorded(address, look, [&](RecordedRegistry& registry) {
      return registry->DeleteEmptyKey(address.key) == ERROR_SUCCESS;
    });
  }
  RequireStill(look);
  const LSTATUS deleted = DeletePlainKey(address);
  if (!IsMissing(deleted)) CheckStatus(deleted);
  return true;
}

void MakePiece(const KeptPiece& piece) {
  bool isNew = false;
  const ScopedKey key = MakePlainKey(piece.address, isNew);
  try {
    if (piece.data) SetPlain(key.Get(), piece.address.valueName, *piece.data);
  } catch (...) {
    // A key without its data would be another one, which nobody takes for what was deleted.
    if (isNew) DeletePlainKey(piece.address);
    throw;
  }
  if (!isNew || piece.rights.empty()) return;
  std::vector<std::byte> rights = piece.rights;
  RegSetKeySecurity(key.Get(), DACL_SECURITY_INFORMATION, rights.data());
}

}  // namespace smh
