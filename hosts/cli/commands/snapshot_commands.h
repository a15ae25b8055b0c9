// The commands on snapshots, states of the entries in files. Each is what a row of AllCommands runs, with the
// options that stand there: it loads the library for itself, reads all locations, and raises HostError when
// it fails. For the one thread of the program.
#pragma once

#include "hosts/cli/arguments.h"

namespace smh {

// snapshot: writes the state of all entries to the file. One that is there is replaced when all went well.
void RunSnapshot(const Arguments& arguments);

// compare: what differs between the file and this machine, or a second file, as a table or JSON; raises
// ExitCode::kDifferent when anything does. Without a library for two files.
void RunCompare(const Arguments& arguments);

// apply: brings the entries to the state in the file, as one action for undo. What cannot be done is told
// entry by entry, and raises ExitCode::kPartly behind the rest.
void RunApply(const Arguments& arguments);

}  // namespace smh
