#include "hosts/gui/empty_list.h"

#include "hosts/common/text_encoding.h"
#include "hosts/gui/resource.h"

namespace smh {

namespace {

constexpr std::size_t kLongestShown = 40;

std::wstring Counted(std::size_t count) {
  return count == 1 ? std::wstring(L"1 entry") : std::to_wstring(count) + L" entries";
}

std::wstring Quoted(const std::wstring& text) {
  return L"\u201C" + CutEnd(Printable(text), kLongestShown) + L"\u201D";
}

std::wstring HiddenText(std::size_t hidden, const std::wstring& search, const FilterSet& filters) {
  std::wstring text = Counted(hidden);
  if (!search.empty()) text += (hidden == 1 ? L" that matches " : L" that match ") + Quoted(search);
  text += hidden == 1 ? L" is hidden by " : L" are hidden by ";
  return text + FilterTitles(filters) + L".";
}

}  // namespace

EmptyListNote NoteOf(const EntryRows& rows, const ListRequest& request) {
  if (!rows.Shown().empty()) return {};
  if (request.isReading && rows.Total() == 0) return {L"Reading the locations\u2026", {}};
  const bool isSearched = rows.IsSearched();
  const std::wstring search = isSearched ? request.search : std::wstring();
  const std::wstring place = request.place.empty() ? std::wstring() : L" in " + Quoted(request.place);
  const EmptyListOffer showAll = {CMD_SHOW_ALL, L"Show all entries"};
  EmptyListNote note;
  if (rows.Count(EntryRows::Limit::kLocations) == 0) {
    note.text = L"There is no entry" + place + L".";
    if (!place.empty() && rows.Total() > 0) note.offers.push_back(showAll);
    return note;
  }
  if (rows.ShowsOnlyDifferent() && !isSearched && rows.Filters().none()) {
    note.text = L"Nothing" + place + L" differs from the saved state.";
    note.offers = {{CMD_ONLY_DIFFERENT, L"Show what is the same"}, {CMD_STOP_COMPARING, L"Stop comparing"}};
    return note;
  }
  const std::size_t elsewhere = place.empty() ? 0 : rows.Count(EntryRows::Limit::kSearchAndFilters);
  if (const std::size_t hidden = rows.Count(EntryRows::Limit::kLocationsAndSearch); hidden > 0) {
    note.text = HiddenText(hidden, search, rows.Filters());
    note.offers.push_back({CMD_CLEAR_FILTERS, L"Switch the filters off"});
  } else {
    note.text = L"No entry" + place + L" matches " + Quoted(search) + L".";
  }
  if (isSearched && elsewhere > 0) {
    const EmptyListOffer everywhere = {CMD_SEARCH_EVERYWHERE,
                                       L"Search everywhere (" + std::to_wstring(elsewhere) + L")"};
    note.text += L" Elsewhere there " + std::wstring(elsewhere == 1 ? L"is " : L"are ") +
                 std::to_wstring(elsewhere) + L".";
    note.offers.insert(note.offers.begin(), everywhere);
  }
  const bool hidesFiltersAlone = rows.Filters().any() && !isSearched && place.empty();
  if (!hidesFiltersAlone) note.offers.push_back(showAll);
  return note;
}

}  // namespace smh
