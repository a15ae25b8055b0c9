#include "siblings/guardkit/format/undo_plan.h"

#include <algorithm>
#include <exception>
#include <optional>
#include <utility>

namespace smh {

namespace {

// A call may have done what it answered to have refused: only a step that is known to be done leaves a
// conflict where the old state is there.
Verdict Decide(StepMark mark, bool isBefore, bool isAfter) {
  if (mark != StepMark::kDone && isBefore) return Verdict::kNothing;
  if (isAfter) return isBefore ? Verdict::kNothing : Verdict::kUndo;
  return Verdict::kConflict;
}

// What the steps undone so far leave behind, in front of what is really there.
template <typename State>
class Overlay {
 public:
  explicit Overlay(SystemState& system) : system_(system) {}

  State* Find(const std::wstring& place, const std::wstring& name = {}) {
    for (Row& row : rows_) {
      if (system_.SameName(row.place, place) && system_.SameName(row.name, name)) return &row.state;
    }
    return nullptr;
  }
  void Set(const std::wstring& place, const std::wstring& name, const State& state) {
    if (State* const known = Find(place, name)) {
      *known = state;
    } else {
      rows_.push_back({place, name, state});
    }
  }

 private:
  struct Row {
    std::wstring place;
    std::wstring name;
    State state;
  };
  SystemState& system_;
  std::vector<Row> rows_;
};

class Planner {
 public:
  // `marksCount`: a step that is marked as done is known to stand.
  Planner(SystemState& system, bool marksCount)
      : system_(system), marksCount_(marksCount), values_(system), keys_(system), files_(system) {}

  Verdict Plan(const RecordedStep& recorded) {
    try {
      const StepMark mark = marksCount_ ? recorded.mark : StepMark::kNone;
      return std::visit([&](const auto& step) { return PlanStep(mark, step); }, recorded.step);
    } catch (const std::exception&) {
      return Verdict::kBlocked;
    }
  }

 private:
  Verdict PlanStep(StepMark mark, const ValueStep& step) {
    const ValueState* const known = values_.Find(step.key, step.name);
    const ValueState found = known != nullptr ? *known : system_.Value(step.key, step.name);
    values_.Set(step.key, step.name, step.before);
    return Decide(mark, SameContent(found, step.before), SameContent(found, step.after));
  }

  Verdict PlanStep(StepMark mark, const KeyStep& step) {
    const KeyState* const known = keys_.Find(step.key);
    const KeyState found = known != nullptr ? *known : system_.Key(step.key);
    keys_.Set(step.key, {}, step.before);
    // A key that was made is removed when nothing is in it any more; whatever it holds now is no conflict.
    if (!step.before.exists) return found.exists ? Verdict::kUndo : Verdict::kNothing;
    return Decide(mark, SameContent(found, step.before), SameContent(found, step.after));
  }

  Verdict PlanStep(StepMark mark, const FileStep& step) {
    const FileState found = File(step.path);
    files_.Set(step.path, {}, step.before);
    return Decide(mark, SameContent(found, step.before), SameContent(found, step.after));
  }

  Verdict PlanStep(StepMark mark, const MoveStep& step) {
    const FileState from = File(step.from);
    const FileState to = File(step.to);
    files_.Set(step.from, {}, step.file);
    files_.Set(step.to, {}, FileState{});
    return Decide(mark, SameContent(from, step.file) && !to.exists,
                  !from.exists && SameContent(to, step.file));
  }

  FileState File(const std::wstring& path) {
    const FileState* const known = files_.Find(path);
    return known != nullptr ? *known : system_.File(path);
  }

  SystemState& system_;
  const bool marksCount_;
  Overlay<ValueState> values_;
  Overlay<KeyState> keys_;
  Overlay<FileState> files_;
};

bool StaysAsItIs(const Step& step, SystemState& system) {
  const auto* const made = std::get_if<KeyStep>(&step);
  return made != nullptr && !made->before.exists && !system.Key(made->key).values.empty();
}

}  // namespace

bool SameContent(const ValueState& a, const ValueState& b) {
  return a == b;
}

bool SameContent(const KeyState& a, const KeyState& b) {
  std::vector<NamedValue> valuesOfA = a.values;
  std::vector<NamedValue> valuesOfB = b.values;
  std::ranges::sort(valuesOfA);
  std::ranges::sort(valuesOfB);
  return a.exists == b.exists && valuesOfA == valuesOfB;
}

bool SameContent(const FileState& a, const FileState& b) {
  return a.exists == b.exists && a.streams == b.streams;
}

std::vector<PlannedStep> PlanUndo(const JournalContents& checkpoint, SystemState& system) {
  Planner planner(system, checkpoint.finished && !checkpoint.failed);
  std::vector<PlannedStep> plan;
  for (std::size_t number = checkpoint.steps.size(); number-- > 0;) {
    plan.push_back({number, planner.Plan(checkpoint.steps[number])});
  }
  return plan;
}

bool IsAnythingLeft(const JournalContents& checkpoint, SystemState& system) {
  return std::ranges::any_of(PlanUndo(checkpoint, system), [&](const PlannedStep& planned) {
    return planned.verdict != Verdict::kNothing &&
           (planned.verdict != Verdict::kUndo || !StaysAsItIs(checkpoint.steps[planned.number].step, system));
  });
}

}  // namespace smh
