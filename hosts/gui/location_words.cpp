#include "hosts/gui/location_words.h"

#include "hosts/common/location_names.h"
#include "hosts/gui/texts/location_words_texts.h"

#include <algorithm>

namespace smh {

namespace {

struct SentenceRow {
  std::int32_t first;
  std::int32_t last;
  const Text& text;
};

// The first row that holds all locations counts; what takes in others stands behind them.
constexpr SentenceRow kSentences[] = {
    {1, 1, texts::kUserFolder},
    {2, 2, texts::kCommonFolder},
    {1, 2, texts::kBothFolders},
    {3, 4, texts::kRunServices},
    {5, 5, texts::kUserRun},
    {6, 6, texts::kUserRunOnce},
    {7, 7, texts::kSetup},
    {8, 8, texts::kCommonRun},
    {9, 9, texts::kCommonRunOnce},
    {10, 10, texts::kSetup},
    {3, 10, texts::kRunKeys},
    {11, 15, texts::kContextMenus},
    {16, 20, texts::kDragAndDrop},
    {21, 25, texts::kExplorerColumns},
    {26, 30, texts::kPropertyPages},
    {31, 35, texts::kCopyHooks},
    {36, 36, texts::kApprovedExtensions},
    {37, 37, texts::kBrowserHelpers},
    {38, 39, texts::kSearchHooks},
    {36, 39, texts::kOtherExtensions},
    {kFirstLocation, kLastLocation, texts::kEverything},
};

bool HoldsAll(const SentenceRow& row, const LocationSet& locations) noexcept {
  for (std::int32_t location = kFirstLocation; location <= kLastLocation; ++location) {
    if (locations[static_cast<std::size_t>(location)] && (location < row.first || location > row.last))
      return false;
  }
  return true;
}

}  // namespace

const wchar_t* LocationSentence(const LocationSet& locations) noexcept {
  return std::ranges::find_if(kSentences, [&](const SentenceRow& row) { return HoldsAll(row, locations); })
      ->text.Get();
}

std::vector<DetailLine> LocationLines(const LocationSet& locations, const std::wstring& title) {
  std::vector<DetailLine> lines = {
      {texts::kShownLine.Get(), PlainText(title.empty() ? texts::kAllEntriesShown.Get() : title)},
      {texts::kWhatItIsLine.Get(), PlainText(LocationSentence(locations))}};
  if (locations.count() != 1) return lines;
  std::int32_t location = kFirstLocation;
  while (!locations[static_cast<std::size_t>(location)]) ++location;
  lines.push_back({texts::kStoredInLine.Get(), PlainText(LocationPlace(LocationRowOf(location)))});
  return lines;
}

}  // namespace smh
