#include "hosts/gui/location_titles.h"

namespace smh {

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
