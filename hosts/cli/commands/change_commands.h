// The commands that change entries. Each is what a row of AllCommands runs, with the options that stand
// there: it loads the library for itself, reads all locations, and looks the outcome up in the list
// afterwards. Nothing goes to standard output; messages name what was done, and what needed no change. Raises
// HostError when the library refuses or the outcome is missing. For the one thread of the program.
#pragma once

#include "hosts/cli/arguments.h"

namespace smh {

// enable, disable: move every ITEM back from the side place, or to it, as ChangeItems does. An entry in that
// state is passed over with a message.
void RunEnable(const Arguments& arguments);
void RunDisable(const Arguments& arguments);

// delete: deletes every ITEM as ChangeItems does, without a question.
void RunDelete(const Arguments& arguments);

// add: makes the entry --name with --command in the one --location. The very same entry, there already, is a
// success with a message; an entry of that name with another command is a failure and stays as it is.
void RunAdd(const Arguments& arguments);

// move: takes the ITEM, enabled or disabled as it is, to the location --to, which may give it another name.
void RunMove(const Arguments& arguments);

// change: gives the ITEM --command. Refused when that differs from the one it has in case only.
void RunChange(const Arguments& arguments);

}  // namespace smh
