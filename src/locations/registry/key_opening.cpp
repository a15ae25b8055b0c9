#include "locations/registry/key_opening.h"

#include "infra/registry/registry_values.h"
#include "infra/runtime/exceptions.h"
#include "infra/runtime/text.h"

namespace smh {

bool IsMissingKey(DWORD error) noexcept {
  return error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND || error == ERROR_KEY_DELETED;
}

bool MayOpenLater(DWORD error) noexcept {
  return !IsMissingKey(error) && error != ERROR_ACCESS_DENIED && error != ERROR_INVALID_NAME;
}

ScopedKey OpenForReading(HKEY root, const std::wstring& path, REGSAM view) {
  ScopedKey key = OpenRegistryKey(root, path, view | KEY_READ);
  if (!key && !IsMissingKey(GetLastError())) RaiseLastOSError();
  return key;
}

bool IsKeyWritable(HKEY root, const std::wstring& path, REGSAM view) noexcept {
  return static_cast<bool>(OpenRegistryKey(root, path, view | KEY_ALL_ACCESS));
}

bool IsOneInBothViews(HKEY root, std::wstring_view path) noexcept {
  constexpr std::wstring_view kClasses = L"Software\\Classes";
  return root == HKEY_CURRENT_USER && !SameText(path.substr(0, kClasses.size()), kClasses);
}

}  // namespace smh
