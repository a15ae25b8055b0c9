#include "infra/registry/registry_tree.h"

#include "infra/registry/registry_values.h"
#include "infra/runtime/embedded_nul.h"
#include "infra/runtime/exceptions.h"
#include "infra/runtime/handle.h"
#include "infra/runtime/import_function.h"

namespace smh {

namespace {

// The key itself, even when it is a link.
LSTATUS OpenWithoutFollowing(HKEY parent, const std::wstring& key, REGSAM access,
                             ScopedKey& result) noexcept {
  if (HoldsNul(key)) return ERROR_INVALID_NAME;
  return RegOpenKeyExW(parent, key.c_str(), REG_OPTION_OPEN_LINK, access, result.Put());
}

bool IsLink(HKEY key) noexcept {
  DWORD type = REG_NONE;
  return RegQueryValueExW(key, L"SymbolicLinkValue", nullptr, &type, nullptr, nullptr) == ERROR_SUCCESS &&
         type == REG_LINK;
}

LSTATUS DeleteLink(HKEY key) noexcept {
  using Function = LONG(NTAPI*)(HANDLE);
  const auto deleteKey = ImportFunction<Function>(GetModuleHandleW(L"ntdll.dll"), "NtDeleteKey");
  return deleteKey != nullptr && deleteKey(key) >= 0 ? ERROR_SUCCESS : ERROR_ACCESS_DENIED;
}

// A 32-bit Windows may lack the function with the view, and has one view.
LSTATUS DeleteEmptyKey(HKEY parent, const std::wstring& key, REGSAM viewBits) noexcept {
  const auto deleteKey =
      ImportFunction<decltype(&RegDeleteKeyExW)>(GetModuleHandleW(L"advapi32.dll"), "RegDeleteKeyExW");
  return deleteKey == nullptr ? RegDeleteKeyW(parent, key.c_str())
                              : deleteKey(parent, key.c_str(), viewBits, 0);
}

constexpr REGSAM kDeleteAccess = KEY_QUERY_VALUE | KEY_ENUMERATE_SUB_KEYS | DELETE;

LSTATUS CheckBelow(HKEY parent, const std::wstring& key, REGSAM viewBits, bool mayHoldLinks, int depth) {
  if (depth > kDeepestKey) return ERROR_NOT_SUPPORTED;
  ScopedKey opened;
  const LSTATUS open = OpenWithoutFollowing(parent, key, kDeleteAccess | viewBits, opened);
  if (open == ERROR_FILE_NOT_FOUND || open == ERROR_KEY_DELETED) return ERROR_SUCCESS;
  if (open != ERROR_SUCCESS) return open;
  if (IsLink(opened.Get())) return mayHoldLinks ? ERROR_SUCCESS : ERROR_NOT_SUPPORTED;
  for (const std::wstring& name : SubKeyNames(opened.Get())) {
    const LSTATUS status = CheckBelow(opened.Get(), name, viewBits, mayHoldLinks, depth + 1);
    if (status != ERROR_SUCCESS) return status;
  }
  return ERROR_SUCCESS;
}

LSTATUS DeleteBelow(HKEY parent, const std::wstring& key, REGSAM viewBits, int depth) {
  if (depth > kDeepestKey) return ERROR_NOT_SUPPORTED;
  ScopedKey opened;
  const LSTATUS open = OpenWithoutFollowing(parent, key, kDeleteAccess | viewBits, opened);
  if (open != ERROR_SUCCESS) return open;
  if (IsLink(opened.Get())) return DeleteLink(opened.Get());
  for (const std::wstring& name : SubKeyNames(opened.Get())) {
    const LSTATUS status = DeleteBelow(opened.Get(), name, viewBits, depth + 1);
    if (status != ERROR_SUCCESS) return status;
  }
  opened.Reset();
  return DeleteEmptyKey(parent, key, viewBits);
}

}  // namespace

bool IsRegistryLink(HKEY parent, const std::wstring& key, REGSAM viewBits) noexcept {
  ScopedKey opened;
  return OpenWithoutFollowing(parent, key, KEY_QUERY_VALUE | viewBits, opened) == ERROR_SUCCESS &&
         IsLink(opened.Get());
}

LSTATUS CheckKeyTree(HKEY parent, const std::wstring& key, REGSAM viewBits) {
  try {
    return CheckBelow(parent, key, viewBits, false, 1);
  } catch (const EOSError& error) {
    return static_cast<LSTATUS>(error.Code());
  }
}

LSTATUS DeleteKeyTree(HKEY parent, const std::wstring& key, REGSAM viewBits) {
  try {
    const LSTATUS status = CheckBelow(parent, key, viewBits, true, 1);
    return status == ERROR_SUCCESS ? DeleteBelow(parent, key, viewBits, 1) : status;
  } catch (const EOSError& error) {
    return static_cast<LSTATUS>(error.Code());
  }
}

}  // namespace smh
