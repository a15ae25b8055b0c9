// Takes an action back, or says what that would do.
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

// Taking an action back, or taking its undos back.
enum class Direction { kUndo, kRedo };

// What is to be undone: action `id`, 0 for the newest; only the parts of these numbers unless there are none.
struct UndoRequest {
  Direction direction = Direction::kUndo;
  std::uint32_t id = 0;
  std::vector<std::uint32_t> parts = {};
};

// As IJournal's slots, for a thread that has nothing open. kShow waits for no lock; the others plan under the
// journal's and have it again for each part, but not between two. Refusals are the result's status. Raises
// EOSError when the journal cannot be read, locked or written: nothing was changed then.
UndoResult RunUndo(const UndoRequest& request, UndoMode mode);

// Takes back what stands of an open checkpoint's innermost level, without writing that down; see
// ISafeguard::FailCheckpoint. A Win32 status: 0 when nothing of it is left. For the thread that opened it.
// Raises EOSError.
LSTATUS TakeBack(OpenCheckpoint& checkpoint);

}  // namespace smh
