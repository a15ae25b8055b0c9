#include "hosts/common/entry_watch.h"

#include <algorithm>
#include <string>
#include <tuple>

namespace smh {

namespace {

// Details that cannot be read are never marked as read: such an entry is shown without them.
constexpr unsigned kLooksUntilAnnounced = 15;
constexpr unsigned kLooksUntilBothStand = 15;

}  // namespace

EntryWatch::EntryWatch(std::span<const Sighting> sightings, const Reader& read) {
  for (std::size_t i = 0; i < sightings.size(); ++i) {
    Entry& entry = entries_[{sightings[i].location, sightings[i].name}];
    entry.record = read(i);
    entry.announced = true;
  }
}

bool EntryWatch::IsDue(Entry& entry, const Sighting& sighting) const noexcept {
  // The library tells a change once: it stays due until it was read.
  return entry.due || sighting.changed ||
         (!entry.announced && (announce_ == Announce::kAtOnce || ++entry.looks >= kLooksUntilAnnounced));
}

// Whether a new entry may be what becomes of one that is still there.
bool EntryWatch::MayReplace(Entry& entry, const ItemRecord& now) {
  if (announce_ == Announce::kAtOnce || !expectsMore_ || entry.announced || entry.before) return false;
  if (entry.held >= kLooksUntilBothStand) return false;
  const bool isBeside = std::ranges::any_of(entries_, [&](const auto& row) {
    const ItemRecord& other = row.second.record;
    return row.second.announced && row.second.seen && other.location == now.location &&
           other.enabled != now.enabled && other.caption == now.caption && other.command == now.command;
  });
  if (isBeside) ++entry.held;
  return isBeside;
}

// Gives those that have come what they were under another name.
void EntryWatch::Pair(std::span<const Sighting> sightings, const Reader& read) {
  const auto likeness = [](const ItemRecord& item, bool enabled) {
    return std::make_tuple(item.location, enabled, item.caption, item.command);
  };
  std::multimap<std::tuple<std::int32_t, bool, std::wstring, std::wstring>, Entry*> gone;
  for (auto& [identity, entry] : entries_) {
    if (!entry.seen && entry.announced) gone.emplace(likeness(entry.record, !entry.record.enabled), &entry);
  }
  for (std::size_t i = 0; i < sightings.size() && !gone.empty(); ++i) {
    Entry& come = entries_[{sightings[i].location, sightings[i].name}];
    if (come.announced || come.before) continue;
    const ItemRecord record = read(i);
    const auto was = gone.find(likeness(record, record.enabled));
    if (was == gone.end()) continue;
    come.before = std::move(was->second->record);
    was->second->announced = false;
    gone.erase(was);
  }
}

void EntryWatch::Tell(Entry& entry, ItemRecord now) {
  WatchEvent event{L"added", now};
  if (entry.announced) {
    event.kind = now.enabled == entry.record.enabled ? L"changed" : now.enabled ? L"enabled" : L"disabled";
    event.before = std::move(entry.record);
  } else if (entry.before) {
    event.kind = now.enabled ? L"enabled" : L"disabled";
    event.before = std::exchange(entry.before, std::nullopt);
  }
  untold_.push_back(std::move(event));
  entry.record = std::move(now);
  entry.announced = true;
  entry.due = false;
}

std::vector<WatchEvent> EntryWatch::Update(std::span<const Sighting> sightings, const Reader& read) {
  for (auto& [identity, entry] : entries_) entry.seen = false;
  for (const Sighting& sighting : sightings) {
    Entry& entry = entries_[{sighting.location, sighting.name}];
    entry.seen = true;
    entry.due = IsDue(entry, sighting);
  }
  Pair(sightings, read);
  for (std::size_t i = 0; i < sightings.size(); ++i) {
    Entry& entry = entries_[{sightings[i].location, sightings[i].name}];
    if (!entry.due) continue;
    ItemRecord now = read(i);
    if (!MayReplace(entry, now)) Tell(entry, std::move(now));
  }
  for (auto next = entries_.begin(); next != entries_.end();) {
    const auto current = next++;
    Entry& entry = current->second;
    if (entry.seen) continue;
    if (entry.announced) untold_.push_back({L"removed", std::move(entry.record)});
    if (entry.before) untold_.push_back({L"removed", *std::move(entry.before)});
    entries_.erase(current);
  }
  return std::exchange(untold_, {});
}

}  // namespace smh
