// What `watch` prints of the events that EntryWatch tells of.
#pragma once

#include "hosts/cli/arguments.h"
#include "hosts/common/entry_watch.h"
#include "hosts/common/library.h"

#include <vector>

namespace smh {

// One field of an entry that is not what it was.
struct FieldChange {
  std::wstring_view key;
  FieldValue before, now;
};
// The fields that differ, in the order of ItemFields, but those that are no matter of the entry's own: its
// position, its image, and when its file was read last. Pure.
std::vector<FieldChange> ChangesOf(const WatchEvent& event);

// Prints events in the format of the command line; for one thread.
class EventPrinter {
 public:
  // Raises a usage error for --columns that are none. The arguments outlive the object.
  EventPrinter(const Arguments& arguments, const Selector& selector);

  // What stands before the first event.
  void Begin() const;
  // An event, with the time of this moment, unless the entry is not meant as it is and as it was, or
  // nothing changed that is shown.
  void Print(const Library& library, WatchEvent event) const;

 private:
  std::wstring Text(const WatchEvent& event) const;

  const Arguments& arguments_;
  const Selector& selector_;
  std::vector<ItemField> fields_;
};

}  // namespace smh
