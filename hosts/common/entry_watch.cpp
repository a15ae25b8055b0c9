#include "hosts/common/entry_watch.h"

#include <iterator>

namespace smh {

namespace {

// Details that cannot be read are never marked as read: such an entry is shown without them.
constexpr unsigned kLooksUntilAnnounced = 15;

}  // namespace

EntryWatch::EntryWatch(std::span<const Sighting> sightings, const Reader& read) {
  for (std::size_t i = 0; i < sightings.size(); ++i) {
    Entry& entry = entries_[{sightings[i].location, sightings[i].name}];
    entry.record = read(i);
    entry.announced = true;
  }
}

std::vector<WatchEvent> EntryWatch::Update(std::span<const Sighting> sightings, const Reader& read) {
  for (auto& [identity, entry] : entries_) entry.seen = false;
  for (std::size_t i = 0; i < sightings.size(); ++i) {
    Entry& entry = entries_[{sightings[i].location, sightings[i].name}];
    entry.seen = true;
    // The library tells a change once: it stays due until it was read.
    entry.due =
        entry.due || sightings[i].changed ||
        (!entry.announced && (announce_ == Announce::kAtOnce || ++entry.looks >= kLooksUntilAnnounced));
    if (!entry.due) continue;
    entry.record = read(i);
    untold_.push_back({entry.announced ? L"changed" : L"added", entry.record});
    entry.announced = true;
    entry.due = false;
  }
  for (auto next = entries_.begin(); next != entries_.end();) {
    const auto current = next++;
    if (current->second.seen) continue;
    if (current->second.announced) untold_.push_back({L"removed", std::move(current->second.record)});
    entries_.erase(current);
  }
  return std::exchange(untold_, {});
}

}  // namespace smh
