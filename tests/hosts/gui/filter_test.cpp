// What the filters leave, and what an empty list says of itself.
#include "hosts/gui/empty_list.h"
#include "hosts/gui/resource.h"
#include "tests/hosts/common/test_items.h"

#include <gtest/gtest.h>

namespace smh::test {

namespace {

FilterSet Filters(std::initializer_list<unsigned> commands) {
  FilterSet filters;
  for (const unsigned command : commands) filters.set(FilterOf(command));
  return filters;
}

ItemRecord Item(const std::wstring& caption, std::int32_t location = sulRegistryUserRun) {
  ItemRecord item = MakeItem(location, L"Run", caption);
  item.fileFound = true;
  item.starts = kStartsYes;
  return item;
}

ItemRecord Signed(ItemRecord item, std::int32_t signature, TrustWord word) {
  item.trust.emplace();
  item.trust->signature = signature;
  item.trust->word = word;
  return item;
}

TEST(EntryFilterTest, AllThatAreOnMustHold) {
  ItemRecord missing = Item(L"missing");
  missing.fileFound = false;
  missing.starts = kStartsNo;
  ItemRecord away = missing;
  away.caption = away.name = L"away";
  away.reachability = kFileUnreachable;
  away.starts = kStartsUnknown;
  EntryRows rows;
  rows.Apply({{L"added", missing},
              {L"added", away},
              {L"added", Item(L"unchecked")},
              {L"added", Signed(Item(L"plain"), kSignatureNone, TrustWord::kUnknown)},
              {L"added", Signed(Item(L"changed"), kSignatureBroken, TrustWord::kClaimed)},
              {L"added", Signed(Item(L"bad"), kSignatureValid, TrustWord::kRisky)},
              {L"added", Signed(Item(L"good"), kSignatureCatalogue, TrustWord::kVerified)},
              {L"added", Signed(Item(L"gone"), kSignatureUnreadable, TrustWord::kUnknown)}});
  const struct {
    FilterSet filters;
    std::wstring left;
  } kCases[] = {
      {{}, L"away bad changed gone good missing plain unchecked "},
      {Filters({CMD_FILTER_NOT_STARTING}), L"missing "},
      {Filters({CMD_FILTER_MISSING}), L"away missing "},
      {Filters({CMD_FILTER_UNSIGNED}), L"changed plain "},
      {Filters({CMD_FILTER_RISKY}), L"bad changed "},
      {Filters({CMD_HIDE_VERIFIED}), L"away bad changed gone missing plain unchecked "},
      {Filters({CMD_FILTER_UNSIGNED, CMD_FILTER_RISKY, CMD_HIDE_VERIFIED}), L"changed "},
      {Filters({CMD_FILTER_MISSING, CMD_FILTER_RISKY}), L""},
  };
  for (const auto& each : kCases) {
    rows.SetFilters(each.filters);
    std::wstring left;
    for (const EntryRow* row : rows.Shown()) left += row->item.caption + L" ";
    EXPECT_EQ(left, each.left) << FilterTitles(each.filters);
  }
}

TEST(EmptyListTest, SaysWhyAndWhatWouldShowSome) {
  EntryRows rows;
  EXPECT_EQ(NoteOf(rows, {L"", L"", true}).text, L"Reading the locations\u2026");
  rows.Apply({{L"added", Item(L"one")}, {L"added", Item(L"two", sulFolderUser)}});
  const LocationSet run = LocationSet().set(sulRegistryUserRun);
  const LocationSet once = LocationSet().set(sulRegistryUserRunOnce);
  const FilterSet risky = Filters({CMD_FILTER_RISKY, CMD_FILTER_MISSING});
  using Commands = std::vector<unsigned>;
  const struct {
    LocationSet locations;
    const wchar_t* search;
    FilterSet filters;
    const wchar_t* text;
    Commands offers;
  } kCases[] = {
      {run, L"one", {}, L"", {}},
      {once, L"two", risky, L"There is no entry in \u201CHere\u201D.", {CMD_SHOW_ALL}},
      {run, L"three", {}, L"No entry in \u201CHere\u201D matches \u201Cthree\u201D.", {CMD_SHOW_ALL}},
      {run,
       L"two",
       {},
       L"No entry in \u201CHere\u201D matches \u201Ctwo\u201D. Elsewhere there is 1.",
       {CMD_SEARCH_EVERYWHERE, CMD_SHOW_ALL}},
      {run, L"two", risky, L"No entry in \u201CHere\u201D matches \u201Ctwo\u201D.", {CMD_SHOW_ALL}},
      {run,
       L"",
       risky,
       L"1 entry is hidden by \u201CMissing\u201D and \u201CRisky\u201D.",
       {CMD_CLEAR_FILTERS, CMD_SHOW_ALL}},
      {LocationSet().set(),
       L"o",
       risky,
       L"2 entries that match \u201Co\u201D are hidden by \u201CMissing\u201D and \u201CRisky\u201D.",
       {CMD_CLEAR_FILTERS, CMD_SHOW_ALL}},
      {LocationSet().set(),
       L"",
       Filters({CMD_FILTER_RISKY}),
       L"2 entries are hidden by \u201CRisky\u201D.",
       {CMD_CLEAR_FILTERS}},
  };
  for (const auto& each : kCases) {
    rows.ShowLocations(each.locations);
    rows.Search(each.search);
    rows.SetFilters(each.filters);
    const EmptyListNote note = NoteOf(rows, {each.locations.all() ? L"" : L"Here", each.search, false});
    EXPECT_EQ(note.text, each.text);
    Commands offers;
    for (const EmptyListOffer& offer : note.offers) offers.push_back(offer.command);
    EXPECT_EQ(offers, each.offers) << each.text;
  }
}

}  // namespace
}  // namespace smh::test
