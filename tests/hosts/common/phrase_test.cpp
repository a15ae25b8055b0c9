// Texts in two languages at once, and texts of the libraries told again.
#include "hosts/common/host_error.h"
#include "hosts/common/journal_words.h"
#include "hosts/common/location_names.h"
#include "hosts/common/texts/failure_texts.h"
#include "tests/support/language_scope.h"

#include <gtest/gtest.h>

namespace smh::test {
namespace {

constexpr Text kShare{L"%1 of %2", L"%1 von %2", L"%1 מתוך %2"};

TEST(PhraseTest, ArgumentsAreInTheLanguageOfTheTextAroundThem) {
  const LanguageScope german(Language::kGerman);
  const Phrase outcome = Say(texts::kFailedFor, texts::kCannotLockList, Say(kShare, 3, L"%1"));
  EXPECT_EQ(outcome.English(), L"Cannot lock the list of entries: 3 of %1");
  EXPECT_EQ(outcome.Shown(), L"Die Liste der Einträge kann nicht gesperrt werden: 3 von %1");
}

TEST(PhraseTest, TitlesAreToldAgain) {
  const LanguageScope german(Language::kGerman);
  EXPECT_EQ(ShownTitle(L"Startup Manager: Disabling Inkwell"), L"Deaktivieren: Inkwell");
  EXPECT_EQ(ShownTitle(L"Undo: Startup Manager: Deleting A: Undo: B"), L"Rückgängig: Löschen: A: Undo: B");
  EXPECT_EQ(ShownTitle(L"Disabling 3 entries"), L"Deaktivieren von 3 Einträgen");
  EXPECT_EQ(ShownTitle(L"Disabling entries"), L"Deaktivieren von Einträgen");
  EXPECT_EQ(ShownTitle(L"Taking away 1 switch of no entry"), L"Entfernen von 1 Schalter ohne Eintrag");
  EXPECT_EQ(ShownTitle(L"Written by hand: 100 %"), L"Written by hand: 100 %");
  EXPECT_EQ(TitleText(L"Redo: Startup Manager: Moving X"), L"Wiederholen: Startup Manager: Verschieben: X");
  EXPECT_EQ(ShownStep(L"Restore the value \"a\" of the key \"HKEY_CURRENT_USER\\b\""),
            L"Den Wert „a“ des Schlüssels „HKEY_CURRENT_USER\\b“ wiederherstellen");
  EXPECT_EQ(
      ShownStep(L"Delete the file \"C:\\a\": nothing else holds it, because its source has gone or changed"),
      L"Die Datei „C:\\a“ löschen: Nichts anderes enthält es, weil seine Quelle verschwunden oder geändert "
      L"ist");
}

// What is told again in English is what was said.
TEST(PhraseTest, EnglishTitlesStayAsTheyAre) {
  for (const wchar_t* const title : {L"Disabling 3 entries", L"Undo: Disabling %1", L"Setting \"a \"b\" c\"",
                                     L"Taking away 2 switches of no entry", L"Enabling ", L""}) {
    EXPECT_EQ(TitleText(title), title);
  }
  EXPECT_EQ(FullTitle(sulRegistryUserRun), LocationRowOf(sulRegistryUserRun).title);
}

TEST(PhraseTest, TextsOfTheSystemAreInTheLanguageWhereItHasThem) {
  const LanguageScope german(Language::kGerman);
  const Phrase denied = SystemErrorText(E_ACCESSDENIED);
  EXPECT_TRUE(denied.English().ends_with(L"(0x80070005)"));
  EXPECT_TRUE(denied.Shown().ends_with(L"(0x80070005)"));
  EXPECT_EQ(denied.English().find(L"verweigert"), std::wstring::npos);
  const Phrase unknown = SystemErrorText(static_cast<HRESULT>(0x8FFF1234));
  EXPECT_EQ(unknown.English(), L"Error 0x8FFF1234");
  EXPECT_EQ(unknown.Shown(), L"Fehler 0x8FFF1234");
}

}  // namespace
}  // namespace smh::test
