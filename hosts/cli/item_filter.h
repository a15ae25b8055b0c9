// Which entries `list` and `watch` show.
#pragma once

#include "hosts/common/item_record.h"
#include "hosts/common/reading.h"

#include <optional>
#include <span>
#include <vector>

namespace smh {

struct ItemFilter {
  bool allLocations = false;
  std::vector<std::int32_t> locations;  // empty: all that were read
  std::optional<bool> enabled;

  bool Shows(const ItemRecord& item) const;
  // Naming a location that is not read usually is reason enough to read all.
  ReadScope Scope() const;
  // The entries that are shown, in their order.
  std::vector<ItemRecord> Select(std::span<const ItemRecord> items) const;
};

}  // namespace smh
