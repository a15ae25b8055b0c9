#include "siblings/guardkit/step_runner.h"

#include "infra/runtime/exceptions.h"
#include "siblings/guardkit/live_system.h"
#include "siblings/guardkit/undo_steps.h"

#include <functional>

namespace smh {

namespace {

// For a scope.
class ScopedGuard {
 public:
  ScopedGuard(OpenCheckpoint& checkpoint, const std::function<bool()>* guard) noexcept
      : checkpoint_(checkpoint) {
    checkpoint.SetGuard(guard);
  }
  ~ScopedGuard() { checkpoint_.SetGuard(nullptr); }
  ScopedGuard(const ScopedGuard&) = delete;
  ScopedGuard& operator=(const ScopedGuard&) = delete;

 private:
  OpenCheckpoint& checkpoint_;
};

}  // namespace

StepOutcome OutcomeOf(Verdict verdict) noexcept {
  switch (verdict) {
    case Verdict::kUndo:
      return StepOutcome::kUndo;
    case Verdict::kNothing:
      return StepOutcome::kNothing;
    case Verdict::kConflict:
      return StepOutcome::kConflict;
    case Verdict::kBlocked:
      return StepOutcome::kBlocked;
  }
  return StepOutcome::kBlocked;
}

StepRunner::StepRunner(const JournalContents& contents, const UndoReach& reach, bool force)
    : contents_(contents), reach_(reach), force_(force) {
  LiveSystem system(reach_);
  sources_ = SourcesOfUndo(contents_.steps, system);
}

StepOutcome StepRunner::Run(OpenCheckpoint& checkpoint, const PlannedStep& planned) {
  const RecordedStep& recorded = contents_.steps[planned.number];
  const Step& step = recorded.step;
  const Verdict verdict = planned.verdict;
  const bool isConflict = verdict == Verdict::kConflict;
  if (verdict == Verdict::kNothing) return StepOutcome::kNothing;
  if (verdict == Verdict::kBlocked || (isConflict && !force_)) {
    if (!force_) Note(ERROR_REVISION_MISMATCH);
    return OutcomeOf(verdict);
  }
  if (status_ != ERROR_SUCCESS && (isConflict || !OnlyBringsBack(step))) {
    ++refused_;
    return StepOutcome::kBlocked;
  }
  const std::function<bool()> sourceStands = [&] {
    LiveSystem system(reach_);
    return SourceStands(recorded.source, system);
  };
  const bool isCopy = recorded.source.kind != StepSource::Kind::kNone;
  const ScopedGuard guard(checkpoint, isCopy && !isConflict ? &sourceStands : nullptr);
  try {
    checkpoint.SetSource(sources_[planned.number]);
    return UndoStep(checkpoint, step, isConflict);
  } catch (const EOSError& error) {
    Note(static_cast<LSTATUS>(error.Code()));
    return StepOutcome::kBlocked;
  }
}

void StepRunner::Note(LSTATUS status) noexcept {
  ++refused_;
  if (status_ == ERROR_SUCCESS) status_ = status;
}

}  // namespace smh
