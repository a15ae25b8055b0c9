// One look at the library's list, as EntryWatch wants it.
#pragma once

#include "hosts/common/entry_watch.h"
#include "hosts/common/library.h"

#include <utility>
#include <vector>

namespace smh {

// Holds the list still while `use` gets the sightings and a reader for them. Takes the marks of changed
// entries.
template <typename Use>
void Look(const Library& library, Use&& use) {
  const ListLock lock(library);
  std::vector<Sighting> sightings;
  std::vector<ComPtr<IStartupItem>> items;
  const std::int32_t count = library.Items().GetCount();
  for (std::int32_t index = 0; index < count; ++index) {
    ComPtr<IStartupItem> item = library.ItemAt(index);
    sightings.push_back({item->GetLocation(),
                         TakeText([&](BoundaryText* name) { return item->GetName(name); }),
                         item->ReadChanged() != FALSE});
    items.push_back(std::move(item));
  }
  use(sightings, [&items](std::size_t index) { return ReadItemRecord(*items[index]); });
}

}  // namespace smh
