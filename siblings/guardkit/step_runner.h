// Taking the steps of a plan back, one after the other.
#pragma once

#include "core/contracts/intf_journal.h"
#include "siblings/guardkit/checkpoints.h"
#include "siblings/guardkit/format/undo_plan.h"
#include "siblings/guardkit/undo_reach.h"

#include <vector>

namespace smh {

// What undoing a step of that verdict would come to.
StepOutcome OutcomeOf(Verdict verdict) noexcept;

// Takes planned steps back. Once one could not be, only what is missing is brought back and nothing deleted
// or overwritten any more: the entry may be nowhere else. For one thread.
class StepRunner {
 public:
  // Both are borrowed. Raises what the reads of the present state raise.
  StepRunner(const JournalContents& contents, const UndoReach& reach, bool force);

  // Takes back one step of the contents as a part of `checkpoint`; the failure of one is noted and raises
  // nothing but std::bad_alloc.
  StepOutcome Run(OpenCheckpoint& checkpoint, const PlannedStep& planned);
  // One could not be taken back.
  void Note(LSTATUS status) noexcept;
  // Of the first that could not be taken back.
  LSTATUS Status() const noexcept { return status_; }
  // How many there were.
  std::size_t Refused() const noexcept { return refused_; }

 private:
  const JournalContents& contents_;
  const UndoReach& reach_;
  const bool force_;
  std::vector<StepSource> sources_;
  LSTATUS status_ = ERROR_SUCCESS;
  std::size_t refused_ = 0;
};

}  // namespace smh
