// The one course of every command that changes entries: what stands in the way is asked for every entry
// before the first change, the user agrees to what is more than was named, each outcome is told, and behind
// the last change everything is read once more and compared. One failure does not hide the others. Everything
// together is one action for undo.
#pragma once

#include "hosts/cli/arguments.h"
#include "hosts/common/operations.h"

#include <string>
#include <vector>

namespace smh {

// How changes are made and told of, besides --quiet.
struct ChangeManner {
  bool isDryRun = false;    // --dry-run: only print what would be done
  bool isJson = false;      // --json: the outcomes on standard output
  bool mayGoOn = false;     // --yes
  bool isBroad = false;     // several entries that nobody has named one by one
  bool isRestDone = false;  // besides the changes there is more, which needs none: failures are a part
  std::wstring title{};     // of the action; empty: TitleOf tells
};

// Without what the arguments do not tell.
ChangeManner MannerOf(const Arguments& arguments);

// Changes every entry that the arguments mean, each once; loads the library and reads all locations for it.
// Ends as RunChanges does.
void ChangeEntries(const Arguments& arguments, Verb verb, const ChangeOrder& order = {});
// Adds one entry, with the library and all locations read for it; ends alike.
void AddEntry(const Arguments& arguments, EntryChange change);

// Makes the changes, in their order, and tells what became of each; one that has an outcome already is only
// told of. Raises HostError when one was refused or has failed: with ExitCode::kPartly when others were not,
// else with kFailed.
void RunChanges(const Library& library, std::vector<EntryChange> changes, const ChangeManner& manner);

}  // namespace smh
