#include "hosts/common/language.h"

#include "infra/runtime/exceptions.h"

#include <windows.h>

#include <atomic>

namespace smh {

namespace {

struct LanguageRow {
  Language language;
  const wchar_t* name;
  const wchar_t* title;
  WORD primary;  // of the system's language identifiers
};

constexpr LanguageRow kRows[kLanguages] = {
    {Language::kEnglish, L"en", L"English", LANG_ENGLISH},
    {Language::kGerman, L"de", L"Deutsch", LANG_GERMAN},
    {Language::kHebrew, L"he", L"עברית", LANG_HEBREW},
};

constexpr wchar_t kSettings[] = L"Software\\Quillmark\\Startup Manager\\Settings";
constexpr wchar_t kValue[] = L"Language";

std::atomic<Language> g_language = Language::kEnglish;

const LanguageRow& RowOf(Language language) noexcept {
  return kRows[static_cast<std::size_t>(language)];
}

}  // namespace

std::optional<Language> LanguageByName(std::wstring_view name) noexcept {
  const std::wstring_view language = name.substr(0, name.find(L'-'));
  for (const LanguageRow& row : kRows) {
    if (CompareStringOrdinal(row.name, -1, language.data(), static_cast<int>(language.size()), TRUE) ==
        CSTR_EQUAL) {
      return row.language;
    }
  }
  return {};
}

const wchar_t* LanguageName(Language language) noexcept {
  return RowOf(language).name;
}

const wchar_t* LanguageTitle(Language language) noexcept {
  return RowOf(language).title;
}

std::uint16_t SystemLanguage(Language language) noexcept {
  return MAKELANGID(RowOf(language).primary, SUBLANG_DEFAULT);
}

Language CurrentLanguage() noexcept {
  return g_language.load(std::memory_order_relaxed);
}

void SetLanguage(Language language) noexcept {
  g_language.store(language, std::memory_order_relaxed);
}

std::optional<Language> SavedLanguage() {
  wchar_t name[16];
  DWORD size = sizeof(name);
  if (RegGetValueW(HKEY_CURRENT_USER, kSettings, kValue, RRF_RT_REG_SZ, nullptr, name, &size) !=
      ERROR_SUCCESS) {
    return {};
  }
  return LanguageByName(name);
}

void SaveLanguage(std::optional<Language> language) {
  const std::wstring name = language ? LanguageName(*language) : L"";
  const LSTATUS status = RegSetKeyValueW(HKEY_CURRENT_USER, kSettings, kValue, REG_SZ, name.c_str(),
                                         static_cast<DWORD>((name.size() + 1) * sizeof(wchar_t)));
  if (status != ERROR_SUCCESS) {
    throw EOSError(static_cast<DWORD>(status));
  }
}

Language DefaultLanguage() {
  if (const std::optional<Language> saved = SavedLanguage()) return *saved;
  const WORD primary = PRIMARYLANGID(GetUserDefaultUILanguage());
  for (const LanguageRow& row : kRows) {
    if (row.primary == primary) return row.language;
  }
  return Language::kEnglish;
}

}  // namespace smh
