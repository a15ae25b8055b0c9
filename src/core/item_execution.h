// Starting an item's command on the user's request.
#pragma once

#include "model/uStartupItem.h"

namespace smh {

// Starts the command through the shell. A failure is logged, shown in a message box and then raised as
// EOSError.
void ExecuteItem(const TStartupItem& item, HWND window);

}  // namespace smh
