// What the history shows of a journal, and what it lets undo and redo mean.
#include "hosts/gui/history_rows.h"
#include "hosts/gui/undo_forecast.h"

#include <gtest/gtest.h>

namespace smh::test {

namespace {

using S = CheckpointState;

CheckpointRecord Record(std::uint32_t id, const wchar_t* title, S state, std::uint32_t undoes = 0,
                        std::uint32_t parts = 1) {
  CheckpointRecord record{.info = {}, .title = title};
  record.info.id = id;
  record.info.undoes = undoes;
  record.info.state = state;
  record.info.parts = parts;
  return record;
}

class HistoryRowsTest : public testing::Test {
 protected:
  void Take(std::vector<CheckpointRecord> actions) {
    rows.Take({.actions = std::move(actions), .parts = {}});
  }
  std::vector<std::wstring> Titles() const {
    std::vector<std::wstring> titles;
    for (std::size_t i = 0; i < rows.Shown().size(); ++i) titles.push_back(rows.Title(i));
    return titles;
  }
  HistoryRows rows;
};

TEST_F(HistoryRowsTest, OpensActionsIntoTheirParts) {
  Take({Record(3, L"Deleting A", S::kDone), Record(4, L"Disabling 3 entries", S::kPartlyDone, 0, 3),
        Record(5, L"Undo: Disabling 3 entries", S::kDone, 4)});
  EXPECT_EQ(Titles(), (std::vector<std::wstring>{L"+ Disabling 3 entries", L"   Deleting A"}));
  rows.Open(4, {Record(1, L"Startup Manager: Disabling X", S::kDone), Record(2, L"Disabling Y", S::kUndone),
                Record(3, L"Disabling Z", S::kDone)});
  EXPECT_EQ(Titles()[0], L"\u2013 Disabling 3 entries");
  EXPECT_EQ(Titles()[1], L"        Disabling X");
  EXPECT_EQ(Titles()[2], L"        Disabling Y");
  EXPECT_EQ(rows.ActionCount(), 2u);

  const HistoryTarget both{4, {1, 3}};
  EXPECT_EQ(rows.TargetOf({1, 3}), both);
  EXPECT_EQ(rows.PositionsOf(both), (std::vector<std::size_t>{1, 3}));
  EXPECT_EQ(rows.NameOf(both), L"2 parts of Disabling 3 entries");
  EXPECT_EQ(rows.TargetOf({0, 1}).action, 0u);
  EXPECT_EQ(rows.TargetOf({1, 4}).action, 0u);
  struct {
    HistoryTarget target;
    bool undo, redo;
  } const cases[] = {{both, true, false}, {{4, {2}}, false, true}, {{4, {1, 2}}, false, false},
                     {{4}, true, true},   {{3}, true, false},      {{}, false, false}};
  for (const auto& each : cases) {
    EXPECT_EQ(rows.CanUndo(each.target), each.undo) << each.target.action << each.target.parts.size();
    EXPECT_EQ(rows.CanRedo(each.target), each.redo) << each.target.action << each.target.parts.size();
  }
  ASSERT_NE(rows.LatestUndo(), nullptr);
  EXPECT_EQ(rows.LatestUndo()->info.id, 5u);

  rows.Search(L" ling y");
  EXPECT_EQ(Titles().size(), 2u);
  rows.Close(4);
  EXPECT_EQ(Titles().size(), 0u);
}

TEST_F(HistoryRowsTest, SaysWhatCannotBeUndone) {
  struct {
    S state;
    const wchar_t* text;
    const wchar_t* reason;
    bool hasParts;
  } const cases[] = {
      {S::kDone, L"Done", L"", true},
      {S::kInterrupted, L"Interrupted", L"", true},
      {S::kFailed, L"Failed", L"", true},
      {S::kPartlyDone, L"Partly done", L"", true},
      {S::kUndone, L"Undone", L"It is undone already", true},
      {S::kOpen, L"At work", L"It is still at work.", true},
      {S::kDamaged, L"Damaged, cannot be undone", L"Its file in the journal is damaged", true},
      {S::kDropped, L"Dropped on 2026-11-21, no longer undoable", L"It was dropped", false},
  };
  for (const auto& each : cases) {
    CheckpointRecord action = Record(7, L"X", each.state, 0, 2);
    const SYSTEMTIME noon = {2026, 11, 6, 21, 12, 0, 0, 0};
    SystemTimeToFileTime(&noon, &action.info.dropped);
    EXPECT_EQ(HistoryStateText(action), each.text);
    Take({action});
    EXPECT_EQ(rows.HasParts(0), each.hasParts) << each.text;
    EXPECT_TRUE(rows.WhyNotUndone({7}).starts_with(each.reason)) << each.text;
    const bool isUndoable = *each.reason == L'\0';
    EXPECT_EQ(rows.CanUndo({7}), isUndoable) << each.text;
    EXPECT_EQ(rows.CanUndoLatest(), isUndoable && each.state != S::kFailed) << each.text;
    // What holds for the action holds for a part that stands.
    rows.Open(7, {Record(1, L"Part", S::kDone)});
    EXPECT_EQ(rows.CanUndo({7, {1}}), isUndoable || each.state == S::kUndone) << each.text;
  }
}

TEST(UndoForecastTest, PromisesWhatUndoCanDo) {
  EXPECT_EQ(DeletionText({}), L"Undo brings back what was deleted.");
  EXPECT_EQ(DeletionText({.isRecorded = false, .dropped = {}}),
            L"Changes are not recorded now: undo cannot bring back what is deleted.");
  const UndoForecast loss{.dropped = {Record(1, L"A", S::kDone), Record(2, L"B", S::kDone)}};
  EXPECT_EQ(
      DeletionText(loss),
      L"Undo brings back what was deleted. To keep it for undo, 2 older changes will be dropped and can "
      L"no longer be undone, up to \u201CB\u201D.");
}

}  // namespace
}  // namespace smh::test
