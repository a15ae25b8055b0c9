#include "siblings/guardkit/undo_runner.h"

#include "infra/runtime/exceptions.h"
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

// One call: what it found, planned and did.
class UndoCall {
 public:
  UndoCall(Direction direction, UndoMode mode) : direction_(direction), mode_(mode), system_(sid_) {}

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
    plan_ = PlanUndo(contents_, system_);
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
      for (std::size_t i = 0; i < plan_.size(); ++i) {
        const Verdict verdict = plan_[i].verdict;
        if (verdict == Verdict::kNothing || verdict == Verdict::kBlocked) continue;
        result_.steps[i].outcome =
            UndoStep(own, contents_.steps[plan_[i].number].step, verdict == Verdict::kConflict);
      }
      result_.status = S_OK;
      result_.ownCheckpoint = own.Id();
      CloseJournal(own.Folder(), result_.checkpoint);
      own.Keep();
    } catch (const EOSError& error) {
      result_.status = error.Result();
      if (own.StepCount() != 0) result_.ownCheckpoint = own.Id();
      own.Abandon();
    } catch (...) {
      own.Abandon();
      throw;
    }
  }

  Direction direction_;
  const UndoMode mode_;
  const std::wstring sid_ = CurrentUserSid();
  LiveSystem system_;
  JournalContents contents_;
  std::vector<PlannedStep> plan_;
  UndoResult result_;
};

}  // namespace

LSTATUS TakeBack(OpenCheckpoint& checkpoint) {
  checkpoint.TakeBack();
  LSTATUS status = ERROR_SUCCESS;
  const auto contents = ReadJournal(checkpoint.Folder(), {.id = checkpoint.Id()});
  if (!contents) status = ERROR_FILE_CORRUPT;
  LiveSystem system(CurrentUserSid());
  for (const PlannedStep& planned : contents ? PlanUndo(*contents, system) : std::vector<PlannedStep>()) {
    if (planned.verdict == Verdict::kNothing) continue;
    try {
      if (planned.verdict != Verdict::kUndo) RaiseOSError(ERROR_REVISION_MISMATCH);
      UndoStep(checkpoint, contents->steps[planned.number].step, false);
    } catch (const EOSError& error) {
      status = static_cast<LSTATUS>(error.Code());
    }
  }
  checkpoint.Fail(status == ERROR_SUCCESS);
  return status;
}

UndoResult RunUndo(Direction direction, std::uint32_t id, UndoMode mode) {
  UndoCall call(direction, mode);
  return mode == UndoMode::kShow ? call.Show(id) : call.Run(id);
}

}  // namespace smh
