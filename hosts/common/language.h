// The language that people read. Texts for programs, JSON, CSV and the journal, are in English always.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace smh {

enum class Language { kEnglish, kGerman, kHebrew };
inline constexpr std::size_t kLanguages = 3;

// What `--language` and the setting take: "en", "de", "he", also with a region behind ("de-AT"), ASCII case
// ignored. Empty for every other text.
std::optional<Language> LanguageByName(std::wstring_view name) noexcept;
// "en"; and how the language calls itself.
const wchar_t* LanguageName(Language language) noexcept;
const wchar_t* LanguageTitle(Language language) noexcept;

// The system's identifier of the language, as FormatMessage takes it.
std::uint16_t SystemLanguage(Language language) noexcept;

// Whether lines run from right to left.
constexpr bool IsMirrored(Language language) noexcept {
  return language == Language::kHebrew;
}

// The language of this process, English at first. Set once, before another thread or a window is made.
Language CurrentLanguage() noexcept;
void SetLanguage(Language language) noexcept;

// What this user chose for both hosts, kept in the registry; empty for the system's. Saving raises EOSError.
std::optional<Language> SavedLanguage();
void SaveLanguage(std::optional<Language> language);
// What the process takes without `--language`: the saved one, else the system's if there is one of these,
// else English.
Language DefaultLanguage();

}  // namespace smh
