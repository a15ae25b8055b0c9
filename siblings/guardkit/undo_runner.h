// Takes a checkpoint back, or says what that would do.
#pragma once

#include "siblings/guardkit/journal_index.h"
#include "siblings/guardkit/format/undo_plan.h"

namespace smh {

struct UndoneStep {
  StepOutcome outcome = StepOutcome::kNothing;
  std::wstring text;
};

struct UndoResult {
  HRESULT status = S_OK;
  std::uint32_t checkpoint = 0;
  std::uint32_t ownCheckpoint = 0;
  std::wstring title;
  std::vector<UndoneStep> steps;
};

enum class Direction { kUndo, kRedo };

// As IJournal's slots. This thread has no checkpoint open. Raises EOSError when the journal cannot be read.
UndoResult RunUndo(Direction direction, std::uint32_t id, UndoMode mode);

}  // namespace smh
