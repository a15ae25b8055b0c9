// The list beside a saved state.
#include "hosts/gui/empty_list.h"
#include "hosts/gui/entry_rows.h"
#include "hosts/gui/resource.h"
#include "tests/hosts/common/test_items.h"

#include <gtest/gtest.h>

namespace smh::test {

namespace {

ItemRecord Item(const std::wstring& name, bool enabled = true, const std::wstring& command = L"C:\\one.exe") {
  ItemRecord item = MakeItem(sulRegistryUserRun, L"HKEY_CURRENT_USER\\Run", name, command, enabled);
  item.root = L"HKEY_CURRENT_USER";
  item.view = 64;
  item.key = enabled ? L"Run" : L"Run\\Disabled";
  item.value = name;
  item.disabledBy = enabled ? L"" : L"own";
  return item;
}

// "name:mark " of every row that is shown.
std::wstring Marks(const EntryRows& rows) {
  std::wstring text;
  for (const EntryRow* row : rows.Shown()) {
    text += row->item.caption + L":";
    if (row->difference) text += DifferenceTitle(row->difference->kind);
    text += L" ";
  }
  return text;
}

TEST(ComparisonTest, MarksWhatDiffersAndFollowsChanges) {
  const std::vector<ItemRecord> saved = {Item(L"gone"), Item(L"same"), Item(L"switched"), Item(L"text")};
  EntryRows rows;
  rows.Apply({{L"added", Item(L"new")},
              {L"added", Item(L"same")},
              {L"added", Item(L"switched", false)},
              {L"added", Item(L"text", true, L"C:\\two.exe")}});
  rows.Compare(std::make_shared<const Snapshot>(SnapshotOf(saved)));
  EXPECT_EQ(Marks(rows), L"gone:Removed new:Added same: switched:Switched text:Changed ");
  EXPECT_EQ(DifferenceCountText(rows.Differences()), L"1 added, 1 removed, 1 changed, 1 switched");
  EXPECT_EQ(rows.Total(), 4u);
  const EntryRow& gone = *rows.Shown()[0];
  EXPECT_TRUE(gone.IsGone() && gone.item.can == 0 && !gone.item.canSwitch);
  const auto lines = DifferenceLines(*rows.Shown()[4]->difference);
  EXPECT_EQ(std::wstring(lines.back().name) + L": " + lines.back().value.text,
            L"Command before: C:\\one.exe");
  rows.ShowOnlyDifferent(true);
  EXPECT_EQ(Marks(rows), L"gone:Removed new:Added switched:Switched text:Changed ");
  rows.Search(L"removed");
  EXPECT_EQ(Marks(rows), L"gone:Removed ");
  rows.Search(L"");
  // What is put back differs no longer; a row that only the file has stays the same.
  const RowId id = gone.id;
  rows.Apply({{L"enabled", Item(L"switched"), Item(L"switched", false)},
              {L"changed", Item(L"text")},
              {L"removed", Item(L"new")}});
  EXPECT_EQ(Marks(rows), L"gone:Removed ");
  EXPECT_EQ(rows.Shown()[0]->id, id);
  rows.Apply({{L"added", Item(L"gone")}});
  EXPECT_EQ(DifferenceCountText(rows.Differences()), L"nothing differs");
  EXPECT_EQ(NoteOf(rows, {L"", L"", false}).offers.front().command,
            static_cast<unsigned>(CMD_ONLY_DIFFERENT));
  rows.Compare(nullptr);
  EXPECT_EQ(Marks(rows), L"gone: same: switched: text: ");
}

}  // namespace
}  // namespace smh::test
