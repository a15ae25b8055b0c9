// What differs between two states of a machine's entries. Pure functions, for any thread.
#pragma once

#include "hosts/common/snapshot.h"
#include "hosts/common/text.h"

#include <span>
#include <string_view>
#include <vector>

namespace smh {

// kChanged: another text, and perhaps another state; kSwitched: the same text in the other state.
enum class DifferenceKind { kAdded, kRemoved, kChanged, kSwitched };

// One difference; `before` and `after` are elements of the two lists, null for what is only in the other.
struct Difference {
  DifferenceKind kind;
  const SnapshotEntry* before;
  const SnapshotEntry* after;

  // The one that there is, the later one first.
  const SnapshotEntry& Entry() const noexcept { return after != nullptr ? *after : *before; }
};

// Entries of one identity (CompareIdentity) are paired, equal ones first; in what order the lists stand does
// not matter. The answer is ordered by location and name, and valid as long as the lists are.
std::vector<Difference> CompareEntries(std::span<const SnapshotEntry> before,
                                       std::span<const SnapshotEntry> after);

// "added", "removed", "changed", "switched": for programs, and for people.
std::wstring_view DifferenceName(DifferenceKind kind) noexcept;
const Text& DifferenceText(DifferenceKind kind) noexcept;

}  // namespace smh
