#include "siblings/guardkit/format/undo_plan.h"

#include "siblings/guardkit/format/past_state.h"
#include "siblings/guardkit/format/state_content.h"
#include "siblings/guardkit/format/step_history.h"

#include <algorithm>
#include <exception>
#include <map>
#include <utility>

namespace smh {

namespace {

template <typename Place>
bool Stands(const StepSource& source, Place& place) {
  switch (source.kind) {
    case StepSource::Kind::kNone:
      return true;
    case StepSource::Kind::kValue: {
      const ValueState value = place.Value(source.place, source.name);
      return value.exists && ContentSum(value) == source.content;
    }
    case StepSource::Kind::kKey: {
      const KeyState key = place.Key(source.place);
      return key.exists && ContentSum(key) == source.content;
    }
    case StepSource::Kind::kFile: {
      const FileState file = place.File(source.place);
      return file.exists && ContentSum(file) == source.content;
    }
  }
  return false;
}

bool IsMadeKey(const Step& step) {
  const auto* const key = std::get_if<KeyStep>(&step);
  return key != nullptr && !key->before.exists;
}

// Which of a step's two states is found, if any.
struct Comparison {
  bool isBefore = false;
  bool isAfter = false;
};

class Planner {
 public:
  Planner(const JournalContents& checkpoint, SystemState& system)
      : steps_(checkpoint.steps),
        marksCount_(checkpoint.finished && !checkpoint.failed),
        names_(system),
        found_(system, names_),
        history_(steps_, names_) {}

