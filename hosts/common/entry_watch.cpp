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
  std::vector<WatchEvent> events;
  for (auto& [identity, entry] : entries_) entry.seen = false;
  for (std::size_t i = 0; i < sightings.size(); ++i) {
    Entry& entry = entries_[{sightings[i].location, sightings[i].name}];
    entry.seen = true;
    const bool due =
        sightings[i].changed ||
        (!entry.announced && (announce_ == Announce::kAtOnce || ++entry.looks >= kLooksUntilAnnounced));
    if (!due) continue;
    entry.record = read(i);
    events.push_back({entry.announced ? L"changed" : L"added", entry.record});
    entry.announced = true;
  }
  for (auto next = entries_.begin(); next != entries_.end();) {
    const auto current = next++;
    if (current->second.seen) continue;
    if (current->second.announced) events.push_back({L"removed", std::move(current->second.record)});
    entries_.erase(current);
  }
  return events;
}

}  // namespace smh
