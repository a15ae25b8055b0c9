// Which entries `list` and `watch` show.
#pragma once

#include "hosts/common/item_record.h"
#include "hosts/common/reading.h"

#include <optional>
#include <span>
#include <vector>

namespace smh {

// What --all, --location and --enabled or --disabled leave of the entries.
struct ItemFilter {
  bool allLocations = false;            // read all locations, whichever are shown
  std::vector<std::int32_t> locations;  // empty: all that were read
  std::optional<bool> enabled;          // none: in either state

  // Whether the entry is in a location that was named, and in the state that was named; what was not named
  // does not matter.
  bool Shows(const ItemRecord& item) const;
  // What has to be read. Naming a location that is not read by default is reason enough to read all.
  ReadScope Scope() const;
  // Copies of the entries that are shown, in their order.
  std::vector<ItemRecord> Select(std::span<const ItemRecord> items) const;
};

}  // namespace smh
