// One look at the library's list, as EntryWatch wants it: what is listed at one moment, with the changed
// marks taken.
#pragma once

#include "hosts/common/entry_watch.h"
#include "hosts/common/library.h"

#include <utility>
#include <vector>

namespace smh {

// Calls `use(sightings, read)` with the entries in list order and a reader that copies the entry of a
// sighting; both are valid inside the call only. Holds the list's lock throughout, so `use` sees one state of
// the list and must be quick; it must not start or stop the reading. Takes the changed marks: one watcher per
// process sees every change. Raises HostError when the library refuses, and passes what `use` raises.
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
