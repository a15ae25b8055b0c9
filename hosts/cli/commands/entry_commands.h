// The commands that look at entries, start them and show their place; none changes an entry. Each is what a
// row of AllCommands runs, with the options that stand there: it loads the library for itself, reads to the
// end, writes its result to standard output and what happened to standard error, and raises HostError when it
// fails. For the one thread of the program.
#pragma once

#include "hosts/cli/arguments.h"

namespace smh {

// list: the entries that --all, --location, --enabled and --disabled leave, as a table, JSON or CSV.
void RunList(const Arguments& arguments);

// show: every field of the ITEM, as lines or JSON.
void RunShow(const Arguments& arguments);

// watch: a line, an object or a row for every entry that comes, goes or changes, of those that the same
// options leave. Blocks until --seconds are over, Ctrl+C is pressed or the console is closed; the handler of
// the last two is set for that time only, and one watch runs at a time.
void RunWatch(const Arguments& arguments);

// execute: starts the command of the ITEM and does not wait for it. Refused unless its file is there and a
// program. Boxes that the library would open stay away.
void RunExecute(const Arguments& arguments);

// locate: prints where the ITEM lives, then opens the system's tool there. The place is printed even when the
// tool cannot be started, which is a failure.
void RunLocate(const Arguments& arguments);

}  // namespace smh
