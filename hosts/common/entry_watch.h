// Telling what came, went and changed between two looks at the list of entries. Knows neither library nor
// lock: each look is handed in, and the events are copies.
#pragma once

#include "hosts/common/item_record.h"

#include <functional>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace smh {

// One entry at one look. Location and name are its identity.
struct Sighting {
  std::int32_t location;
  std::wstring name;
  bool changed;  // the library's mark: its details were read, for the first time or again
};

// What happened to one entry between two looks.
struct WatchEvent {
  std::wstring_view kind;  // "added", "removed", "changed", "enabled", "disabled"; a literal, valid for ever
  ItemRecord item;         // as it is now; what was known last of an entry that has gone
  // What was known before of one that changed, or that was enabled or disabled, which may give it another
  // name.
  std::optional<ItemRecord> before = {};
};

// When a new entry is told of: when its details are there, for a console, or at once, for a window that fills
// them in.
enum class Announce { kComplete, kAtOnce };

// Keeps a copy of every entry that was seen. One thread at a time uses an object.
class EntryWatch {
 public:
  // Copies the entry of the sighting with that index. What it raises passes through; what the look had found
  // by then is told by the next one.
  using Reader = std::function<ItemRecord(std::size_t index)>;

  // Knows nothing yet: everything in the next look is new.
  explicit EntryWatch(Announce announce) : announce_(announce) {}
  // Takes the first look, which raises no events: everything in it counts as known.
  EntryWatch(std::span<const Sighting> sightings, const Reader& read);

  // Takes the next look and answers the differences: first the entries that came or changed, in list order,
  // then those that went. With Announce::kComplete a new entry is held back until the library has marked it
  // as read, for at most fifteen looks; one that goes before that is never told of. One that goes while one
  // of its location, caption and command comes in the other state was enabled or disabled: that is told when
  // the new one is. A look in the middle of such a change finds both: then the new one is held back as long,
  // for the other to go.
  std::vector<WatchEvent> Update(std::span<const Sighting> sightings, const Reader& read);
  // Before the last look: nothing is held back any more because of what may still go.
  void ExpectNoMore() noexcept { expectsMore_ = false; }

 private:
  struct Entry {
    ItemRecord record;
    bool announced = false;
    bool due = false;
    unsigned looks = 0;
    // For one of the other state to go.
    unsigned held = 0;
    bool seen = true;
    // What it was, of one that was enabled or disabled and is still held back.
    std::optional<ItemRecord> before = {};
  };
  using Entries = std::map<std::pair<std::int32_t, std::wstring>, Entry>;

  bool IsDue(Entry& entry, const Sighting& sighting) const noexcept;
  bool MayReplace(Entry& entry, const ItemRecord& now);
  void Pair(std::span<const Sighting> sightings, const Reader& read);
  void Tell(Entry& entry, ItemRecord now);

  Announce announce_ = Announce::kComplete;
  bool expectsMore_ = true;
  Entries entries_;
  // What a look that failed had found.
  std::vector<WatchEvent> untold_;
};

}  // namespace smh
