// The commands on the journal of changes. Each is what a row of AllCommands runs, with the options that stand
// there: it asks the journal's library only, and raises HostError when that refuses. For the one thread of
// the program.
#pragma once

#include "hosts/cli/arguments.h"

namespace smh {

// checkpoints: everything that the journal holds, undos among it, the newest first, as a table, JSON or CSV
// on standard output; --limit of them.
void RunCheckpoints(const Arguments& arguments);

// checkpoints show: the checkpoint ID and its parts, as lines and a table or as JSON. One that is damaged is
// shown as far as it can be read.
void RunShowCheckpoint(const Arguments& arguments);

// checkpoints prune: forgets the IDs, or those that --keep and --days leave over, for which the user is
// asked. Goes on behind one that cannot be forgotten and fails then.
void RunPruneCheckpoints(const Arguments& arguments);

// undo: takes the checkpoint ID back, without one the newest change, with --only those parts of it. A
// conflict with later changes is a failure that names its steps and changes nothing; --force goes on over
// them, --show prints what each step would do and changes nothing.
void RunUndo(const Arguments& arguments);

// redo: makes the changes of the undone checkpoint ID again, without one those of the last undo; conflict,
// --force and --show as above.
void RunRedo(const Arguments& arguments);

}  // namespace smh
