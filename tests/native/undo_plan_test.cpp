// What an undo decides, step by step, for every state that it may find.

#include "siblings/guardkit/format/undo_plan.h"
#include "tests/native/sample_journal.h"

#include <gtest/gtest.h>

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
  bool SameName(std::wstring_view a, std::wstring_view b) override { return a == b; }

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
  other.keys[L"K"] = KeyWith({one});
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
