// Undoing single steps. Every change is recorded in the checkpoint of the undo.
//
// No link is followed on the way: neither a registry link nor a reparse point, and the folders that lead to a
// file are held in place meanwhile.
#pragma once

#include "core/contracts/intf_journal.h"
#include "siblings/guardkit/checkpoints.h"
#include "siblings/guardkit/format/undo_plan.h"

namespace smh {

// Brings back what was before the step. The caller has planned it, and the step is the user's own. In
// conflict it is only when forced, and goes over whatever is there; otherwise what the step left must still
// be there. Of a key everything is brought back that can be. For the thread that opened the checkpoint.
// Raises EOSError when that is not so (ERROR_REVISION_MISMATCH) or the system refuses; what was changed until
// then is recorded.
StepOutcome UndoStep(OpenCheckpoint& checkpoint, const Step& step, bool isConflict);

// Whether taking the step back, without force, neither deletes nor overwrites anything. Any thread.
bool OnlyBringsBack(const Step& step);

// For people: "Restore the value ...". Names come as they are, not yet printable.
std::wstring DescribeUndo(const Step& step);

}  // namespace smh
