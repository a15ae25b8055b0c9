// Comparisons and edits of UTF-16 text. Positions and lengths are in code units. "Ignoring case" is ordinal
// unless a function says otherwise.
#pragma once

#include <string>
#include <string_view>

namespace smh {

// Ordinal, ignoring case as the system does for names of files and registry keys.
bool SameText(std::wstring_view a, std::wstring_view b) noexcept;
int CompareText(std::wstring_view a, std::wstring_view b) noexcept;
bool StartsText(std::wstring_view prefix, std::wstring_view text) noexcept;
bool EndsText(std::wstring_view suffix, std::wstring_view text) noexcept;
// By the rules of the user's locale, ignoring case.
bool SameLocaleText(std::wstring_view a, std::wstring_view b) noexcept;

// Without blanks and control characters at both ends.
std::wstring Trim(std::wstring_view text);
// The same as a part of the text.
std::wstring_view TrimmedPart(std::wstring_view text) noexcept;
// Every occurrence of `pattern`, ignoring case, replaced; an empty pattern replaces nothing.
std::wstring ReplaceText(std::wstring_view text, std::wstring_view pattern, std::wstring_view replacement);
// In double quotes, with every quote inside doubled.
std::wstring QuoteText(std::wstring_view text);
// Without the one pair of quotes that encloses the whole text, doubled quotes inside made single. A pair
// encloses only if its first closing (not doubled) quote is the last character; any other text stays.
std::wstring DequoteText(std::wstring_view text);

// Parts of a path; "\", "/" and ":" end the folder part.
std::wstring_view FileNamePart(std::wstring_view path) noexcept;
// With its trailing separator.
std::wstring_view FolderPart(std::wstring_view path) noexcept;
// From the last dot of the file name on, that dot included; empty without one.
std::wstring_view ExtensionPart(std::wstring_view path) noexcept;
std::wstring WithTrailingBackslash(std::wstring_view path);
std::wstring WithoutTrailingBackslash(std::wstring_view path);

}  // namespace smh
