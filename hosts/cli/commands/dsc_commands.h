// The commands for configuration engines (docs/dsc.md). Each is what a row of AllCommands runs, raises
// HostError when it fails, and loads the library for itself. The answer on standard output is lines of JSON.
// For the one thread of the program.
#pragma once

#include "hosts/cli/arguments.h"

namespace smh {

// dsc get, dsc test: the state of the instance in --input, else on standard input.
void RunDscGet(const Arguments& arguments);
void RunDscTest(const Arguments& arguments);

// dsc set: makes that state, as one action for undo, and answers what came of it. Raises HostError when the
// library refuses.
void RunDscSet(const Arguments& arguments);

// dsc export: the states of all instances, of which --input may select some.
void RunDscExport(const Arguments& arguments);

// dsc schema: what an instance may hold. Loads no library.
void RunDscSchema(const Arguments& arguments);

}  // namespace smh
