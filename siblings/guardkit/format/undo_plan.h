// What undoing a checkpoint has to do: a comparison of every step with what is found, without any change.
#pragma once

#include "siblings/guardkit/format/system_state.h"

namespace smh {

// What undoing a step would do.
enum class Verdict {
  kUndo,
  // It never happened, or nothing of it is left.
  kNothing,
  // Neither the state that the step left is there, nor, for a step that is not known to be done, the one
  // before it. Or what it left is a copy whose source will not stand: it would be the only one.
  kConflict,
  // What is there cannot be looked at: no rights, or a link stands in the way.
  kBlocked,
};

// A step and what undoing it would do.
struct PlannedStep {
  std::size_t number = 0;  // in the checkpoint
  Verdict verdict = Verdict::kNothing;
  // In conflict because what it would remove is the only copy.
  bool isOnlyCopy = false;
};

// A step is known to be done when it is marked so and the checkpoint ended well: a call may have done what it
// answered to have refused, and what did not end well may have been taken back in part.
//
// In the order of undoing: last step first. A step is compared with the state that undoing the later steps
// will have left, so that a plan may be made before anything is done. Takes time by the count of steps.
// Changes nothing; `system` is borrowed for the call. Raises std::bad_alloc. Any thread.
std::vector<PlannedStep> PlanUndo(const JournalContents& checkpoint, SystemState& system);

// Whether the source of a step stands as it was; true for none. Raises what the reads raise.
bool SourceStands(const StepSource& source, SystemState& system);
// By the steps' numbers, what the undo of each writes a copy of: a source that was removed behind its copy is
// made again while that stands. As PlanUndo otherwise.
std::vector<StepSource> SourcesOfUndo(const std::vector<RecordedStep>& steps, SystemState& system);

// Whether anything of a checkpoint stands, is in conflict or cannot be looked at. A key that it made does not
// count when it holds values: it stays. As PlanUndo otherwise.
bool IsAnythingLeft(const JournalContents& checkpoint, SystemState& system);

}  // namespace smh
