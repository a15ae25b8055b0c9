// What an undo is asked for and answers, and which actions and parts of the journal that means.
#pragma once

#include "siblings/guardkit/journal_index.h"

#include <string>
#include <vector>

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

// Each answers from a snapshot and changes nothing. Any thread; raise std::bad_alloc.
//
// The actions to undo, oldest first: for a bare undo the user's newest, for a redo the undos. None with the
// reason in the result's status; the result names the action that is meant, or that stands in the way.
std::vector<const IndexedAction*> ChooseActions(const std::vector<IndexedAction>& index,
                                                const UndoRequest& request, const std::wstring& user,
                                                UndoResult& result);
// The parts of it to undo, in their order, all that were not undone when there are no numbers. None with the
// reason in `status`.
std::vector<const IndexedPart*> ChooseParts(const IndexedAction& action,
                                            const std::vector<std::uint32_t>& numbers, HRESULT& status);
// Whether one of them is damaged; whether somebody is undoing one now, other than the action `own`.
bool HasDamaged(const std::vector<const IndexedAction*>& actions);
bool IsBeingUndone(const std::vector<IndexedAction>& index, const std::vector<const IndexedAction*>& actions,
                   std::uint32_t own);

}  // namespace smh
