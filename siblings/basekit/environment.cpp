#include "siblings/basekit/environment.h"

#include <windows.h>

#include <optional>

#include "infra/runtime/exceptions.h"
#include "infra/runtime/text.h"

namespace smh {

namespace {

// Fills a text by a call that answers the needed size, terminator included, when the buffer is too small,
// else the length without it. Both may change between two calls.
template <typename Call>
std::wstring GrowingText(Call&& call) {
  // Nearly all texts fit here.
  wchar_t usual[MAX_PATH];
  const DWORD usualLength = call(usual, MAX_PATH);
  if (usualLength <= MAX_PATH) return std::wstring(usual, usualLength);
  std::wstring text(usualLength, L'\0');
  for (;;) {
    const DWORD length = call(text.data(), static_cast<DWORD>(text.size()));
    if (length <= text.size()) {
      text.resize(length);
      return text;
    }
    text.resize(length);
  }
}

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
  std::wstring path = GrowingText(
      [text](wchar_t* buffer, DWORD size) { return GetFullPathNameW(text, size, buffer, nullptr); });
  return path.empty() ? text : path;
}

std::wstring WindowsFolder() {
  return WithoutTrailingBackslash(GrowingText(
      [](wchar_t* buffer, DWORD size) { return DWORD{GetSystemWindowsDirectoryW(buffer, size)}; }));
}

std::wstring SystemFolder() {
  return WithoutTrailingBackslash(
      GrowingText([](wchar_t* buffer, DWORD size) { return DWORD{GetSystemDirectoryW(buffer, size)}; }));
}

bool FileExists(const std::wstring& path) noexcept {
  const DWORD attributes = GetFileAttributesW(path.c_str());
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) == 0;
}

}  // namespace smh
