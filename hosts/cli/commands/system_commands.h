// The commands that tell of the system and of the library rather than of single entries; they change nothing.
// Each is what a row of AllCommands runs, with the options that stand there: it loads what it needs for
// itself, writes its result to standard output, and raises HostError when it fails. For the one thread of the
// program.
#pragma once

#include "hosts/cli/arguments.h"

namespace smh {

// locations: every location with its key or folder, what it allows, and how many entries it has in either
// state, as a table or JSON. Reads all of them.
void RunLocations(const Arguments& arguments);

// clients: the default programs and those of --add, as a table, JSON or CSV; a message names each path of
// --add without a file. Blocks until their details are read.
void RunClients(const Arguments& arguments);

// resolve: the file that the COMMANDLINE starts; a failure when it names none, and when that file is missing,
// which is printed all the same.
void RunResolve(const Arguments& arguments);

// log: the path of the library's log file, which need not exist yet. Loads the helper library only.
void RunLog(const Arguments& arguments);

// windows: the application windows of the desktop, as a table. Loads no library.
void RunWindows(const Arguments& arguments);

}  // namespace smh
