// What the window shows in German and Hebrew, and that what programs read stays as it is.
#include "hosts/common/csv_output.h"
#include "hosts/gui/comparison.h"
#include "hosts/gui/entry_columns.h"
#include "hosts/gui/entry_filter.h"
#include "hosts/gui/entry_words.h"
#include "hosts/gui/texts/status_texts.h"
#include "hosts/gui/undo_forecast.h"
#include "tests/hosts/common/test_items.h"
#include "tests/support/language_scope.h"

#include <gtest/gtest.h>

namespace smh::test {

namespace {

ItemRecord MissingItem() {
  ItemRecord item = MakeItem(sulRegistryUserRun, L"Run", L"Tool");
  item.enabled = true;
  item.starts = kStartsNo;
  item.reasons = kReasonSwitchedOff;
  item.fileFound = false;
  return item;
}

std::wstring NameOfLine(const ItemRecord& item, const std::wstring& value) {
  for (const DetailLine& line : DetailsOf(item, {})) {
    if (line.value.text == value) return line.name;
  }
  return {};
}

TEST(GuiLanguageTest, CellsDetailsAndFiltersAreInTheLanguageOfTheProcess) {
  FilterSet filters;
  filters.set(1).set(3);
  const struct {
    Language language;
    std::wstring title, status, starts, trust, statusLine, filters;
  } cases[] = {{Language::kGerman, L"Speicherort", L"Ein, aber im Task-Manager ausgeschaltet, Datei fehlt",
                L"Nein", L"Wird geprüft…", L"Status", L"„Fehlend“ und „Riskant“"},
               {Language::kHebrew, L"מיקום", L"פועל, אבל כבוי במנהל המשימות, הקובץ חסר", L"לא", L"בבדיקה…",
                L"מצב", L"“חסרים” וכן “מסוכנים”"}};
  for (const auto& each : cases) {
    const LanguageScope scope(each.language);
    ItemRecord item = MissingItem();
    item.command = L"C:\\Tool.exe";
    item.rating = kRatingUnknown;
    EXPECT_EQ(EntryColumns()[5].title.Get(), each.title);
    const std::wstring status = EntryColumns()[kStatusColumn].text(item);
    EXPECT_EQ(status.substr(0, each.status.size()), each.status);
    EXPECT_EQ(NameOfLine(item, status), each.statusLine);
    EXPECT_EQ(StartsAnswerText(item), each.starts);
    EXPECT_EQ(TrustText(item), each.trust);
    EXPECT_EQ(FilterTitles(filters), each.filters);
  }
}

TEST(GuiLanguageTest, OneAndManyAreCounted) {
  const LanguageScope scope(Language::kGerman);
  EXPECT_EQ(Format(texts::kEntries.For(1), 1), L"1 Eintrag");
  EXPECT_EQ(Format(texts::kEntriesOf.For(7), 0, 7), L"0 von 7 Einträgen");
  EXPECT_EQ(DifferenceCountText({2, 0, 1, 0}), L"2 hinzugefügt, 1 geändert");
  UndoForecast forecast;
  forecast.dropped.resize(2);
  forecast.dropped.back().title = L"Disable “Tool”";
  EXPECT_NE(LossText(forecast).find(L"2 ältere Änderungen"), std::wstring::npos);
  EXPECT_NE(LossText(forecast).find(L"bis „Disable “Tool”“"), std::wstring::npos);
}

TEST(GuiLanguageTest, AnExportIsTheSameInEveryLanguage) {
  const std::vector<ItemRecord> items = {MissingItem()};
  const std::wstring english = CsvTable<ItemRecord>(ItemFields(), items);
  const LanguageScope scope(Language::kHebrew);
  EXPECT_EQ(CsvTable<ItemRecord>(ItemFields(), items), english);
}

}  // namespace

}  // namespace smh::test
