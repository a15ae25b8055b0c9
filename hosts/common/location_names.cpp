#include "hosts/common/location_names.h"

#include "hosts/common/known_text.h"
#include "hosts/common/texts/location_texts.h"
#include "infra/registry/full_value_path.h"
#include "infra/runtime/ascii_text.h"

#include <algorithm>
#include <span>

namespace smh {

namespace {

// What may be left out in front of a name.
constexpr std::wstring_view kPrefixes[] = {L"", L"sul", L"sulRegistry"};

constexpr bool Holds(std::span<const Text> rows, std::wstring_view text) {
  return std::ranges::any_of(rows, [text](const Text& row) { return row.In(Language::kEnglish) == text; });
}

static_assert(std::ranges::all_of(std::span(kLocationTable).subspan(kFirstLocation),
                                  [](const LocationRow& row) {
                                    return Holds(texts::kLocationGroups, row.group) &&
                                           Holds(texts::kLocationTitles, row.title);
                                  }));

}  // namespace

std::wstring_view LocationName(std::int32_t location) noexcept {
  return LocationRowOf(location).memberName;
}

std::optional<TTypeStartupLocation> LocationByName(std::wstring_view name) noexcept {
  for (std::int32_t location = kFirstLocation; location <= kLastLocation; ++location) {
    const LocationRow& row = LocationRowOf(location);
    for (const std::wstring_view prefix : kPrefixes) {
      if (row.memberName.starts_with(prefix) && SameAsciiText(name, row.memberName.substr(prefix.size()))) {
        return row.location;
      }
    }
  }
  return std::nullopt;
}

std::wstring LocationPlace(const LocationRow& row) {
  std::wstring place(row.place);
  if (row.family == LocationFamily::kStartupFolder || row.root == LocationRoot::kBoth) return place;
  const HKEY root = row.root == LocationRoot::kUser ? HKEY_CURRENT_USER : HKEY_LOCAL_MACHINE;
  return std::wstring(RootKeyName(root)) + L'\\' + place;
}

std::vector<std::wstring_view> LocationActions(const LocationRow& row) {
  std::vector<std::wstring_view> actions{L"enable", L"disable", L"delete"};
  if (FamilyOf(row).canModify) actions.insert(actions.end(), {L"add", L"move", L"changeCommand"});
  return actions;
}

std::wstring FullTitle(std::int32_t location) {
  const LocationRow& row = LocationRowOf(location);
  std::wstring title = ShownLocationTitle(row);
  return FamilyOf(row).titleNeedsGroup ? Format(texts::kTitleInGroup, ShownLocationGroup(row), title) : title;
}

std::wstring ShownLocationTitle(const LocationRow& row) {
  return Known(texts::kLocationTitles, row.title).Shown();
}

std::wstring ShownLocationGroup(const LocationRow& row) {
  return Known(texts::kLocationGroups, row.group).Shown();
}

bool IsUserLocation(std::int32_t location) noexcept {
  return LocationRowOf(location).root == LocationRoot::kUser;
}

}  // namespace smh
