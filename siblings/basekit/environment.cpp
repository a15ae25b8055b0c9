#include "siblings/basekit/environment.h"

#include "infra/files/file_facts.h"
#include "infra/runtime/growing_text.h"
#include "infra/runtime/text.h"

#include <windows.h>

#include <optional>

namespace smh {

namespace {

std::optional<std::wstring> EnvironmentValue(const std::wstring& name) {
  DWORD error = ERROR_SUCCESS;
  std::wstring value = GrowingText([&](wchar_t* buffer, DWORD size) {
    SetLastError(ERROR_SUCCESS);
    const DWORD length = GetEnvironmentVariableW(name.c_str(), buffer, size);
    error = length == 0 ? GetLastError() : ERROR_SUCCESS;
    return length;
  });
  if (error == ERROR_ENVVAR_NOT_FOUND) return std::nullopt;
  return value;
}

}  // namespace

// The system's own function is limited to 32,767 units.
std::wstring ExpandEnvironment(std::wstring_view text) {
  std::wstring result;
  for (;;) {
    const std::size_t open = text.find(L'%');
    const std::size_t close = open == std::wstring_view::npos ? open : text.find(L'%', open + 1);
    if (close == std::wstring_view::npos) return result.append(text);
    const std::wstring name(text.substr(open + 1, close - open - 1));
    const std::optional<std::wstring> value = name.empty() ? std::nullopt : EnvironmentValue(name);
    if (value.has_value()) {
      result.append(text.substr(0, open)).append(*value);
      text.remove_prefix(close + 1);
    } else {
      result.append(text.substr(0, close));
      text.remove_prefix(close);
    }
  }
}

std::wstring CanonicalizePath(const wchar_t* text) {
  return FolderPart(text).empty() ? text : FullPath(text);
}

std::wstring FullPath(const wchar_t* text) {
  if (*text == L'\0') return {};
  return FullPathOf(text).value_or(text);
}

std::wstring WindowsFolder() {
  return WithoutTrailingBackslash(GrowingText(
      [](wchar_t* buffer, DWORD size) { return DWORD{GetSystemWindowsDirectoryW(buffer, size)}; }));
}

std::wstring SystemFolder() {
  return WithoutTrailingBackslash(
      GrowingText([](wchar_t* buffer, DWORD size) { return DWORD{GetSystemDirectoryW(buffer, size)}; }));
}

}  // namespace smh
