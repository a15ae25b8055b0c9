// The commands on the journal of changes. Each is what a row of AllCommands runs, with the options that stand
// there: it asks the journal's library only, and raises HostError when that refuses. For the one thread of
// the program.
#pragma once

#include "hosts/cli/arguments.h"

namespace smh {

// checkpoints: everything that the journal holds, undos among it, as a table or JSON on standard output.
void RunCheckpoints(const Arguments& arguments);

// undo: takes the checkpoint ID back, without one the newest change. A conflict with later changes is a
// failure that names its steps and changes nothing; --force goes on over them, --show prints what each step
// would do and changes nothing.
void RunUndo(const Arguments& arguments);

// redo: makes the changes of the undone checkpoint ID again; conflict, --force and --show as above.
void RunRedo(const Arguments& arguments);

}  // namespace smh
