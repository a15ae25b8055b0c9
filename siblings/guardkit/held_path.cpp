#include "siblings/guardkit/held_path.h"

#include "infra/runtime/exceptions.h"
#include "infra/runtime/text.h"

namespace smh {

namespace {

// The end of "C:\" or "\\server\share\"; no folder of those can be replaced.
std::size_t RootLength(const std::wstring& path) noexcept {
  if (!path.starts_with(L"\\\\")) return path.find(L'\\') + 1;
  const std::size_t server = path.find(L'\\', 2);
  const std::size_t share = server == std::wstring::npos ? server : path.find(L'\\', server + 1);
  return share == std::wstring::npos ? path.size() : share + 1;
}

ScopedHandle OpenFolder(const std::wstring& folder, DWORD access) {
  return ScopedHandle(CreateFileW(folder.c_str(), access, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                  OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS | FILE_FLAG_OPEN_REPARSE_POINT,
                                  nullptr));
}

ScopedHandle HoldFolder(const std::wstring& folder) {
  ScopedHandle handle = OpenFolder(folder, FILE_LIST_DIRECTORY | FILE_READ_ATTRIBUTES | READ_CONTROL);
  if (!handle && GetLastError() == ERROR_ACCESS_DENIED) {
    handle = OpenFolder(folder, FILE_LIST_DIRECTORY | FILE_READ_ATTRIBUTES);
  }
  // A folder that may not be listed is looked at only: nobody without rights gets to replace it.
  if (!handle && GetLastError() == ERROR_ACCESS_DENIED) handle = OpenFolder(folder, FILE_READ_ATTRIBUTES);
  if (!handle) {
    RaiseOSError(GetLastError() == ERROR_FILE_NOT_FOUND ? ERROR_PATH_NOT_FOUND : GetLastError());
  }
  BY_HANDLE_FILE_INFORMATION information;
  if (GetFileInformationByHandle(handle.Get(), &information) == FALSE) RaiseLastOSError();
  if ((information.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0) {
    RaiseOSError(ERROR_CANT_ACCESS_FILE);
  }
  if ((information.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) == 0) RaiseOSError(ERROR_PATH_NOT_FOUND);
  return handle;
}

}  // namespace

HeldPath::HeldPath(const std::wstring& folder, bool make) {
  const std::wstring path = WithTrailingBackslash(folder);
  for (std::size_t end = path.find(L'\\', RootLength(path)); end != std::wstring::npos;
       end = path.find(L'\\', end + 1)) {
    const std::wstring level = path.substr(0, end);
    // A failure shows when the folder is held.
    if (make) CreateDirectoryW(level.c_str(), nullptr);
    folders_.push_back(HoldFolder(level));
  }
}

}  // namespace smh
