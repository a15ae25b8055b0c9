// The commands that take changes back and make them again. Each is what a row of AllCommands runs, with the
// options that stand there: it asks the journal's library only, and raises HostError when that refuses. For
// the one thread of the program.
#pragma once

#include "hosts/cli/arguments.h"

namespace smh {

// undo: takes the checkpoint ID back, without one the newest change, with --only those parts of it. A
// conflict with later changes is a failure that names its steps and changes nothing; --force goes on over
// them, --show prints what each step would do and changes nothing.
void RunUndo(const Arguments& arguments);

// redo: makes the changes of the undone checkpoint ID again, without one those of the last undo; conflict,
// --force and --show as above.
void RunRedo(const Arguments& arguments);

}  // namespace smh