  PlannedStep Plan(std::size_t number) {
    isOnlyCopy_ = false;
    try {
      const Verdict verdict =
          std::visit([&](const auto& step) { return PlanStep(number, step); }, steps_[number].step);
      return {number, verdict, isOnlyCopy_};
    } catch (const std::exception&) {
      return {number, Verdict::kBlocked};
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
  Verdict Decide(std::size_t number, const Kind& step) {
    const auto [isBefore, isAfter] = Compare(step);
    if (isBefore && (isAfter || !IsKnownDone(number))) return Verdict::kNothing;
    if (isAfter) {
      isOnlyCopy_ = IsOnlyCopy(number);
      return isOnlyCopy_ ? Verdict::kConflict : Verdict::kUndo;
    }
    const bool isOlder = !IsKnownDone(number) && IsOlder(number, step);
    return isOlder ? Verdict::kNothing : Verdict::kConflict;
  }

  Comparison Compare(const ValueStep& step) {
    const ValueState value = found_.Value(step.key, step.name);
    return {SameContent(value, step.before), SameContent(value, step.after)};
  }
  // One that was made counts whatever it holds now.
  Comparison Compare(const KeyStep& step) {
    if (!step.before.exists) {
      const bool exists = found_.KeyExists(step.key);
      return {!exists, exists};
    }
    const KeyState key = found_.Key(step.key);
    // Also when a part of it has been put back, and the rest was refused.
    const bool isPart = !step.after.exists && key.exists && key.values.size() < step.before.values.size() &&
                        IsPartOf(key, step.before);
    return {SameContent(key, step.before), SameContent(key, step.after) || isPart};
  }
  Comparison Compare(const FileStep& step) {
    const FileState file = found_.File(step.path);
    return {SameContent(file, step.before), SameContent(file, step.after)};
  }
  Comparison Compare(const MoveStep& step) {
    const FileState from = found_.File(step.from);
    const FileState to = found_.File(step.to);
    return {SameContent(from, step.file) && !to.exists, !from.exists && SameContent(to, step.file)};
  }

  static bool IsPartOf(const KeyState& key, const KeyState& whole) {
    std::vector<NamedValue> part = key.values;
    std::vector<NamedValue> all = whole.values;
    std::ranges::sort(part);
    std::ranges::sort(all);
    return std::ranges::includes(all, part);
  }

  // A key that was made and has gone is no conflict either.
  bool IsKnownDone(std::size_t number) const {
    return marksCount_ && steps_[number].mark == StepMark::kDone && !IsMadeKey(steps_[number].step);
  }

  // Whether what is found was there before an earlier step, which was taken back with this one.
  bool IsOlder(std::size_t number, const ValueStep& step) {
    return history_.HasStood(found_.Value(step.key, step.name), number, step);
  }
  bool IsOlder(std::size_t number, const KeyStep& step) {
    return history_.HasStood(found_.Key(step.key), number, step);
  }
  bool IsOlder(std::size_t number, const FileStep& step) {
    return history_.HasStood(found_.File(step.path), number, step);
  }
  bool IsOlder(std::size_t number, const MoveStep& step) {
    return history_.HasStood(found_.File(step.from), found_.File(step.to), number, step);
  }

  // Whether undoing would remove a copy whose source has gone. A key that holds values stays anyway.
  bool IsOnlyCopy(std::size_t number) {
    const RecordedStep& recorded = steps_[number];
    if (Stands(recorded.source, found_)) return false;
    const auto* const key = std::get_if<KeyStep>(&recorded.step);
    return key == nullptr || found_.Key(key->key).values.empty();
  }

  const std::vector<RecordedStep>& steps_;
  // Otherwise no step is known to be done.
  const bool marksCount_;
  NameNumbers names_;
  PastState found_;
  StepHistory history_;
  // Of the step that is planned.
  bool isOnlyCopy_ = false;
};

bool StaysAsItIs(const Step& step, SystemState& system) {
  return IsMadeKey(step) && !system.Key(std::get<KeyStep>(step).key).values.empty();
}

}  // namespace

bool SourceStands(const StepSource& source, SystemState& system) {
  return Stands(source, system);
}

std::vector<StepSource> SourcesOfUndo(const std::vector<RecordedStep>& steps, SystemState& system) {
  NameNumbers names(system);
  // What was written last as a copy, by its source: the kind, the place and the value's name.
  using Key = std::pair<StepSource::Kind, std::uint64_t>;
  std::map<Key, StepSource> copies;
  std::vector<StepSource> sources;
  for (const RecordedStep& recorded : steps) {
    const auto copyOf = [&](StepSource::Kind kind, const std::wstring& place, const std::wstring& name) {
      const auto copy = copies.find({kind, names.OfValue(place, name)});
      return copy == copies.end() ? StepSource() : copy->second;
    };
    StepSource& source = sources.emplace_back();
    const StepSource& of = recorded.source;
    StepSource copy;
    if (const auto* const value = std::get_if<ValueStep>(&recorded.step)) {
      source = copyOf(StepSource::Kind::kValue, value->key, value->name);
      if (source.kind == StepSource::Kind::kNone) source = copyOf(StepSource::Kind::kKey, value->key, {});
      copy = {StepSource::Kind::kValue, value->key, value->name, ContentSum(value->after)};
    } else if (const auto* const key = std::get_if<KeyStep>(&recorded.step)) {
      source = copyOf(StepSource::Kind::kKey, key->key, {});
      continue;
    } else if (const auto* const file = std::get_if<FileStep>(&recorded.step)) {
      source = copyOf(StepSource::Kind::kFile, file->path, {});
      copy = {StepSource::Kind::kFile, file->path, {}, ContentSum(file->after)};
    }
    if (of.kind == StepSource::Kind::kNone || copy.kind == StepSource::Kind::kNone) continue;
    copies[{of.kind, names.OfValue(of.place, of.name)}] = std::move(copy);
  }
  return sources;
}

std::vector<PlannedStep> PlanUndo(const JournalContents& checkpoint, SystemState& system) {
  Planner planner(checkpoint, system);
  std::vector<PlannedStep> plan;
  for (std::size_t number = checkpoint.steps.size(); number-- > 0;) {
    plan.push_back(planner.Plan(number));
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
