#include "hosts/cli/item_filter.h"

#include "hosts/common/location_names.h"

#include <algorithm>

namespace smh {

bool ItemFilter::Shows(const ItemRecord& item) const {
  if (enabled && item.enabled != *enabled) return false;
  return locations.empty() || std::find(locations.begin(), locations.end(), item.location) != locations.end();
}

ReadScope ItemFilter::Scope() const {
  const bool all = allLocations || !std::all_of(locations.begin(), locations.end(), IsReadByDefault);
  return all ? ReadScope::kAll : ReadScope::kUsual;
}

std::vector<ItemRecord> ItemFilter::Select(std::span<const ItemRecord> items) const {
  std::vector<ItemRecord> shown;
  std::copy_if(items.begin(), items.end(), std::back_inserter(shown),
               [this](const ItemRecord& item) { return Shows(item); });
  return shown;
}

}  // namespace smh
