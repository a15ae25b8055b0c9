#include "siblings/guardkit/undo_runner.h"

#include "infra/runtime/exceptions.h"
#include "siblings/guardkit/live_system.h"
#include "siblings/guardkit/step_runner.h"
#include "siblings/guardkit/undo_steps.h"

#include <algorithm>
#include <memory>
#include <set>

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

// A part to undo; its steps stand behind each other in the contents that are planned.
struct TargetPart {
  std::uint32_t action = 0;
  const JournalPart* record = nullptr;
};

// One call: what it found, planned and did.
class UndoCall {
 public:
  UndoCall(UndoRequest request, UndoMode mode) : request_(std::move(request)), mode_(mode) {
    std::ranges::sort(request_.parts);
    request_.parts.erase(std::unique(request_.parts.begin(), request_.parts.end()), request_.parts.end());
  }

  UndoResult Show() {
    const std::optional<JournalFolder> folder = JournalFolder::OpenExisting();
    if (!folder) {
      result_.status = HRESULT_FROM_WIN32(ERROR_NOT_FOUND);
    } else {
      Prepare(*folder, 0);
    }
    return std::move(result_);
  }

  UndoResult Run() {
    // What is meant is settled before the lock is there, and looked at again under it.
    UndoResult wanted = UndoCall(request_, UndoMode::kShow).Show();
    if (FAILED(wanted.status) && wanted.status != IJournal::kConflict) {
      if (wanted.status == IJournal::kDamaged) wanted.steps.clear();
      return wanted;
    }
    if (request_.direction == Direction::kUndo) request_.id = wanted.checkpoint;
    OpenAction own(TitleOfUndoing(wanted.title), wanted.checkpoint, request_.parts);
    auto first = std::make_unique<OpenCheckpoint>(own, PartHeader{});
    if (Prepare(own.Folder(), own.Id()) || MayForce()) Execute(own, std::move(first));
    first.reset();
    own.Finish();
    return std::move(result_);
  }

 private:
  // Reads and plans; whether it may run without force.
  bool Prepare(const JournalFolder& folder, std::uint32_t own) {
    index_ = IndexJournal(folder);
    const std::vector<const IndexedAction*> actions = ChooseActions(index_, request_, sid_, result_);
    if (actions.empty()) return false;
    if (std::ranges::any_of(actions,
                            [&](const IndexedAction* action) { return action->header.user != sid_; })) {
      result_.status = HRESULT_FROM_WIN32(ERROR_ACCESS_DENIED);
    } else if (IsBeingUndone(index_, actions, own)) {
      result_.status = HRESULT_FROM_WIN32(ERROR_BUSY);
    } else {
      for (const IndexedAction* const action : actions) AddSteps(folder, *action);
      if (SUCCEEDED(result_.status) && targets_.empty()) {
        result_.status = HasDamaged(actions) ? IJournal::kDamaged : IJournal::kWrongState;
      }
    }
    return SUCCEEDED(result_.status) && Plan(actions);
  }

  bool Plan(const std::vector<const IndexedAction*>& actions) {
    // What is not known of a step is told by its own mark.
    contents_.finished = true;
    if (!reach_.Covers(contents_)) {
      result_.status = IJournal::kOutOfReach;
      return false;
    }
    LiveSystem system(reach_);
    plan_ = PlanUndo(contents_, system);
    for (const PlannedStep& planned : plan_) {
      std::wstring text = DescribeUndo(contents_.steps[planned.number].step);
      if (planned.isOnlyCopy) text += L": nothing else holds it, because its source has gone or changed";
      result_.steps.push_back({OutcomeOf(planned.verdict), std::move(text)});
    }
    const bool refused = std::ranges::any_of(plan_, [](const PlannedStep& planned) {
      return planned.verdict == Verdict::kConflict || planned.verdict == Verdict::kBlocked;
    });
    if (refused) result_.status = IJournal::kConflict;
    if (HasDamaged(actions)) result_.status = IJournal::kDamaged;
    return SUCCEEDED(result_.status);
  }

  void AddSteps(const JournalFolder& folder, const IndexedAction& action) {
    std::vector<std::uint32_t> numbers = request_.parts;
    HRESULT status = S_OK;
    const std::vector<const IndexedPart*> parts = ChooseParts(action, numbers, status);
    std::vector<RecordedStep> steps = ReadSteps(folder, action);
    if (SUCCEEDED(status) && steps.size() != action.stepCount) status = IJournal::kDamaged;
    if (FAILED(status)) {
      result_.status = status;
      return;
    }
    for (const IndexedPart* const part : parts) {
      targets_.push_back({action.Id(), &part->record});
      // What did not end well, or was undone in part, may have been taken back whatever its marks say.
      const bool marksCount = (part->redone || part->record.end == PartEnd::kDone) && !part->undoTried;
      for (std::size_t i = 0; i < part->record.stepCount; ++i) {
        RecordedStep& step = steps[part->record.firstStep + i];
        if (!marksCount && step.mark == StepMark::kDone) step.mark = StepMark::kNone;
        contents_.steps.push_back(std::move(step));
      }
    }
  }

