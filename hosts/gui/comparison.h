// The entries of now beside those of a saved state. Pure but for the user's forms of dates; any thread.
#pragma once

#include "hosts/common/item_record.h"
#include "hosts/common/snapshot_compare.h"
#include "hosts/gui/entry_details.h"

#include <array>
#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace smh {

// How an entry differs, and what was saved of it; nothing was of one that was added.
struct EntryDifference {
  DifferenceKind kind = DifferenceKind::kAdded;
  std::optional<SnapshotEntry> before;
};

struct ComparedEntries {
  // For each of the items that were compared, at its position; none for what is as it was.
  std::vector<std::optional<EntryDifference>> items;
  // The positions of the saved entries that are not there.
  std::vector<std::size_t> gone;
};

ComparedEntries Compare(const Snapshot& before, std::span<const ItemRecord* const> now);

// An entry that is only in the saved state, as a record that nothing can be done with.
ItemRecord GoneRecord(const SnapshotEntry& entry);

// By DifferenceKind.
using DifferenceCounts = std::array<std::size_t, 4>;
// "Added", "Removed", "Changed", "Switched".
std::wstring_view DifferenceTitle(DifferenceKind kind) noexcept;
// "2 added, 1 switched", "nothing differs".
std::wstring DifferenceCountText(const DifferenceCounts& counts);
// What was saved, as the first lines of the details.
std::vector<DetailLine> DifferenceLines(const EntryDifference& difference);

}  // namespace smh
