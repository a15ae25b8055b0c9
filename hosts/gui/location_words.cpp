#include "hosts/gui/location_words.h"

#include "hosts/common/location_names.h"

#include <algorithm>

namespace smh {

namespace {

struct SentenceRow {
  std::int32_t first;
  std::int32_t last;
  const wchar_t* text;
};

// The first row that holds all locations counts; what takes in others stands behind them.
constexpr SentenceRow kSentences[] = {
    {1, 1, L"Windows starts the programs and shortcuts in this folder when this user logs on."},
    {2, 2, L"Windows starts the programs and shortcuts in this folder when any user logs on."},
    {1, 2, L"Windows starts the programs and shortcuts in these folders when somebody logs on."},
    {3, 4, L"Only Windows 95 to Me ran these commands; no later Windows does."},
    {5, 5, L"Windows runs these commands whenever this user logs on."},
    {6, 6, L"Windows runs these commands when this user logs on next, and then takes them off the list."},
    {7, 7, L"Only a set-up that is under way runs these commands."},
    {8, 8, L"Windows runs these commands whenever any user logs on."},
    {9, 9, L"Windows runs these commands at the next logon, and then takes them off the list."},
    {10, 10, L"Only a set-up that is under way runs these commands."},
    {3, 10, L"Lists of commands that Windows runs when somebody logs on."},
    {11, 15, L"The file explorer loads these extensions to add commands to the context menu."},
    {16, 20, L"The file explorer loads these extensions when something is dragged with the right button."},
    {21, 25, L"Only Windows XP and before loaded these extensions, to fill columns of the file explorer."},
    {26, 30, L"The system loads these extensions to add pages to the properties of files and folders."},
    {31, 35, L"The file explorer asks these extensions before a folder is moved, copied or deleted."},
    {36, 36,
     L"These extensions of the file explorer are registered as approved; what loads them stands elsewhere."},
    {37, 37, L"Internet Explorer loads these add-ons."},
    {38, 39, L"Internet Explorer asks these add-ons about an address that it does not understand."},
    {36, 39, L"Extensions of the file explorer and add-ons of Internet Explorer."},
    {kFirstLocation, kLastLocation,
     L"Everything that Windows starts or loads by itself from the places that are shown."},
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
      ->text;
}

std::vector<DetailLine> LocationLines(const LocationSet& locations, const std::wstring& title) {
  std::vector<DetailLine> lines = {{L"Shown", PlainText(title.empty() ? L"All entries" : title)},
                                   {L"What it is", PlainText(LocationSentence(locations))}};
  if (locations.count() != 1) return lines;
  std::int32_t location = kFirstLocation;
  while (!locations[static_cast<std::size_t>(location)]) ++location;
  lines.push_back({L"Stored in", PlainText(LocationPlace(LocationRowOf(location)))});
  return lines;
}

}  // namespace smh
