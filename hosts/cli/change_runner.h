// The one course of every command that changes entries: what stands in the way is asked for every entry
// before the first change, each outcome is told, and behind the last change everything is read once more and
// compared. One failure does not hide the others.
#pragma once

#include "hosts/cli/arguments.h"
#include "hosts/common/operations.h"

#include <string>
#include <vector>

namespace smh {

// Changes every entry that the arguments mean, each once; loads the library and reads all locations for it.
// Ends as RunChanges does.
void ChangeEntries(const Arguments& arguments, Verb verb, const ChangeOrder& order = {});

// Adds one entry, with the library and all locations read for it; ends alike.
void AddEntry(EntryChange change);

// Makes the changes, in their order, and tells what became of each. Raises HostError with
// ExitCode::kPartly when one was refused or failed and others were not, with kFailed when all were.
void RunChanges(const Library& library, std::vector<EntryChange> changes);

// What a message says of an outcome: "Disabled "X" in sulRegistryUserRun, now 1a2b3c4d."
std::wstring OutcomeText(const EntryChange& change, const Outcome& outcome);

}  // namespace smh
