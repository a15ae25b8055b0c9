// What an undo decides, step by step, for every state that it may find.

#include "infra/runtime/ascii_text.h"
#include "siblings/guardkit/format/state_content.h"
#include "siblings/guardkit/format/undo_plan.h"
#include "tests/native/sample_journal.h"

#include <gtest/gtest.h>

#include <chrono>
#include <map>
#include <stdexcept>

namespace smh::test {
namespace {

class FakeSystem : public SystemState {
 public:
  std::map<std::wstring, ValueState> values;  // "key|name"
  std::map<std::wstring, KeyState> keys;
  std::map<std::wstring, FileState> files;
  std::wstring unreadable;

  ValueState Value(const std::wstring& key, const std::wstring& name) override {
    return Find(values, key + L'|' + name);
  }
  KeyState Key(const std::wstring& key) override { return Find(keys, key); }
  FileState File(const std::wstring& path) override { return Find(files, path); }
  std::wstring Folded(std::wstring_view name) override { return AsciiLowerCase(name); }

 private:
  template <typename State>
  State Find(const std::map<std::wstring, State>& states, const std::wstring& name) {
    if (name == unreadable) throw std::runtime_error("no rights");
    const auto found = states.find(name);
    return found == states.end() ? State{} : found->second;
  }
};

ValueState Text(const char* text) {
  return {true, 1, BytesOfText(text)};
}
KeyState KeyWith(std::vector<NamedValue> values) {
  return {true, L"", {}, std::move(values)};
}
FileState FileOf(char content) {
  FileState file{true, 0, 0, 0, 0, {}, {{L"", 1, {}}}};
  file.streams[0].hash.fill(static_cast<std::byte>(content));
  return file;
}

std::vector<Verdict> Plan(std::vector<RecordedStep> steps, FakeSystem& system) {
  std::vector<Verdict> verdicts;
  for (const PlannedStep& step : PlanUndo({{}, std::move(steps), true}, system))
    verdicts.push_back(step.verdict);
  return verdicts;
}

using enum Verdict;

TEST(UndoPlan, FoundStateAndMarkDecide) {
  FakeSystem before;
  FakeSystem after;
  FakeSystem other;
  const NamedValue one{L"1", 1, BytesOfText("1")};
  const NamedValue two{L"2", 1, BytesOfText("2")};
  before.values[L"K|v"] = Text("old");
  after.values[L"K|v"] = Text("new");
  other.values[L"K|v"] = {true, 2, Text("new").data};
  before.keys[L"K"] = KeyWith({two, one});
  other.keys[L"K"] = KeyWith({{L"1", 1, BytesOfText("other")}});
  FileState moved = FileOf('m');
  before.files = {{L"f", FileOf('a')}, {L"from", moved}};
  moved.written = 99;  // only the content counts
  after.files = {{L"f", FileOf('b')}, {L"to", moved}};
  other.files = {{L"f", FileOf('c')}, {L"to", moved}, {L"from", FileOf('x')}};

  const Step steps[] = {ValueStep{L"K", L"v", Text("old"), Text("new")},
                        KeyStep{L"K", KeyWith({one, two}), {}}, FileStep{L"f", FileOf('a'), FileOf('b')},
                        MoveStep{L"from", L"to", FileOf('m')}};
  for (const Step& step : steps) {
    SCOPED_TRACE(step.index());
    const struct {
      StepMark mark;
      Verdict before, after, other;
    } rows[] = {{StepMark::kDone, kConflict, kUndo, kConflict},
                {StepMark::kNone, kNothing, kUndo, kConflict},
                {StepMark::kFailed, kNothing, kUndo, kConflict}};
    for (const auto& row : rows) {
      const RecordedStep recorded{step, row.mark, 0};
      EXPECT_EQ(Plan({recorded}, before), std::vector{row.before});
      EXPECT_EQ(Plan({recorded}, after), std::vector{row.after});
      EXPECT_EQ(Plan({recorded}, other), std::vector{row.other});
    }
  }
}

// What was refused when it was put back is tried again.
TEST(UndoPlan, AKeyOfWhichAPartIsBackIsUndone) {
  FakeSystem system;
  const NamedValue one{L"1", 1, BytesOfText("1")};
  const NamedValue two{L"2", 1, BytesOfText("2")};
  const RecordedStep deleted{KeyStep{L"K", KeyWith({one, two}), {}}, StepMark::kDone, 0};
  for (const std::vector<NamedValue>& part : {std::vector<NamedValue>{}, std::vector{two}}) {
    system.keys[L"K"] = KeyWith(part);
    EXPECT_EQ(Plan({deleted}, system), std::vector{kUndo});
  }
}

// What did not end well may have been taken back without a word: its marks are not believed.
TEST(UndoPlan, WhatIsLeftOfACheckpointThatDidNotEndWellIsCompared) {
  FakeSystem system;
  JournalContents contents;
  contents.steps = {{ValueStep{L"K", L"v", Text("old"), Text("new")}, StepMark::kDone, 0},
                    {KeyStep{L"Side", {}, KeyWith({})}, StepMark::kDone, 0}};
  const auto verdict = [&] { return PlanUndo(contents, system).back().verdict; };
  const struct {
    bool finished, failed;
    Verdict before;
  } rows[] = {{true, false, kConflict}, {true, true, kNothing}, {false, false, kNothing}};
  for (const auto& row : rows) {
    contents.finished = row.finished;
    contents.failed = row.failed;
    system.values[L"K|v"] = Text("old");
    EXPECT_EQ(verdict(), row.before);
    EXPECT_EQ(IsAnythingLeft(contents, system), row.before == kConflict);
    system.values[L"K|v"] = Text("new");
    EXPECT_EQ(verdict(), kUndo);
    EXPECT_TRUE(IsAnythingLeft(contents, system));
    system.values[L"K|v"] = Text("its");
    EXPECT_TRUE(IsAnythingLeft(contents, system));
  }
  system.values[L"K|v"] = Text("old");
  system.keys[L"Side"] = KeyWith({});
  EXPECT_TRUE(IsAnythingLeft(contents, system));
  system.keys[L"Side"] = KeyWith({{L"its", 1, {}}});
  EXPECT_FALSE(IsAnythingLeft(contents, system));
  system.unreadable = L"K|v";
  EXPECT_TRUE(IsAnythingLeft(contents, system));
}

TEST(UndoPlan, MadeKeyIsNeverInConflict) {
  FakeSystem system;
  const RecordedStep made{KeyStep{L"K", {}, KeyWith({})}, StepMark::kDone, 0};
  EXPECT_EQ(Plan({made}, system), std::vector{kNothing});
  system.keys[L"K"] = KeyWith({{L"someone's", 1, {}}});
  EXPECT_EQ(Plan({made}, system), std::vector{kUndo});
}

// A change made and taken back in one checkpoint, and a move that goes through a third place.
TEST(UndoPlan, StepsAreComparedWithWhatLaterOnesWillHaveLeft) {
  FakeSystem system;
  system.values[L"K|v"] = Text("1");
  system.files[L"c"] = FileOf('m');
  const auto done = [](Step step) { return RecordedStep{std::move(step), StepMark::kDone, 0}; };
  const std::vector<RecordedStep> steps = {
      done(ValueStep{L"K", L"v", Text("1"), Text("2")}), done(ValueStep{L"K", L"v", Text("2"), {}}),
      done(ValueStep{L"K", L"v", {}, Text("1")}), done(MoveStep{L"a", L"b", FileOf('m')}),
      done(MoveStep{L"b", L"c", FileOf('m')})};
  EXPECT_EQ(Plan(steps, system), std::vector(5, kUndo));
  system.files[L"b"] = FileOf('x');
  EXPECT_EQ(Plan(steps, system), (std::vector{kConflict, kUndo, kUndo, kUndo, kUndo}));
}

// A change in the middle of a checkpoint that was taken back: in several steps of one object, before which
// and behind which other changes stand that bring about the same states.
TEST(UndoPlan, StepsThatWereTakenBackAreInNoStepsWay) {
  FakeSystem system;
  const auto done = [](Step step) { return RecordedStep{std::move(step), StepMark::kDone, 0}; };
  const auto gone = [](Step step) { return RecordedStep{std::move(step), StepMark::kFailed, kTakenBack}; };
  const auto value = [](const ValueState& from, const ValueState& to) {
    return ValueStep{L"K", L"v", from, to};
  };
  const KeyStep deleted{L"K", KeyWith({}), {}};
  const MoveStep moved{L"a", L"b", FileOf('m')};
  const auto content = [](char from, char to) { return FileStep{L"a", FileOf(from), FileOf(to)}; };
  system.files[L"b"] = FileOf('m');

  const struct {
    const char* name;
    ValueState found;  // K is there when it exists
    std::vector<RecordedStep> steps;
    std::vector<Verdict> plan;  // last step first
  } rows[] = {
      {"the same again",
       Text("2"),
       {gone(value(Text("1"), Text("2"))), done(value(Text("1"), Text("2")))},
       {kUndo, kNothing}},
      {"back to the step before",
       Text("2"),
       {done(value(Text("1"), Text("2"))), gone(value(Text("2"), Text("1")))},
       {kNothing, kUndo}},
      {"a value twice, then once",
       Text("3"),
       {gone(value(Text("1"), Text("2"))), gone(value(Text("2"), Text("3"))),
        done(value(Text("1"), Text("3")))},
       {kUndo, kNothing, kNothing}},
      {"a key with its value, then the value",
       Text("2"),
       {gone(value(Text("1"), {})), gone(deleted), done(value(Text("1"), Text("2")))},
       {kUndo, kNothing, kNothing}},
      {"a key with its value, and again",
       {},
       {gone(value(Text("1"), {})), gone(deleted), done(value(Text("1"), {})), done(deleted)},
       {kUndo, kUndo, kNothing, kNothing}},
      {"a key that was made, and again",
       Text("1"),
       {gone(KeyStep{L"K", {}, KeyWith({})}), gone(value({}, Text("1"))),
        done(KeyStep{L"K", {}, KeyWith({})}), done(value({}, Text("1")))},
       {kUndo, kUndo, kNothing, kNothing}},
      {"a file changed and moved, then moved",
       {},
       {gone(content('m', 'n')), gone(MoveStep{L"a", L"b", FileOf('n')}), done(moved)},
       {kUndo, kNothing, kNothing}},
      {"somebody else's",
       Text("its"),
       {done(value({}, Text("2"))), gone(value(Text("2"), Text("3")))},
       {kConflict, kUndo}},
      {"older than what stands",
       Text("1"),
       {done(value(Text("1"), Text("2"))), gone(value(Text("2"), Text("3")))},
       {kNothing, kConflict}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    system.values[L"K|v"] = row.found;
    system.keys[L"K"] = row.found.exists ? KeyWith({{L"v", row.found.type, row.found.data}}) : KeyState{};
    EXPECT_EQ(Plan(row.steps, system), row.plan);
  }
}

// A copy is not removed unless its source stands, or stands again when the later steps are undone.
TEST(UndoPlan, TheOnlyCopyIsNotRemoved) {
  using Kind = StepSource::Kind;
  const KeyState key = KeyWith({{L"", 1, BytesOfText("new")}});
  const struct {
    Step copy;
    StepSource source;
    Step deletion;
  } rows[] = {
      {ValueStep{L"K", L"v", {}, Text("new")},
       {Kind::kValue, L"S", L"V", ContentSum(Text("new"))},
       ValueStep{L"s", L"v", Text("new"), {}}},
      {ValueStep{L"K", L"v", {}, Text("new")},
       {Kind::kKey, L"S", L"", ContentSum(key)},
       KeyStep{L"S", key, {}}},
      {KeyStep{L"K", {}, KeyWith({})}, {Kind::kKey, L"S", L"", ContentSum(key)}, KeyStep{L"S", key, {}}},
      {FileStep{L"f", {}, FileOf('n')},
       {Kind::kFile, L"g", L"", ContentSum(FileOf('n'))},
       FileStep{L"g", FileOf('n'), {}}},
  };
  for (const auto& row : rows) {
    FakeSystem system;
    system.values[L"K|v"] = Text("new");
    system.keys[L"K"] = KeyWith({});
    system.files[L"f"] = FileOf('n');
    const RecordedStep copy{row.copy, StepMark::kDone, 0, row.source};
    const RecordedStep deletion{row.deletion, StepMark::kDone, 0};
    EXPECT_EQ(Plan({copy}, system), std::vector{kConflict});
    EXPECT_EQ(Plan({copy, deletion}, system), (std::vector{kUndo, kUndo}));
    // Another one of that name is not it.
    system.values[L"S|V"] = Text("its");
    system.keys[L"S"] = KeyWith({{L"", 1, BytesOfText("its")}});
    system.files[L"g"] = FileOf('x');
    EXPECT_EQ(Plan({copy}, system), std::vector{kConflict});
    system.values[L"S|V"] = Text("new");
    system.keys[L"S"] = key;
    system.files[L"g"] = FileOf('n');
    EXPECT_EQ(Plan({copy}, system), std::vector{kUndo});
    // What the undo makes again is a copy of what it removes then.
    const StepSource of = SourcesOfUndo({copy, deletion}, system).back();
    const bool isMadeKey = std::holds_alternative<KeyStep>(row.copy);
    EXPECT_EQ(SourceStands(of, system), true);
    EXPECT_EQ(of.kind == Kind::kNone, isMadeKey);
    system.values[L"K|v"] = Text("its");
    system.files.erase(L"f");
    EXPECT_EQ(SourceStands(of, system), isMadeKey);
  }
  FakeSystem system;
  system.keys[L"K"] = KeyWith({{L"its", 1, {}}});
  const StepSource gone{Kind::kKey, L"S", L"", 0};
  EXPECT_EQ(Plan({{KeyStep{L"K", {}, KeyWith({})}, StepMark::kDone, 0, gone}}, system), std::vector{kUndo});
}

// Whatever the steps are about, and whether they stand, were taken back, or are in the way of others.
TEST(UndoPlan, TakesTimeByTheCountOfSteps) {
  const auto seconds = [](std::size_t count, int kind) {
    FakeSystem system;
    system.values[L"K|v"] = Text("first");
    system.keys[L"K"] = KeyWith({{L"v", 1, BytesOfText("first")}});
    JournalContents contents;
    contents.finished = kind == 0;
    for (std::size_t i = 0; i < count; ++i) {
      const std::wstring name = L"name " + std::to_wstring(i);
      const ValueState state = Text(std::to_string(i).c_str());
      Step step;
      if (kind == 0) {  // values of one key, all standing
        system.values[L"K|" + name] = state;
        step = ValueStep{L"K", name, {}, state};
      } else if (kind == 1) {  // the same, none standing any more, and not as it was
        step = ValueStep{L"K", name, Text("before"), state};
      } else if (kind == 2) {  // one value again and again, back at its first state
        step = ValueStep{L"K", L"v", i == 0 ? Text("first") : Text(std::to_string(i - 1).c_str()), state};
      } else if (kind == 3) {  // files
        system.files[name] = FileOf('f');
        step = FileStep{name, {}, FileOf('f')};
      } else {  // keys that were deleted with their values
        step = KeyStep{name, KeyWith({{L"", 1, BytesOfText("x")}}), {}};
      }
      contents.steps.push_back({std::move(step), StepMark::kDone, 0});
    }
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(PlanUndo(contents, system).size(), count);
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  };
  for (int kind = 0; kind < 5; ++kind) {
    const double few = seconds(2'000, kind);
    // Ten times the steps; a hundred times would be their square.
    EXPECT_LT(seconds(20'000, kind), 40 * few + 0.2) << kind;
  }
}

// As a full disk leaves it: without an end, and without a word that it was taken back.
TEST(UndoPlan, NothingIsLeftOfATreeThatWasDeletedAndPutBack) {
  FakeSystem system;
  system.values[L"K|v"] = Text("1");
  system.keys[L"K"] = KeyWith({{L"v", 1, BytesOfText("1")}});
  JournalContents contents;
  contents.steps = {{ValueStep{L"K", L"v", Text("1"), {}}, StepMark::kDone, 0},
                    {KeyStep{L"K", KeyWith({}), {}}, StepMark::kDone, 0}};
  EXPECT_FALSE(IsAnythingLeft(contents, system));
  system.keys[L"K"] = KeyWith({});
  system.values.clear();
  EXPECT_TRUE(IsAnythingLeft(contents, system));
}

TEST(UndoPlan, WhatCannotBeLookedAtIsBlocked) {
  FakeSystem system;
  system.unreadable = L"K";
  EXPECT_EQ(Plan({{KeyStep{L"K", KeyWith({}), {}}, StepMark::kDone, 0},
                  {ValueStep{L"K", L"v", {}, Text("1")}, StepMark::kNone, 0}},
                 system),
            (std::vector{kNothing, kBlocked}));
}

}  // namespace
}  // namespace smh::test
