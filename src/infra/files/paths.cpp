#include "infra/files/paths.h"

#include "infra/runtime/growing_text.h"
#include "infra/runtime/text.h"

#include <windows.h>
#include <shlobj.h>

namespace smh {

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
