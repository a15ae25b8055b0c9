// The commands that change entries. Each is what a row of AllCommands runs, with the options that stand
// there; change_runner.h has their one course. For the one thread of the program.
#pragma once

#include "hosts/cli/arguments.h"

namespace smh {

// enable, disable: move every entry back from the side place, or to it. One in that state is passed over with
// a message.
void RunEnable(const Arguments& arguments);
void RunDisable(const Arguments& arguments);

// delete: deletes every entry.
void RunDelete(const Arguments& arguments);

// add: makes the entry --name with --command in the one --location. The very same entry, there already, is a
// success with a message; an entry of that name with another command is a failure and stays as it is.
void RunAdd(const Arguments& arguments);

// move: takes entries, enabled or disabled as they are, to the location --to, which may give them other
// names.
void RunMove(const Arguments& arguments);

// change: gives entries --command. Refused when that differs from the one it has in case only.
void RunChange(const Arguments& arguments);

}  // namespace smh
