#include "siblings/guardkit/undo_runner.h"

#include "infra/runtime/exceptions.h"
#include "siblings/guardkit/live_system.h"
#include "siblings/guardkit/undo_steps.h"

#include <algorithm>
#include <memory>

namespace smh {

namespace {

constexpr std::wstring_view kUndo = L"Undo: ";
constexpr std::wstring_view kRedo = L"Redo: ";

// "Undo: X" of "X" and of "Redo: X", "Redo: X" of "Undo: X".
std::wstring TitleOfUndoing(std::wstring_view title) {
  const bool isUndo = title.starts_with(kUndo);
  if (isUndo || title.starts_with(kRedo)) title.remove_prefix(kUndo.size());
  return std::wstring(isUndo ? kRedo : kUndo).append(title);
}

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

// The checkpoint to undo; null with the reason in `status`.
const IndexedCheckpoint* Find(const std::vector<IndexedCheckpoint>& index, Direction direction,
                              std::uint32_t id, const std::wstring& user, HRESULT& status) {
  const bool isDefault = direction == Direction::kUndo && id == 0;
  const IndexedCheckpoint* const named = isDefault ? FindNewestToUndo(index, user) : FindById(index, id);
  if (named == nullptr) {
    status = HRESULT_FROM_WIN32(ERROR_NOT_FOUND);
    return nullptr;
  }
  if (named->state == CheckpointState::kOpen) {
    status = HRESULT_FROM_WIN32(ERROR_BUSY);
    return nullptr;
  }
  const IndexedCheckpoint* const found = direction == Direction::kUndo ? named : FindToRedo(index, id);
  if (found == nullptr || found->undoneBy != 0) {
    status = IJournal::kWrongState;
    return nullptr;
  }
  return found;
}

// Takes planned steps back, one after the other. Once one could not be, only what is missing is brought back
// and nothing deleted or overwritten any more: the entry may be nowhere else.
class StepRunner {
 public:
  StepRunner(OpenCheckpoint& checkpoint, const JournalContents& contents, const UndoReach& reach, bool force)
      : checkpoint_(checkpoint), contents_(contents), reach_(reach), force_(force) {
    LiveSystem system(reach_);
    sources_ = SourcesOfUndo(contents_.steps, system);
  }

  StepOutcome Run(const PlannedStep& planned) {
    const RecordedStep& recorded = contents_.steps[planned.number];
    const Step& step = recorded.step;
    const bool isConflict = planned.verdict == Verdict::kConflict;
    if (planned.verdict == Verdict::kNothing) return StepOutcome::kNothing;
    if (planned.verdict == Verdict::kBlocked || (isConflict && !force_)) {
      if (!force_) Note(ERROR_REVISION_MISMATCH);
      return OutcomeOf(planned.verdict);
    }
    if (status_ != ERROR_SUCCESS && (isConflict || !OnlyBringsBack(step))) return StepOutcome::kBlocked;
    try {
      LiveSystem system(reach_);
      if (!isConflict && !SourceStands(recorded.source, system)) RaiseOSError(ERROR_REVISION_MISMATCH);
      checkpoint_.SetSource(sources_[planned.number]);
      return UndoStep(checkpoint_, step, isConflict);
    } catch (const EOSError& error) {
      Note(static_cast<LSTATUS>(error.Code()));
      return StepOutcome::kBlocked;
    }
  }

  // Of the first that could not be taken back.
  LSTATUS Status() const noexcept { return status_; }

 private:
  void Note(LSTATUS status) noexcept {
    if (status_ == ERROR_SUCCESS) status_ = status;
  }

  OpenCheckpoint& checkpoint_;
  const JournalContents& contents_;
  const UndoReach& reach_;
  const bool force_;
  std::vector<StepSource> sources_;
  LSTATUS status_ = ERROR_SUCCESS;
};

// One call: what it found, planned and did.
class UndoCall {
 public:
  UndoCall(Direction direction, UndoMode mode) : direction_(direction), mode_(mode) {}

  UndoResult Show(std::uint32_t id) {
    const std::optional<JournalFolder> folder = JournalFolder::OpenExisting();
    if (!folder) {
      result_.status = HRESULT_FROM_WIN32(ERROR_NOT_FOUND);
    } else {
      Prepare(*folder, id, false);
    }
    return std::move(result_);
  }

