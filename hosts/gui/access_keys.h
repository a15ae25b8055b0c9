// Whether the letters behind "&" tell the texts of a menu or a dialog apart; for the compiler to check.
#pragma once

#include "hosts/common/text.h"

#include <span>

namespace smh {

// In lower case; 0 for a text without one.
constexpr wchar_t AccessKeyOf(const Text& text, Language language) {
  const std::wstring_view label = text.In(language);
  const std::size_t mark = label.find(L'&');
  if (mark == label.npos) return 0;
  const wchar_t letter = label[mark + 1];
  if (letter >= L'A' && letter <= L'Z') return static_cast<wchar_t>(letter - L'A' + L'a');
  constexpr std::wstring_view kLarge = L"ÄÖÜ", kSmall = L"äöü";
  const std::size_t umlaut = kLarge.find(letter);
  return umlaut == kLarge.npos ? letter : kSmall[umlaut];
}

// Of rows whose `text` is a pointer to a Text, or null.
template <typename Row>
constexpr bool HaveOwnAccessKeys(std::span<const Row> rows) {
  for (const Language language : {Language::kEnglish, Language::kGerman, Language::kHebrew}) {
    for (std::size_t i = 0; i < rows.size(); ++i) {
      const wchar_t key = rows[i].text == nullptr ? L'\0' : AccessKeyOf(*rows[i].text, language);
      for (std::size_t other = 0; key != 0 && other < i; ++other) {
        if (rows[other].text != nullptr && AccessKeyOf(*rows[other].text, language) == key) return false;
      }
    }
  }
  return true;
}

}  // namespace smh