  bool MayForce() const noexcept {
    return result_.status == IJournal::kConflict && mode_ == UndoMode::kForce;
  }

  // The last part first, each under its own lock; `checkpoint` is the first one to be opened.
  void Execute(OpenAction& own, std::unique_ptr<OpenCheckpoint> checkpoint) {
    StepRunner runner(contents_, reach_, mode_ == UndoMode::kForce);
    std::size_t done = 0;
    bool hasRecords = false;
    for (auto target = targets_.rbegin(); target != targets_.rend(); ++target) {
      PartHeader part{.undoesAction = target->action, .undoesPart = target->record->header.number};
      part.title = TitleOfUndoing(target->record->header.title);
      try {
        if (checkpoint) {
          checkpoint->Rename(part);
        } else {
          checkpoint = std::make_unique<OpenCheckpoint>(own, part);
        }
      } catch (const EOSError& error) {
        // Another action holds the journal, or the disk is full: what was undone until now is.
        runner.Note(static_cast<LSTATUS>(error.Code()));
        for (; done < plan_.size(); ++done) result_.steps[done].outcome = StepOutcome::kBlocked;
        break;
      }
      RunPart(*checkpoint, runner, target->record->stepCount, done);
      hasRecords = hasRecords || !checkpoint->Steps().empty();
      if (std::next(target) == targets_.rend() && runner.Status() == ERROR_SUCCESS) CloseUndone(own.Folder());
      checkpoint.reset();
    }
    result_.status = HRESULT_FROM_WIN32(static_cast<DWORD>(runner.Status()));
    if (SUCCEEDED(result_.status) || hasRecords) result_.ownCheckpoint = own.Id();
  }

  void RunPart(OpenCheckpoint& checkpoint, StepRunner& runner, std::size_t steps, std::size_t& done) {
    const std::size_t refused = runner.Refused();
    try {
      for (const std::size_t end = done + steps; done < end; ++done) {
        result_.steps[done].outcome = runner.Run(checkpoint, plan_[done]);
      }
    } catch (...) {
      checkpoint.Abandon();
      throw;
    }
    if (runner.Refused() == refused) {
      checkpoint.Keep();
    } else {
      checkpoint.Abandon();
    }
  }

  // Interrupted ones of which no part is left are no longer named: the undone ones, and undos that others
  // have gone on with.
  void CloseUndone(const JournalFolder& folder) const {
    std::set<std::pair<std::uint32_t, std::uint32_t>> undone;
    for (const TargetPart& target : targets_) undone.emplace(target.action, target.record->header.number);
    const auto areUndone = [&](const IndexedAction& action, const std::vector<std::uint32_t>& parts) {
      return std::ranges::all_of(parts, [&](std::uint32_t part) {
        return undone.contains({action.Id(), part});
      });
    };
    for (const IndexedAction& action : index_) {
      // What was kept from being read seems to have nothing left.
      const bool isUnclear =
          action.state == CheckpointState::kOpen || action.state == CheckpointState::kDamaged;
      if (action.end != JournalEnd::kNone || isUnclear) continue;
      const UndoGoal goal = GoalOf(index_, action);
      const bool isSettled = areUndone(action, PartsLeft(action)) ||
                             (goal.action != nullptr && areUndone(*goal.action, goal.left));
      if (!isSettled) continue;
      for (const JournalName& name : action.files) CloseJournal(folder, name);
    }
  }

  UndoRequest request_;
  const UndoMode mode_;
  const std::wstring sid_ = CurrentUserSid();
  const UndoReach reach_{sid_};
  std::vector<IndexedAction> index_;
  JournalContents contents_;
  // Oldest first; they point into the index.
  std::vector<TargetPart> targets_;
  std::vector<PlannedStep> plan_;
  UndoResult result_;
};

}  // namespace

LSTATUS TakeBack(OpenCheckpoint& checkpoint) {
  const std::size_t first = checkpoint.TakeBack();
  JournalContents contents;
  contents.steps.assign(checkpoint.Steps().begin() + static_cast<std::ptrdiff_t>(first),
                        checkpoint.Steps().end());
  const UndoReach reach(CurrentUserSid());
  if (!reach.Covers(contents)) return ERROR_ACCESS_DENIED;
  const std::vector<PlannedStep> plan = [&] {
    LiveSystem system(reach);
    return PlanUndo(contents, system);
  }();
  StepRunner runner(contents, reach, false);
  for (const PlannedStep& planned : plan) runner.Run(checkpoint, planned);
  if (runner.Status() == ERROR_SUCCESS) checkpoint.NoteTakenBack();
  return runner.Status();
}

UndoResult RunUndo(const UndoRequest& request, UndoMode mode) {
  UndoCall call(request, mode);
  return mode == UndoMode::kShow ? call.Show() : call.Run();
}

}  // namespace smh
