#include "siblings/guardkit/format/undo_plan.h"

#include <algorithm>
#include <exception>
#include <optional>
#include <utility>

namespace smh {

namespace {

// Rows by place and name, in which a row may be missing.
template <typename State>
class Rows {
 public:
  explicit Rows(SystemState& names) : names_(names) {}

  const State* Find(const std::wstring& place, const std::wstring& name = {}) const {
    for (const Row& row : rows_) {
      if (names_.SameName(row.place, place) && names_.SameName(row.name, name)) return &row.state;
    }
    return nullptr;
  }
  void Set(const std::wstring& place, const std::wstring& name, const State& state) {
    std::erase_if(rows_, [&](const Row& row) {
      return names_.SameName(row.place, place) && names_.SameName(row.name, name);
    });
    rows_.push_back({place, name, state});
  }
  void Forget(const std::wstring& place) {
    std::erase_if(rows_, [&](const Row& row) { return names_.SameName(row.place, place); });
  }
  template <typename Visitor>
  void ForEach(const std::wstring& place, Visitor&& visit) const {
    for (const Row& row : rows_) {
      if (names_.SameName(row.place, place)) visit(row.name, row.state);
    }
  }

 private:
  struct Row {
    std::wstring place;
    std::wstring name;
    State state;
  };
  SystemState& names_;
  std::vector<Row> rows_;
};

auto IsNamed(SystemState& names, const std::wstring& name) {
  return [&](const NamedValue& value) { return names.SameName(value.name, name); };
}

// The system at some moment before the end of the steps: what undoing the later ones leaves, in front of what
// is really there. A value is a part of its key.
class PastState {
 public:
  explicit PastState(SystemState& system) : system_(system), values_(system), keys_(system), files_(system) {}

  ValueState Value(const std::wstring& key, const std::wstring& name) const {
    if (const ValueState* const known = values_.Find(key, name)) return *known;
    const KeyState* const whole = keys_.Find(key);
    if (whole == nullptr) return system_.Value(key, name);
    const auto value = std::ranges::find_if(whole->values, IsNamed(system_, name));
    return value == whole->values.end() ? ValueState{} : ValueState{true, value->type, value->data};
  }
  KeyState Key(const std::wstring& key) const {
    const KeyState* const known = keys_.Find(key);
    KeyState state = known != nullptr ? *known : system_.Key(key);
    values_.ForEach(key, [&](const std::wstring& name, const ValueState& value) {
      std::erase_if(state.values, IsNamed(system_, name));
      if (!value.exists) return;
      state.exists = true;
      state.values.push_back({name, value.type, value.data});
    });
    return state;
  }
  FileState File(const std::wstring& path) const {
    const FileState* const known = files_.Find(path);
    return known != nullptr ? *known : system_.File(path);
  }

  // Back to the moment before a step.
  void GoBefore(const ValueStep& step) { values_.Set(step.key, step.name, step.before); }
  void GoBefore(const KeyStep& step) {
    values_.Forget(step.key);
    keys_.Set(step.key, {}, step.before);
  }
  void GoBefore(const FileStep& step) { files_.Set(step.path, {}, step.before); }
  void GoBefore(const MoveStep& step) {
    files_.Set(step.from, {}, step.file);
    files_.Set(step.to, {}, FileState{});
  }

