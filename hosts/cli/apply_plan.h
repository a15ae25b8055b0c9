// What has to be done so that a machine's entries are those of a snapshot. Pure functions, for any thread.
#pragma once

#include "hosts/cli/snapshot.h"

#include <optional>
#include <span>
#include <string>
#include <vector>

namespace smh {

enum class ApplyAction {
  kDelete,
  kChangeCommand,
  kEnable,
  kDisable,
  kAdd,
  kImpossible,  // for `reason`
};

// One step; those of one entry follow each other.
struct ApplyStep {
  ApplyAction action = ApplyAction::kImpossible;
  const ItemRecord* item = nullptr;       // the listed entry; null for one that is missing
  const SnapshotEntry* wanted = nullptr;  // what it has to become; null for one that has to go
  bool disabled = false;                  // of kAdd: the new entry is disabled at once
  std::wstring reason = {};               // of kImpossible: the end of a sentence
};

// Whether entries that the snapshot lacks stay or go.
enum class OtherEntries { kKept, kDeleted };

// The steps, in the order in which they are to be made: what has to go makes room for what comes. `wanted`
// has been adapted to `machine` (AdaptTo); pointers lead into both lists. Nothing is left to do after steps
// that all succeeded.
std::vector<ApplyStep> PlanApply(std::span<const SnapshotEntry> wanted, std::span<const ItemRecord> items,
                                 const MachineFacts& machine, OtherEntries others);

// Why an entry that is missing cannot be made; none when it can.
std::optional<std::wstring> WhyNotAddable(const SnapshotEntry& entry, const MachineFacts& machine);

// The name that AddItem takes for it: a shortcut's without extension.
std::wstring NameToAdd(const SnapshotEntry& entry);

}  // namespace smh
