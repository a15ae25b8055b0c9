// The command about Task Manager's switches as such, beside those of entries. It loads what it needs for
// itself, and raises HostError when it fails. For the one thread of the program.
#pragma once

#include "hosts/cli/arguments.h"

namespace smh {

// switches: every switch with the entry that it belongs to, as a table, JSON or CSV. With --prune the orphans
// are taken away instead, as one action for undo; --dry-run, --json and --csv show which.
void RunSwitches(const Arguments& arguments);

}  // namespace smh
