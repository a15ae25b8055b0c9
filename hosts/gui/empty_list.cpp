#include "hosts/gui/empty_list.h"

#include "hosts/common/text_encoding.h"
#include "hosts/gui/resource.h"
#include "hosts/gui/texts/filter_texts.h"
#include "hosts/gui/texts/frame_texts.h"

namespace smh {

namespace {

constexpr std::size_t kLongestShown = 40;

std::wstring Quoted(const std::wstring& text) {
  return Format(texts::kQuoted, CutEnd(Printable(text), kLongestShown));
}

std::wstring HiddenText(std::size_t hidden, const std::wstring& search, const FilterSet& filters) {
  if (search.empty()) return Format(texts::kHidden.For(hidden), hidden, FilterTitles(filters));
  return Format(texts::kHiddenMatch.For(hidden), hidden, FilterTitles(filters), Quoted(search));
}

}  // namespace

EmptyListNote NoteOf(const EntryRows& rows, const ListRequest& request) {
  if (!rows.Shown().empty()) return {};
  if (request.isReading && rows.Total() == 0) return {texts::kReadingLocations.Get(), {}};
  const bool isSearched = rows.IsSearched();
  const std::wstring search = isSearched ? request.search : std::wstring();
  const std::wstring place = request.place.empty() ? std::wstring() : Quoted(request.place);
  const EmptyListOffer showAll = {CMD_SHOW_ALL, texts::kShowAllEntries.Get()};
  EmptyListNote note;
  if (rows.Count(EntryRows::Limit::kLocations) == 0) {
    note.text = Format(place.empty() ? texts::kNoEntry : texts::kNoEntryIn, place);
    if (!place.empty() && rows.Total() > 0) note.offers.push_back(showAll);
    return note;
  }
  if (rows.ShowsOnlyDifferent() && !isSearched && rows.Filters().none()) {
    note.text = Format(place.empty() ? texts::kSameAsSaved : texts::kSameAsSavedIn, place);
    note.offers = {{CMD_ONLY_DIFFERENT, texts::kShowSame.Get()},
                   {CMD_STOP_COMPARING, texts::kStopComparing.Get()}};
    return note;
  }
  const std::size_t elsewhere = place.empty() ? 0 : rows.Count(EntryRows::Limit::kSearchAndFilters);
  if (const std::size_t hidden = rows.Count(EntryRows::Limit::kLocationsAndSearch); hidden > 0) {
    note.text = HiddenText(hidden, search, rows.Filters());
    note.offers.push_back({CMD_CLEAR_FILTERS, texts::kFiltersOff.Get()});
  } else {
    note.text = Format(place.empty() ? texts::kNoMatch : texts::kNoMatchIn, Quoted(search), place);
  }
  if (isSearched && elsewhere > 0) {
    const EmptyListOffer everywhere = {CMD_SEARCH_EVERYWHERE, Format(texts::kSearchEverywhere, elsewhere)};
    note.text = Format(texts::kElsewhere.For(elsewhere), note.text, elsewhere);
    note.offers.insert(note.offers.begin(), everywhere);
  }
  const bool hidesFiltersAlone = rows.Filters().any() && !isSearched && place.empty();
  if (!hidesFiltersAlone) note.offers.push_back(showAll);
  return note;
}

}  // namespace smh
