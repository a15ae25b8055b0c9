// Starting an item's command on the user's request.
#pragma once

#include "model/uStartupItem.h"

namespace smh {

// Starts the command through the shell, on the calling thread, which waits for the shell and for the message
// box, without a lock. `window` owns both and may be null. A failure is logged, shown in a message box and
// then raised as EOSError.
void ExecuteItem(const TStartupItem& item, HWND window);

}  // namespace smh
