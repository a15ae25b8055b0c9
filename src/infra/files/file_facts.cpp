#include "infra/files/file_facts.h"

#include "infra/runtime/growing_text.h"
#include "infra/runtime/text.h"

#include <windows.h>
#include <shlobj.h>

namespace smh {

DWORD AttributesOf(PathView path) noexcept {
  if (!path.IsCut()) return GetFileAttributesW(path.c_str());
  SetLastError(ERROR_INVALID_NAME);
  return INVALID_FILE_ATTRIBUTES;
}

bool IsFile(PathView path) noexcept {
  const DWORD attributes = AttributesOf(path);
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) == 0;
}

bool IsFolder(PathView path) noexcept {
  const DWORD attributes = AttributesOf(path);
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

bool Exists(PathView path) noexcept {
  return AttributesOf(path) != INVALID_FILE_ATTRIBUTES;
}

std::optional<FileStamp> StampOf(PathView path) noexcept {
  WIN32_FILE_ATTRIBUTE_DATA data;
  if (path.IsEmpty() || path.IsCut()) return std::nullopt;
  if (GetFileAttributesExW(path.c_str(), GetFileExInfoStandard, &data) == FALSE) return std::nullopt;
  return FileStamp{(data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0, SizeIn(data),
                   NumberOf(data.ftLastWriteTime)};
}

std::optional<std::wstring> FullPathOf(const wchar_t* text) {
  if (*text == L'\0') {
    SetLastError(ERROR_INVALID_NAME);
    return std::nullopt;
  }
  std::wstring path = GrowingText(
      [text](wchar_t* buffer, DWORD size) { return GetFullPathNameW(text, size, buffer, nullptr); });
  return path.empty() ? std::nullopt : std::optional(std::move(path));
}

std::wstring ShellFolder(int csidl) {
  wchar_t folder[MAX_PATH] = {};
  if (SHGetFolderPathW(nullptr, csidl, nullptr, SHGFP_TYPE_CURRENT, folder) != S_OK) return {};
  return WithoutTrailingBackslash(folder);
}

std::wstring TempShortcutsIn(std::wstring_view dataFolder) {
  return std::wstring(dataFolder).append(L"TempShortcuts\\");
}

}  // namespace smh
