#include "infra/siblings/sibling_file.h"

#include "infra/runtime/module_path.h"
#include "infra/runtime/text.h"

namespace smh {

namespace {

// What `use` makes of the file in the first folder where that is something.
template <typename Use>
auto FromFolders(std::wstring_view name, Use&& use) {
  auto result = use(std::wstring(FolderPart(ModuleFileName(ThisModule()))).append(name));
  if (!result) result = use(std::wstring(FolderPart(ModuleFileName(nullptr))).append(name));
  return result;
}

bool IsFile(const std::wstring& path) noexcept {
  const DWORD attributes = GetFileAttributesW(path.c_str());
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) == 0;
}

}  // namespace

std::wstring FindSibling(std::wstring_view name) {
  std::wstring found;
  FromFolders(name, [&](std::wstring path) {
    if (!IsFile(path)) return false;
    found = std::move(path);
    return true;
  });
  return found;
}

HMODULE LoadSibling(std::wstring_view name) {
  // A damaged file is a failure, and no box of the system's.
  DWORD before = 0;
  SetThreadErrorMode(GetThreadErrorMode() | SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX, &before);
  const HMODULE library = FromFolders(name, [](const std::wstring& path) {
    return LoadLibraryExW(path.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
  });
  const DWORD error = GetLastError();
  SetThreadErrorMode(before, nullptr);
  SetLastError(error);
  return library;
}

}  // namespace smh
