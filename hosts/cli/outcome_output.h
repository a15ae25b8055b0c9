// What is printed of changes: a message for each outcome, and the same for programs. Pure, for any thread.
#pragma once

#include "hosts/common/operations.h"

#include <span>
#include <string>

namespace smh {

// What a message says: "Disabled "X" in sulRegistryUserRun, now 1a2b3c4d.", "Cannot disable "X" in ...: why".
// Not yet printable.
std::wstring OutcomeText(const EntryChange& change, const Outcome& outcome);
// What would be done, as lines: the entry and its steps, or what stands in the way, which is the outcome of a
// change that has one. Printable.
std::wstring PreviewText(const EntryChange& change);
// An array with an object per change: id, location, name, caption, action, outcome ("done", "nothing to do",
// "refused", "failed", and "planned" for one without an outcome, which has `steps` too), text, and where the
// entry is now: newId, newLocation, newName, null where that is not known or nothing is left.
std::wstring OutcomesJson(std::span<const EntryChange> changes);

}  // namespace smh
