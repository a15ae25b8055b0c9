#include "infra/runtime/text.h"

#include <windows.h>

#include <algorithm>
#include <cstddef>
#include <vector>

namespace smh {

namespace {

int OrdinalCompare(std::wstring_view a, std::wstring_view b) noexcept {
  return CompareStringOrdinal(a.data(), static_cast<int>(a.size()), b.data(), static_cast<int>(b.size()),
                              TRUE);
}

// Unit by unit, by the rules that the system compares names of files and registry keys by.
std::wstring UpperCase(std::wstring_view text) {
  std::wstring result(text);
  const int size = static_cast<int>(text.size());
  if (std::ranges::all_of(text, [](wchar_t unit) { return unit < 0x80; })) {
    for (wchar_t& unit : result) {
      if (unit >= L'a' && unit <= L'z') unit = static_cast<wchar_t>(unit - L'a' + L'A');
    }
  } else {
    LCMapStringEx(LOCALE_NAME_INVARIANT, LCMAP_UPPERCASE, text.data(), size, result.data(), size, nullptr,
                  nullptr, 0);
  }
  return result;
}

// For each prefix of the pattern the length of its longest end that is a prefix again. With it a search takes
// linear time whatever the texts are: both may come from a registry that somebody else filled.
std::vector<std::size_t> Borders(std::wstring_view pattern) {
  std::vector<std::size_t> borders(pattern.size(), 0);
  std::size_t length = 0;
  for (std::size_t i = 1; i < pattern.size(); ++i) {
    while (length > 0 && pattern[i] != pattern[length]) length = borders[length - 1];
    if (pattern[i] == pattern[length]) ++length;
    borders[i] = length;
  }
  return borders;
}

}  // namespace

bool SameText(std::wstring_view a, std::wstring_view b) noexcept {
  return a.size() == b.size() && (a == b || OrdinalCompare(a, b) == CSTR_EQUAL);
}

int CompareText(std::wstring_view a, std::wstring_view b) noexcept {
  if (a.empty() || b.empty()) return static_cast<int>(!a.empty()) - static_cast<int>(!b.empty());
  return OrdinalCompare(a, b) - CSTR_EQUAL;
}

bool StartsText(std::wstring_view prefix, std::wstring_view text) noexcept {
  return text.size() >= prefix.size() && SameText(prefix, text.substr(0, prefix.size()));
}

bool EndsText(std::wstring_view suffix, std::wstring_view text) noexcept {
  return text.size() >= suffix.size() && SameText(suffix, text.substr(text.size() - suffix.size()));
}

bool SameLocaleText(std::wstring_view a, std::wstring_view b) noexcept {
  if (a.empty() || b.empty()) return a.empty() && b.empty();
  return CompareStringW(LOCALE_USER_DEFAULT, NORM_IGNORECASE, a.data(), static_cast<int>(a.size()), b.data(),
                        static_cast<int>(b.size())) == CSTR_EQUAL;
}

std::wstring_view TrimmedPart(std::wstring_view text) noexcept {
  while (!text.empty() && text.front() <= L' ') text.remove_prefix(1);
  while (!text.empty() && text.back() <= L' ') text.remove_suffix(1);
  return text;
}

std::wstring Trim(std::wstring_view text) {
  return std::wstring(TrimmedPart(text));
}

std::wstring ReplaceText(std::wstring_view text, std::wstring_view pattern, std::wstring_view replacement) {
  std::wstring result;
  if (pattern.empty()) return result.assign(text);
  const std::wstring haystack = UpperCase(text);
  const std::wstring needle = UpperCase(pattern);
  const std::vector<std::size_t> borders = Borders(needle);
  std::size_t copied = 0;
  std::size_t matched = 0;
  for (std::size_t i = 0; i < haystack.size(); ++i) {
    while (matched > 0 && haystack[i] != needle[matched]) matched = borders[matched - 1];
    if (haystack[i] == needle[matched]) ++matched;
    if (matched < needle.size()) continue;
    result.append(text.substr(copied, i + 1 - matched - copied)).append(replacement);
    copied = i + 1;
    matched = 0;
  }
  return result.append(text.substr(copied));
}

std::wstring QuoteText(std::wstring_view text) {
  std::wstring result;
  result.reserve(text.size() + 2);
  result += L'"';
  for (const wchar_t unit : text) result.append(unit == L'"' ? 2 : 1, unit);
  return result.append(1, L'"');
}

std::wstring DequoteText(std::wstring_view text) {
  if (text.size() < 2 || text.front() != L'"' || text.back() != L'"') return std::wstring(text);
  std::wstring result;
  const std::wstring_view inside = text.substr(1, text.size() - 2);
  for (std::size_t i = 0; i < inside.size(); ++i) {
    if (inside[i] == L'"') {
      ++i;
      if (i == inside.size() || inside[i] != L'"') return std::wstring(text);
    }
    result += inside[i];
  }
  return result;
}

std::wstring_view FileNamePart(std::wstring_view path) noexcept {
  return path.substr(FolderPart(path).size());
}

std::wstring_view FolderPart(std::wstring_view path) noexcept {
  return path.substr(0, path.find_last_of(L"\\/:") + 1);
}

std::wstring_view ExtensionPart(std::wstring_view path) noexcept {
  const std::wstring_view name = FileNamePart(path);
  const std::size_t dot = name.rfind(L'.');
  return dot == std::wstring_view::npos ? std::wstring_view() : name.substr(dot);
}

std::wstring WithTrailingBackslash(std::wstring_view path) {
  std::wstring result(path);
  if (!result.ends_with(L'\\')) result += L'\\';
  return result;
}

std::wstring WithoutTrailingBackslash(std::wstring_view path) {
  if (path.ends_with(L'\\')) path.remove_suffix(1);
  return std::wstring(path);
}

}  // namespace smh
