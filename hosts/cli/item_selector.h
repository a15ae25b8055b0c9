// Which entries a command line means: those that `list` and `watch` show, and the one of an ITEM.
#pragma once

#include "hosts/common/item_record.h"
#include "hosts/common/library.h"
#include "hosts/common/reading.h"

#include <optional>
#include <span>
#include <string>
#include <string_view>
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

// `text` is the name of an entry, else a caption that only one of the entries has; case is ignored, but of
// names that differ in case only the one that is written exactly so is meant. `location` leaves out the
// entries of every other location. When nothing matches, the text is tried once more with its \uXXXX and
// \u{X} escapes replaced.
//
// With `preferred`, of several entries that share a caption those in that state are meant, if there are any.
// Answers an element of `items`. Raises HostError when no entry matches, and when several do: the message
// lists them.
const ItemRecord& SelectItem(std::span<const ItemRecord> items, std::wstring_view text,
                             std::optional<std::int32_t> location, std::optional<bool> preferred = {});

// The entry in the list as it is now, with a reference of the caller's. Takes the list's lock for the search;
// the entry may go right after. Raises HostError when it has gone.
ComPtr<IStartupItem> RequireListedItem(const Library& library, const ItemRecord& item);

}  // namespace smh
