// Takes a checkpoint back, or says what that would do.
#pragma once

#include "siblings/guardkit/checkpoints.h"
#include "siblings/guardkit/format/undo_plan.h"
#include "siblings/guardkit/journal_index.h"

namespace smh {

// What became, or would become, of one step, and what that means in words.
struct UndoneStep {
  StepOutcome outcome = StepOutcome::kNothing;
  std::wstring text;
};

// What IUndoReport answers, and the slot's result.
struct UndoResult {
  HRESULT status = S_OK;
  std::uint32_t checkpoint = 0;
  std::uint32_t ownCheckpoint = 0;
  std::wstring title;
  std::vector<UndoneStep> steps;
};

// Taking a checkpoint back, or taking its undo back.
enum class Direction { kUndo, kRedo };

// As IJournal's slots, for a thread that has no checkpoint open. kShow waits for no lock; the others have the
// journal's while they plan and change. Refusals are the result's status. Raises EOSError when the journal
// cannot be read, locked or written: nothing was changed then.
UndoResult RunUndo(Direction direction, std::uint32_t id, UndoMode mode);

// Takes back what stands of an open checkpoint's innermost level, without writing that down; see
// ISafeguard::FailCheckpoint. A Win32 status: 0 when nothing of it is left. For the thread that opened it.
// Raises EOSError when the journal cannot be read.
LSTATUS TakeBack(OpenCheckpoint& checkpoint);

}  // namespace smh
