#include "guardkit/reg_access.h"

#include "infra/import_function.h"

namespace smh {

namespace {

const wchar_t* NameOrEmpty(const wchar_t* name) noexcept {
  return name == nullptr ? L"" : name;
}

}  // namespace

LSTATUS RegAccess::CreateKey(HKEY parent, const wchar_t* subKey, DWORD* disposition, HKEY* key,
                             DWORD /*reserved*/, REGSAM access, DWORD /*unused1*/, DWORD /*unused2*/,
                             DWORD /*unused3*/) {
  if (key == nullptr) return ERROR_INVALID_PARAMETER;
  *key = nullptr;
  return RegCreateKeyExW(parent, NameOrEmpty(subKey), 0, nullptr, REG_OPTION_NON_VOLATILE, access, nullptr,
                         key, disposition);
}

LSTATUS RegAccess::OpenKey(HKEY parent, const wchar_t* subKey, HKEY* key, REGSAM access, DWORD /*unused*/) {
  if (key == nullptr) return ERROR_INVALID_PARAMETER;
  *key = nullptr;
  return RegOpenKeyExW(parent, NameOrEmpty(subKey), 0, access, key);
}

HRESULT RegAccess::Reserved3() {
  return E_NOTIMPL;
}

// Systems without views do not have the function with a view either.
LSTATUS RegAccess::DeleteKey(HKEY parent, const wchar_t* subKey, REGSAM viewBits, DWORD /*unused*/) {
  if (*NameOrEmpty(subKey) == L'\0') return ERROR_INVALID_PARAMETER;
  const auto deleteInView =
      ImportFunction<decltype(&RegDeleteKeyExW)>(GetModuleHandleW(L"advapi32.dll"), "RegDeleteKeyExW");
  return deleteInView != nullptr ? deleteInView(parent, subKey, viewBits, 0) : RegDeleteKeyW(parent, subKey);
}

LSTATUS RegAccess::SetValue(HKEY key, const wchar_t* name, DWORD size, const void* data, DWORD type,
                            DWORD /*unused*/) {
  if (data == nullptr && size > 0) return ERROR_INVALID_PARAMETER;
  return RegSetValueExW(key, name, 0, type, static_cast<const BYTE*>(data), size);
}

LSTATUS RegAccess::DeleteValue(HKEY key, const wchar_t* name) {
  return RegDeleteValueW(key, name);
}

HRESULT RegAccess::Reserved7() {
  return E_NOTIMPL;
}

HRESULT RegAccess::Reserved8() {
  return E_NOTIMPL;
}

HRESULT RegAccess::Reserved9() {
  return E_NOTIMPL;
}

HRESULT RegAccess::Reserved10() {
  return E_NOTIMPL;
}

HRESULT RegAccess::Reserved11() {
  return E_NOTIMPL;
}

LSTATUS RegAccess::CloseKey(HKEY key) {
  return RegCloseKey(key);
}

}  // namespace smh