  UndoResult Run(std::uint32_t id) {
    // What is meant is settled before the lock is there, and looked at again under it.
    UndoResult wanted = UndoCall(direction_, UndoMode::kShow).Show(id);
    if (FAILED(wanted.status) && wanted.status != IJournal::kConflict) return wanted;
    OpenCheckpoint own(TitleOfUndoing(wanted.title), wanted.checkpoint);
    direction_ = Direction::kUndo;
    if (Prepare(own.Folder(), wanted.checkpoint, true) || MayForce()) Execute(own);
    return std::move(result_);
  }

 private:
  // Reads and plans; whether it may run without force.
  bool Prepare(const JournalFolder& folder, std::uint32_t id, bool lockHeld) {
    const std::vector<IndexedCheckpoint> index = IndexJournal(folder, lockHeld);
    const IndexedCheckpoint* const found = Find(index, direction_, id, sid_, result_.status);
    if (found == nullptr) return false;
    contents_ = found->contents;
    result_.checkpoint = found->name.id;
    result_.title = contents_.header.title;
    if (contents_.header.user != sid_) {
      result_.status = HRESULT_FROM_WIN32(ERROR_ACCESS_DENIED);
      return false;
    }
    if (!reach_.Covers(contents_)) {
      result_.status = IJournal::kOutOfReach;
      return false;
    }
    LiveSystem system(reach_);
    plan_ = PlanUndo(contents_, system);
    for (const PlannedStep& planned : plan_) {
      result_.steps.push_back(
          {OutcomeOf(planned.verdict), DescribeUndo(contents_.steps[planned.number].step)});
    }
    const bool refused = std::ranges::any_of(plan_, [](const PlannedStep& planned) {
      return planned.verdict == Verdict::kConflict || planned.verdict == Verdict::kBlocked;
    });
    result_.status = refused ? IJournal::kConflict : S_OK;
    return !refused;
  }

  bool MayForce() const noexcept {
    return result_.status == IJournal::kConflict && mode_ == UndoMode::kForce;
  }

  void Execute(OpenCheckpoint& own) {
    try {
      StepRunner runner(own, contents_, reach_, mode_ == UndoMode::kForce);
      for (std::size_t i = 0; i < plan_.size(); ++i) result_.steps[i].outcome = runner.Run(plan_[i]);
      result_.status = HRESULT_FROM_WIN32(static_cast<DWORD>(runner.Status()));
    } catch (...) {
      own.Abandon();
      throw;
    }
    if (SUCCEEDED(result_.status)) {
      result_.ownCheckpoint = own.Id();
      CloseJournal(own.Folder(), result_.checkpoint);
      own.Keep();
    } else {
      if (own.StepCount() != 0) result_.ownCheckpoint = own.Id();
      own.Abandon();
    }
  }

  Direction direction_;
  const UndoMode mode_;
  const std::wstring sid_ = CurrentUserSid();
  const UndoReach reach_{sid_};
  JournalContents contents_;
  std::vector<PlannedStep> plan_;
  UndoResult result_;
};

}  // namespace

LSTATUS TakeBack(OpenCheckpoint& checkpoint) {
  const std::uint32_t first = checkpoint.TakeBack();
  auto contents = ReadJournal(checkpoint.Folder(), {.id = checkpoint.Id()});
  if (!contents || contents->steps.size() < first) return ERROR_FILE_CORRUPT;
  contents->steps.erase(contents->steps.begin(),
                        contents->steps.begin() + static_cast<std::ptrdiff_t>(first));
  const UndoReach reach(CurrentUserSid());
  if (!reach.Covers(*contents)) return ERROR_ACCESS_DENIED;
  LiveSystem system(reach);
  StepRunner runner(checkpoint, *contents, reach, false);
  for (const PlannedStep& planned : PlanUndo(*contents, system)) runner.Run(planned);
  if (runner.Status() == ERROR_SUCCESS) checkpoint.NoteTakenBack();
  return runner.Status();
}

UndoResult RunUndo(Direction direction, std::uint32_t id, UndoMode mode) {
  UndoCall call(direction, mode);
  return mode == UndoMode::kShow ? call.Show(id) : call.Run(id);
}

}  // namespace smh
