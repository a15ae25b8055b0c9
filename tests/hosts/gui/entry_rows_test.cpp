#include "hosts/common/host_error.h"
#include "hosts/gui/account.h"
#include "hosts/gui/entry_rows.h"
#include "hosts/gui/worker.h"
#include "tests/hosts/common/test_items.h"

#include <gtest/gtest.h>

namespace smh::test {

namespace {

const std::wstring kRun = L"HKEY_CURRENT_USER\\Run";
const std::wstring kSide = kRun + L"\\Disabled";

ItemRecord Item(const std::wstring& caption, bool enabled = true,
                std::int32_t location = sulRegistryUserRun) {
  ItemRecord item = MakeItem(location, enabled ? kRun : kSide, caption, L"C:\\" + caption + L".exe", enabled);
  item.fileFound = true;
  item.can = 1u << kActionDelete;
  return item;
}

std::vector<std::wstring> Captions(const EntryRows& rows) {
  std::vector<std::wstring> captions;
  for (const EntryRow* row : rows.Shown()) captions.push_back(row->item.caption);
  return captions;
}

using Texts = std::vector<std::wstring>;

class EntryRowsTest : public testing::Test {
 protected:
  EntryRowsTest() {
    ItemRecord common = Item(L"beta", true, sulRegistryCommonRun);
    common.company = L"\u00C4pfel GmbH";
    rows.Apply({{L"added", Item(L"Gamma")}, {L"added", Item(L"alpha")}, {L"added", common}});
  }

  EntryRows rows;
};

TEST_F(EntryRowsTest, SortsAndFilters) {
  EXPECT_EQ(Captions(rows), (Texts{L"alpha", L"beta", L"Gamma"}));
  rows.Sort(kNameColumn, true);
  EXPECT_EQ(Captions(rows), (Texts{L"Gamma", L"beta", L"alpha"}));
  const struct {
    const wchar_t* text;
    Texts captions;
  } kSearches[] = {
      {L"GAM", {L"Gamma"}},       {L"  exe  c: ", {L"Gamma", L"beta", L"alpha"}},
      {L"\u00E4PFEL", {L"beta"}}, {L"this user a", {L"Gamma", L"alpha"}},
      {L"gamma beta", {}},
  };
  for (const auto& search : kSearches) {
    rows.Search(search.text);
    EXPECT_EQ(Captions(rows), search.captions) << search.text;
  }
  rows.Search(L"");
  rows.ShowLocations(LocationSet().set(sulRegistryCommonRun));
  EXPECT_EQ(Captions(rows), Texts{L"beta"});
  EXPECT_EQ(rows.Total(), 3u);
  EXPECT_EQ(rows.CountOf(sulRegistryUserRun), 2u);
}

TEST_F(EntryRowsTest, ARowSurvivesItsEntrysNewName) {
  const RowId id = rows.Shown()[0]->id;
  const auto turn = [&](bool enabled) {
    rows.Apply({{enabled ? L"enabled" : L"disabled", Item(L"alpha", enabled), Item(L"alpha", !enabled)}});
    ASSERT_EQ(rows.PositionsOf({id}), std::vector<std::size_t>{0});
    EXPECT_EQ(rows.Shown()[0]->item.enabled, enabled);
  };
  turn(false);
  turn(true);
  EXPECT_EQ(rows.Total(), 3u);
  // Another program under the same name is another entry.
  ItemRecord other = Item(L"alpha", false);
  other.command = L"C:\\other.exe";
  rows.Apply({{L"removed", Item(L"alpha")}, {L"added", other}});
  EXPECT_TRUE(rows.PositionsOf({id}).empty());
  EXPECT_EQ(rows.CountOf(sulRegistryUserRun), 2u);
}

TEST_F(EntryRowsTest, AChangeMovesTheRow) {
  rows.Sort(1, false);
  ItemRecord missing = Item(L"Gamma");
  missing.fileFound = false;
  missing.can = 0;
  rows.Apply({{L"changed", missing}, {L"removed", Item(L"alpha")}});
  EXPECT_EQ(Captions(rows), (Texts{L"beta", L"Gamma"}));
  EXPECT_EQ(StatusText(rows.Shown()[1]->item), L"On, file missing, locked");
  EXPECT_EQ(rows.CountOf(sulRegistryUserRun), 1u);
}

TEST(AccountTest, SomebodyElsesSession) {
  const struct {
    const wchar_t* name;
    const wchar_t* sessionUser;
    bool isForeign;
  } kCases[] = {
      {L"DESK\\ann", L"DESK\\ann", false},  {L"desk\\ANN", L"DESK\\ann", false},
      {L"DESK\\admin", L"DESK\\ann", true}, {L"CORP\\ann", L"DESK\\ann", true},
      {L"ann", L"DESK\\ann", false},        {L"admin", L"DESK\\ann", true},
      {L"DESK\\ann", L"", false},
  };
  for (const auto& each : kCases) {
    Account account;
    account.name = each.name;
    account.sessionUser = each.sessionUser;
    EXPECT_EQ(account.IsForeign(), each.isForeign) << each.name << L" " << each.sessionUser;
  }
}

TEST(UiQueueTest, WhatFailsTakesNothingFromTheOthers) {
  UiQueue queue;
  int done = 0;
  queue.Post([&] { ++done; });
  queue.Post([] { throw HostError(L"no"); });
  queue.Post([&] { ++done; });
  EXPECT_THROW(queue.RunAll(), HostError);
  queue.RunAll();
  EXPECT_EQ(done, 2);
}

}  // namespace
}  // namespace smh::test
