#include "siblings/guardkit/reg_access.h"

#include "core/contracts/boundary_call.h"
#include "siblings/guardkit/checkpoints.h"
#include "siblings/guardkit/registry_changes.h"

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
  const LSTATUS opened = RegOpenKeyExW(parent, NameOrEmpty(subKey), 0, access, key);
  if (disposition != nullptr) {
    *disposition = opened == ERROR_SUCCESS ? REG_OPENED_EXISTING_KEY : REG_CREATED_NEW_KEY;
  }
  if (opened != ERROR_FILE_NOT_FOUND) return opened;
  return GuardedStatus([&] {
    const ScopedRecording recording(*g_checkpoints);
    return CreateKeyRecorded(*recording, parent, NameOrEmpty(subKey), access, key);
  });
}

LSTATUS RegAccess::OpenKey(HKEY parent, const wchar_t* subKey, HKEY* key, REGSAM access, DWORD /*unused*/) {
  if (key == nullptr) return ERROR_INVALID_PARAMETER;
  *key = nullptr;
  return RegOpenKeyExW(parent, NameOrEmpty(subKey), 0, access, key);
}

HRESULT RegAccess::Reserved3() {
  return E_NOTIMPL;
}

LSTATUS RegAccess::DeleteKey(HKEY parent, const wchar_t* subKey, REGSAM viewBits, DWORD /*unused*/) {
  if (*NameOrEmpty(subKey) == L'\0') return ERROR_INVALID_PARAMETER;
  return GuardedStatus([&] {
    const ScopedRecording recording(*g_checkpoints);
    return DeleteKeyRecorded(*recording, parent, subKey, viewBits);
  });
}

LSTATUS RegAccess::SetValue(HKEY key, const wchar_t* name, DWORD size, const void* data, DWORD type,
                            DWORD /*unused*/) {
  if (data == nullptr && size > 0) return ERROR_INVALID_PARAMETER;
  return GuardedStatus([&] {
    const auto* const bytes = static_cast<const std::byte*>(data);
    const ScopedRecording recording(*g_checkpoints);
    return SetValueRecorded(*recording, key, NameOrEmpty(name),
                            {true, type, ByteVector(bytes, bytes + size)});
  });
}

LSTATUS RegAccess::DeleteValue(HKEY key, const wchar_t* name) {
  return GuardedStatus([&] {
    const ScopedRecording recording(*g_checkpoints);
    return DeleteValueRecorded(*recording, key, NameOrEmpty(name));
  });
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
