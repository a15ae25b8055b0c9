// Texts that people read: one row of a table for each, with the text in every language. Any thread.
//
// The same words everywhere:
//   entry           Eintrag                      פריט
//   location        Ort                          מיקום
//   command         Befehl                       פקודה
//   enable, disable aktivieren, deaktivieren     הפעלה, השבתה
//   start, run now  starten, jetzt ausführen     הפעלה אוטומטית, הרצה כעת
//   undo, redo      rückgängig, wiederholen      ביטול, ביצוע חוזר
//   undo history    Änderungsverlauf             היסטוריית השינויים
//   saved state     gespeicherter Stand          מצב שמור
//   default program Standardprogramm             תוכנית ברירת מחדל
//   verified, risky überprüft, riskant           מאומת, מסוכן
//   signature       Signatur                     חתימה
//   Task Manager    Task-Manager                 מנהל המשימות
//   administrator   Administrator                מנהל מערכת
#pragma once

#include "hosts/common/language.h"

#include <concepts>
#include <initializer_list>
#include <string>
#include <string_view>

namespace smh {

// A text in all languages. The compiler checks that none is missing, that all take the same arguments ("%1"
// to "%9", in any order; "%%" is a percent sign), and that an access key ("&E"), dots at the end and what
// stands behind a tab are in all of them or in none. The literals live as long as the program.
class Text {
 public:
  consteval Text(const wchar_t* english, const wchar_t* german, const wchar_t* hebrew)
      : texts_{english, german, hebrew} {
    for (const std::wstring_view each : texts_) {
      if (each.empty() || !IsLike(each, texts_[0])) throw "a text does not fit the others of its row";
    }
  }

  // In the language of the process, and in that one: what programs read is English always.
  const wchar_t* Get() const noexcept { return In(CurrentLanguage()); }
  constexpr const wchar_t* In(Language language) const noexcept {
    return texts_[static_cast<std::size_t>(language)];
  }

 private:
  static constexpr bool IsLike(std::wstring_view text, std::wstring_view other) {
    for (wchar_t digit = L'1'; digit <= L'9'; ++digit) {
      if (Takes(text, digit) != Takes(other, digit)) return false;
    }
    return HasAccessKey(text) == HasAccessKey(other) && text.ends_with(L"...") == other.ends_with(L"...") &&
           (text.find(L'\t') == text.npos) == (other.find(L'\t') == other.npos);
  }
  static constexpr bool Takes(std::wstring_view text, wchar_t digit) {
    for (std::size_t at = 0; at + 1 < text.size(); ++at) {
      if (text[at] != L'%') continue;
      if (text[++at] == digit) return true;
    }
    return false;
  }
  static constexpr bool HasAccessKey(std::wstring_view text) {
    for (std::size_t at = 0; at + 1 < text.size(); ++at) {
      if (text[at] == L'&' && text[++at] != L'&' && text[at] != L' ') return true;
    }
    return false;
  }

  const wchar_t* texts_[kLanguages];
};

// The text with its arguments in place; one that is not given is left out.
std::wstring FillIn(std::wstring_view text, std::initializer_list<std::wstring_view> arguments);

inline std::wstring_view TextArgument(std::wstring_view text) noexcept {
  return text;
}
inline std::wstring TextArgument(std::integral auto number) {
  return std::to_wstring(number);
}

// "%1 of %2 entries" with 12 and 45; a row without arguments is taken as it is, but for "%%".
std::wstring Format(const Text& text, const auto&... arguments) {
  return FillIn(text.Get(), {TextArgument(arguments)...});
}
// The same in that language.
std::wstring FormatIn(Language language, const Text& text, const auto&... arguments) {
  return FillIn(text.In(language), {TextArgument(arguments)...});
}

// For a count: the text for one, and the one for every other number.
struct CountText {
  Text one;
  Text many;
  const Text& For(std::size_t count) const noexcept { return count == 1 ? one : many; }
};

}  // namespace smh
