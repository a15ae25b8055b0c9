// What people and programs are told at once: in the language of the process, and in English for JSON, the
// journal and logs. A value; any thread.
#pragma once

#include "hosts/common/text.h"

#include <concepts>
#include <string>
#include <string_view>

namespace smh {

class Phrase {
 public:
  Phrase() = default;
  // A row without arguments.
  Phrase(const Text& text) : english_(text.In(Language::kEnglish)), shown_(text.Get()) {}
  // A name, or what somebody else says: the same to everybody.
  Phrase(std::wstring_view text) : english_(text), shown_(text) {}
  Phrase(const std::wstring& text) : Phrase(std::wstring_view(text)) {}
  Phrase(const wchar_t* text) : Phrase(std::wstring_view(text)) {}
  Phrase(std::wstring english, std::wstring shown) : english_(std::move(english)), shown_(std::move(shown)) {}

  const std::wstring& English() const noexcept { return english_; }
  const std::wstring& Shown() const noexcept { return shown_; }
  bool IsEmpty() const noexcept { return english_.empty(); }

  // What follows it, with `separator` between the two.
  void Append(std::wstring_view separator, const Phrase& next);

  bool operator==(const Phrase&) const = default;

 private:
  std::wstring english_;
  std::wstring shown_;
};

inline const std::wstring& TextArgument(const Phrase& phrase) noexcept {
  return phrase.Shown();
}

// An argument of Say: itself, or a number.
inline const Phrase& PhraseArgument(const Phrase& phrase) noexcept {
  return phrase;
}
inline Phrase PhraseArgument(std::integral auto number) {
  return std::to_wstring(number);
}

// The row with its arguments in place. A phrase or a row among them is in the language of the text around it.
Phrase Say(const Text& text, const auto&... arguments) {
  return [&text](const auto&... phrases) {
    return Phrase(FillIn(text.In(Language::kEnglish), {phrases.English()...}),
                  FillIn(text.Get(), {phrases.Shown()...}));
  }(static_cast<const Phrase&>(PhraseArgument(arguments))...);
}

// The same texts, fit for one line of output (Printable, text_encoding.h).
Phrase PrintablePhrase(const Phrase& phrase);

}  // namespace smh
