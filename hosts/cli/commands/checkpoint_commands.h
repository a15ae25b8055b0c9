// The commands on what the journal holds. Each is what a row of AllCommands runs, with the options that stand
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

}  // namespace smh
