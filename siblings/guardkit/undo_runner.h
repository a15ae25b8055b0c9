// Takes an action back, or says what that would do.
#pragma once

#include "siblings/guardkit/checkpoints.h"
#include "siblings/guardkit/undo_choice.h"

namespace smh {

// As IJournal's slots, for a thread that has nothing open. kShow waits for no lock; the others plan under the
// journal's and have it again for each part, but not between two. Refusals are the result's status. Raises
// EOSError when the journal cannot be read, locked or written: nothing was changed then.
UndoResult RunUndo(const UndoRequest& request, UndoMode mode);

// Takes back what stands of an open checkpoint's innermost level, without writing that down; see
// ISafeguard::FailCheckpoint. A Win32 status: 0 when nothing of it is left. For the thread that opened it.
// Raises EOSError.
LSTATUS TakeBack(OpenCheckpoint& checkpoint);

}  // namespace smh
