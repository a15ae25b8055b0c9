#include "infra/files/folder_making.h"

#include "infra/files/file_facts.h"
#include "infra/runtime/exceptions.h"
#include "infra/runtime/text.h"

#include <windows.h>

namespace smh {

namespace {

// "C:\"; no folder has a shorter parent that could be missing.
constexpr std::size_t kRootUnits = 3;

bool MakeInheriting(const std::wstring& path) {
  return CreateDirectoryW(path.c_str(), nullptr) != FALSE;
}

}  // namespace

void MakeFolders(std::wstring& path) noexcept {
  for (std::size_t at = path.find(L'\\'); at != std::wstring::npos; at = path.find(L'\\', at + 1)) {
    path[at] = L'\0';
    CreateDirectoryW(path.c_str(), nullptr);
    path[at] = L'\\';
  }
}

void MakeFolderPath(const std::wstring& folder) {
  MakeFolderPath(folder, MakeInheriting, MakeInheriting);
}

void MakeFolderPath(const std::wstring& folder, FolderMaker own, FolderMaker above) {
  const std::wstring path = WithoutTrailingBackslash(folder);
  if (IsFolder(path)) return;
  const std::wstring parent(FolderPart(path));
  if (parent.size() > kRootUnits && parent.size() < path.size()) MakeFolderPath(parent, above, above);
  // Somebody else may have made it meanwhile.
  if (!own(path) && GetLastError() != ERROR_ALREADY_EXISTS) RaiseLastOSError();
}

}  // namespace smh
