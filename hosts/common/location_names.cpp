#include "hosts/common/location_names.h"

#include "infra/registry/full_value_path.h"
#include "infra/runtime/ascii_text.h"

namespace smh {

namespace {

// What may be left out in front of a name.
constexpr std::wstring_view kPrefixes[] = {L"", L"sul", L"sulRegistry"};

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
  std::wstring title(row.title);
  if (FamilyOf(row).titleNeedsGroup) title.insert(0, std::wstring(row.group) + L": ");
  return title;
}

bool IsUserLocation(std::int32_t location) noexcept {
  return LocationRowOf(location).root == LocationRoot::kUser;
}

}  // namespace smh
