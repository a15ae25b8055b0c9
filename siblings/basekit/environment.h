// Texts that refer to the process's environment, its folders or its current folder.
#pragma once

#include <string>
#include <string_view>

namespace smh {

// Every "%name%" of a variable that is set replaced by its value, once. Any other text stays, and its second
// "%" may begin the next reference. Texts of any length.
std::wstring ExpandEnvironment(std::wstring_view text);
// The full path of a text with a folder part, which need not exist; a bare name comes back as it is.
std::wstring CanonicalizePath(const wchar_t* text);
// Completes a bare name with the current folder too.
std::wstring FullPath(const wchar_t* text);
// Without a trailing backslash.
std::wstring WindowsFolder();
std::wstring SystemFolder();
bool FileExists(const std::wstring& path) noexcept;

}  // namespace smh
