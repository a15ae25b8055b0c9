// Texts that refer to the process's environment, its folders or its current folder. For any thread; the
// answers are those of the moment. All raise std::bad_alloc and nothing else.
#pragma once

#include <string>
#include <string_view>

namespace smh {

// Every "%name%" of a variable that is set replaced by its value, once: what a value brings in is not
// expanded again. Any other text stays, and its second "%" may begin the next reference. Texts of any length.
std::wstring ExpandEnvironment(std::wstring_view text);
// The full path of a text with a folder part, which need not exist; a bare name comes back as it is. `text`
// is never null, here and below.
std::wstring CanonicalizePath(const wchar_t* text);
// Completes a bare name with the current folder too. Empty for an empty text; a text that the system cannot
// complete comes back as it is.
std::wstring FullPath(const wchar_t* text);
// Full paths without a trailing backslash; empty when the system has none to give.
std::wstring WindowsFolder();
std::wstring SystemFolder();

}  // namespace smh
