// What has to be done so that a machine's entries are those of a snapshot. Functions without a system, for
// any thread.
#pragma once

#include "hosts/common/operations.h"
#include "hosts/common/phrase.h"
#include "hosts/common/snapshot.h"

#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace smh {

// What one entry needs.
struct ApplyStep {
  Verb verb = Verb::kAdd;                 // one of those that ChangesOf can order
  const ItemRecord* item = nullptr;       // the listed entry; null for one that is missing
  const SnapshotEntry* wanted = nullptr;  // what it has to become; null for one that has to go
  Phrase reason = {};                     // why it cannot be done, the end of a sentence; empty when it can
};

// Whether entries that the snapshot lacks stay or go.
enum class OtherEntries { kKept, kDeleted };

// The steps, in the order in which they are to be made: what has to go makes room for what comes. `wanted`
// has been adapted to `machine` (AdaptTo); pointers lead into both lists. Nothing is left to do after steps
// that all succeeded.
std::vector<ApplyStep> PlanApply(std::span<const SnapshotEntry> wanted, std::span<const ItemRecord> items,
                                 const MachineFacts& machine, OtherEntries others);

// The steps as changes, those that cannot be done with their outcome. `wrapperOf` finds a listed entry.
using WrapperFinder = std::function<ComPtr<IStartupItem>(const ItemRecord& item)>;
std::vector<EntryChange> ChangesOf(std::span<const ApplyStep> steps, const WrapperFinder& wrapperOf);

// Why an entry that is missing cannot be made; none when it can.
std::optional<Phrase> WhyNotAddable(const SnapshotEntry& entry, const MachineFacts& machine);

// The name that AddItem takes for it: a shortcut's without extension.
std::wstring NameToAdd(const SnapshotEntry& entry);

}  // namespace smh