 private:
  SystemState& system_;
  Rows<ValueState> values_;
  Rows<KeyState> keys_;
  Rows<FileState> files_;
};

// Whether what a step is about is the same in two states.
bool SameFor(const ValueStep& step, const PastState& a, const PastState& b) {
  return SameContent(a.Value(step.key, step.name), b.Value(step.key, step.name));
}
bool SameFor(const KeyStep& step, const PastState& a, const PastState& b) {
  return SameContent(a.Key(step.key), b.Key(step.key));
}
bool SameFor(const FileStep& step, const PastState& a, const PastState& b) {
  return SameContent(a.File(step.path), b.File(step.path));
}
bool SameFor(const MoveStep& step, const PastState& a, const PastState& b) {
  return SameContent(a.File(step.from), b.File(step.from)) && SameContent(a.File(step.to), b.File(step.to));
}

bool IsAfter(const ValueStep& step, const PastState& found) {
  return SameContent(found.Value(step.key, step.name), step.after);
}
// Whatever a key that was made holds now.
bool IsAfter(const KeyStep& step, const PastState& found) {
  const KeyState key = found.Key(step.key);
  if (!step.before.exists) return key.exists;
  // Also when a part of it has been put back, and the rest was refused.
  const auto wasThere = [&](const NamedValue& value) {
    return std::ranges::find(step.before.values, value) != step.before.values.end();
  };
  const bool isPart = !step.after.exists && key.exists && key.values.size() < step.before.values.size() &&
                      std::ranges::all_of(key.values, wasThere);
  return SameContent(key, step.after) || isPart;
}
bool IsAfter(const FileStep& step, const PastState& found) {
  return SameContent(found.File(step.path), step.after);
}
bool IsAfter(const MoveStep& step, const PastState& found) {
  return !found.File(step.from).exists && SameContent(found.File(step.to), step.file);
}

bool IsMadeKey(const Step& step) {
  const auto* const key = std::get_if<KeyStep>(&step);
  return key != nullptr && !key->before.exists;
}

class Planner {
 public:
  Planner(const JournalContents& checkpoint, SystemState& system)
      : steps_(checkpoint.steps),
        marksCount_(checkpoint.finished && !checkpoint.failed),
        system_(system),
        found_(system) {}

  Verdict Plan(std::size_t number) {
    try {
      return std::visit([&](const auto& step) { return PlanStep(number, step); }, steps_[number].step);
    } catch (const std::exception&) {
      return Verdict::kBlocked;
    }
  }

 private:
  template <typename Kind>
  Verdict PlanStep(std::size_t number, const Kind& step) {
    const Verdict verdict = Decide(number, step);
    if (verdict != Verdict::kNothing) found_.GoBefore(step);
    return verdict;
  }

  // A call may have done what it answered to have refused: only a step that is known to be done leaves a
  // conflict where an old state is there.
  template <typename Kind>
  Verdict Decide(std::size_t number, const Kind& step) const {
    PastState then(system_);
    then.GoBefore(step);
    const bool isAfter = IsAfter(step, found_);
    if (SameFor(step, found_, then) && (isAfter || !IsKnownDone(number))) return Verdict::kNothing;
    if (isAfter) return Verdict::kUndo;
    const bool isOlder = !IsKnownDone(number) && IsOlder(number, step, std::move(then));
    return isOlder ? Verdict::kNothing : Verdict::kConflict;
  }

  // A key that was made and has gone is no conflict either.
  bool IsKnownDone(std::size_t number) const {
    return marksCount_ && steps_[number].mark == StepMark::kDone && !IsMadeKey(steps_[number].step);
  }

  // Whether what is found is what was before some earlier step, which was taken back with this one; `then` is
  // what was before this one.
  template <typename Kind>
  bool IsOlder(std::size_t number, const Kind& step, PastState then) const {
    while (number-- > 0) {
      std::visit([&then](const auto& earlier) { then.GoBefore(earlier); }, steps_[number].step);
      if (SameFor(step, found_, then)) return true;
    }
    return false;
  }

  const std::vector<RecordedStep>& steps_;
  // Otherwise no step is known to be done.
  const bool marksCount_;
  SystemState& system_;
  PastState found_;
};

bool StaysAsItIs(const Step& step, SystemState& system) {
  return IsMadeKey(step) && !system.Key(std::get<KeyStep>(step).key).values.empty();
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
  Planner planner(checkpoint, system);
  std::vector<PlannedStep> plan;
  for (std::size_t number = checkpoint.steps.size(); number-- > 0;) {
    plan.push_back({number, planner.Plan(number)});
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
