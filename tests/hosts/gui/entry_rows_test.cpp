#include "hosts/common/host_error.h"
#include "hosts/gui/account.h"
#include "hosts/gui/column_layout.h"
#include "hosts/gui/entry_details.h"
#include "hosts/gui/entry_rows.h"
#include "hosts/gui/resource.h"
#include "hosts/gui/trust_checker.h"
#include "hosts/gui/worker.h"
#include "tests/hosts/common/test_items.h"
#include "tests/support/waiting.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace smh::test {

namespace {

const std::wstring kRun = L"HKEY_CURRENT_USER\\Run";
const std::wstring kSide = kRun + L"\\Disabled";

ItemRecord Item(const std::wstring& caption, bool enabled = true,
                std::int32_t location = sulRegistryUserRun) {
  ItemRecord item = MakeItem(location, enabled ? kRun : kSide, caption, L"C:\\" + caption + L".exe", enabled);
  item.fileFound = true;
  item.starts = enabled ? kStartsYes : kStartsNo;
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
  rows.Sort({kNameColumn, true}, {});
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

TEST_F(EntryRowsTest, TheOrderBeforeDecidesAmongEquals) {
  constexpr std::size_t kCompany = 2;
  constexpr std::size_t kVersion = 7;
  constexpr std::size_t kFileDate = 10;
  ItemRecord older = Item(L"delta");
  older.version = L"9.0";
  older.lastWriteTime = 9'000.5;
  ItemRecord newer = Item(L"epsilon");
  newer.lastWriteTime = 45'000.5;
  newer.version = L"10.0";
  rows.Apply({{L"added", older}, {L"added", newer}});
  rows.Sort({kCompany, false}, {kNameColumn, true});
  EXPECT_EQ(Captions(rows), (Texts{L"Gamma", L"epsilon", L"delta", L"alpha", L"beta"}));
  rows.Sort({kNameColumn, false}, {kCompany, false});
  EXPECT_EQ(Captions(rows), (Texts{L"alpha", L"beta", L"delta", L"epsilon", L"Gamma"}));
  for (const std::size_t column : {kFileDate, kVersion}) {
    rows.Sort({column, true}, {kNameColumn, false});
    EXPECT_EQ(Captions(rows), (Texts{L"epsilon", L"delta", L"alpha", L"beta", L"Gamma"})) << column;
  }
  // What is new has keys in both orders.
  rows.Apply({{L"added", Item(L"aardvark")}});
  EXPECT_EQ(Captions(rows)[2], L"aardvark");
}

TEST_F(EntryRowsTest, TellsTwinsApart) {
  ItemRecord in64 = Item(L"alpha", true, sulRegistryCommonRun);
  in64.view = 64;
  ItemRecord in32 = in64;
  in32.name += L" (32)";
  in32.view = 32;
  rows.Apply({{L"added", in64}, {L"added", in32}});
  Texts marks;
  for (const EntryRow* row : rows.Shown()) {
    if (row->item.caption == L"alpha") marks.push_back(row->twinMark);
  }
  std::ranges::sort(marks);
  EXPECT_EQ(marks, (Texts{L"Run, all users, 32-bit", L"Run, all users, 64-bit", L"Run, this user"}));
  rows.Apply({{L"removed", in64}, {L"removed", in32}});
  for (const EntryRow* row : rows.Shown()) EXPECT_EQ(row->twinMark, L"");
}

TEST(ColumnLayoutTest, TakesWhatWasKeptAndNothingElse) {
  const ColumnLayout kept = {{7, 90}, {kNameColumn, 60}, {1, 30}};
  EXPECT_EQ(LayoutOf(NumbersOf(kept)), kept);
  // A column that a later version knew, one that comes twice, and a negative one.
  EXPECT_EQ(LayoutOf({7, 90, 99, 5, kNameColumn, 60, 7, 1, 1, 30, -1, 4}), kept);
  EXPECT_EQ(LayoutOf({1, 30}), (ColumnLayout{{kNameColumn, EntryColumns()[kNameColumn].width}, {1, 30}}));
  EXPECT_EQ(LayoutOf({1, 30, 2}), FirstLayout());
  EXPECT_EQ(LayoutOfWidths({11, 12, 13, 14, 15, 16})[5], (ColumnPlace{5, 16}));
  EXPECT_EQ(Toggled(Toggled(FirstLayout(), 6), 6), FirstLayout());
  EXPECT_EQ(Toggled(FirstLayout(), kNameColumn), FirstLayout());
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
  rows.Sort({1, false}, {});
  ItemRecord missing = Item(L"Gamma");
  missing.fileFound = false;
  missing.can = 0;
  rows.Apply({{L"changed", missing}, {L"removed", Item(L"alpha")}});
  EXPECT_EQ(Captions(rows), (Texts{L"beta", L"Gamma"}));
  EXPECT_EQ(StatusText(rows.Shown()[1]->item), L"On, file missing, locked");
  EXPECT_EQ(rows.CountOf(sulRegistryUserRun), 1u);
}

std::vector<ItemRecord> Checked(std::vector<ItemRecord> items, TrustWord word) {
  for (ItemRecord& item : items) {
    item.trust.emplace();
    item.trust->word = word;
  }
  return items;
}

TEST_F(EntryRowsTest, ChecksWhatIsSeenFirstAndHidesWhatIsVerified) {
  rows.ShowLocations(LocationSet().set(sulRegistryUserRun));
  // What is seen, the second row of two; then what is shown; then the rest.
  std::vector<ItemRecord> items = rows.Unchecked(1, 5, 9);
  ASSERT_EQ(items.size(), 3u);
  EXPECT_EQ(items[0].caption + items[1].caption + items[2].caption, L"Gammaalphabeta");
  items.resize(2);
  EXPECT_FALSE(rows.TakeTrust(Checked(items, TrustWord::kVerified)));
  EXPECT_EQ(rows.UncheckedCount(), 1u);
  rows.SetFilters(FilterSet().set(FilterOf(CMD_HIDE_VERIFIED)));
  EXPECT_EQ(Captions(rows), Texts{});
  // What is known stays while it is asked again, but not for another file.
  ItemRecord switched = Item(L"alpha");
  switched.reasons = kReasonSwitchedOff;
  ItemRecord replaced = Item(L"Gamma");
  replaced.lastWriteTime = 45'000.5;
  rows.CheckAgain();
  rows.Apply({{L"changed", switched}, {L"changed", replaced}});
  EXPECT_EQ(Captions(rows), Texts{L"Gamma"});
  // The answer for the file before it comes late.
  rows.TakeTrust(Checked({items[0]}, TrustWord::kVerified));
  EXPECT_EQ(Captions(rows), Texts{L"Gamma"});
  EXPECT_TRUE(rows.TakeTrust(Checked({replaced}, TrustWord::kVerified)));
  EXPECT_EQ(Captions(rows), Texts{});
}

TEST(EntryWordsTest, SaysWhetherWindowsStartsIt) {
  const struct {
    bool enabled;
    std::int32_t starts, reasons;
    const wchar_t* status;
    RowTone tone;
  } kCases[] = {
      {true, kStartsYes, 0, L"On", RowTone::kPlain},
      {false, kStartsNo, kReasonDisabled, L"Off", RowTone::kGrey},
      {true, kStartsNo, kReasonSwitchedOff, L"On, but switched off in Task Manager", RowTone::kGrey},
      {true, kStartsNo, kReasonPolicy, L"On, but blocked by a policy", RowTone::kGrey},
      {true, kStartsUnknown, kReasonPolicy, L"On, perhaps blocked by a policy", RowTone::kPlain},
      {true, kStartsUnknown, 0, L"On, start uncertain", RowTone::kPlain},
      {true, kStartsNo, kReasonNotRead | kReasonMissing, L"On, but not read by this Windows", RowTone::kGrey},
      {true, kStartsNo, kReasonMissing, L"On, but without a command", RowTone::kGrey},
      {true, kStartsYes, kReasonBlocked | kReasonOnlyFor64, L"On, in 32-bit programs only", RowTone::kPlain},
      {true, kStartsYes, kReasonSwitchedOff | kReasonOnlyFor32, L"On, from the 64-bit list only",
       RowTone::kPlain},
  };
  for (const auto& each : kCases) {
    ItemRecord item = Item(L"alpha", each.enabled);
    item.starts = each.starts;
    item.reasons = each.reasons;
    item.canSwitch = true;
    if (each.reasons == kReasonMissing) item.command.clear();
    if ((each.reasons & kReasonBlocked) != 0) item.location = sulRegistryShellExtApproved;
    EXPECT_EQ(StatusText(item), each.status);
    EXPECT_EQ(ToneOfRow(item), each.tone) << each.status;
    const bool isOff = (each.reasons & kReasonSwitchedOff) != 0;
    EXPECT_EQ(CanSwitchOn(item) && CanEnable(item), isOff) << each.status;
    const bool isOnlyOff = isOff && each.starts == kStartsNo;
    EXPECT_EQ(CanSwitchOff(item), each.enabled && !isOnlyOff) << each.status;
    EXPECT_EQ(ReasonSentences(item).empty(), each.reasons == 0) << each.status;
    auto details = DetailsOf(item, item.command);
    const auto count = [&](const wchar_t* name) {
      return std::ranges::count(details, std::wstring(name),
                                [](const auto& line) { return std::wstring(line.name); });
    };
    EXPECT_EQ(count(L"Perhaps"), each.starts == kStartsUnknown && each.reasons != 0) << each.status;
    EXPECT_EQ(count(L"Because") != 0, each.starts != kStartsUnknown && each.reasons != 0) << each.status;
    EXPECT_EQ(count(L"Note"), 0) << each.status;
    item.location = sulRegistryUserRunOnce;
    item.value = L"!alpha";
    details = DetailsOf(item, item.command);
    EXPECT_EQ(count(L"Note"), 1) << each.status;
  }
}

TEST(EntryWordsTest, TrustsWhatIsProvedAlone) {
  const struct {
    TrustWord word;
    std::int32_t signature;
    const wchar_t* text;
    std::int32_t picture;
    bool isAsked;
  } kCases[] = {
      {TrustWord::kVerified, kSignatureValid, L"Verified", kRatingTrusted, false},
      {TrustWord::kClaimed, kSignatureValid, L"Claimed", kRatingUnknown, true},
      {TrustWord::kUnknown, kSignatureNone, L"Unknown", kRatingUnknown, false},
      {TrustWord::kUnknown, kSignatureBroken, L"Broken signature", kRatingRisky, true},
      {TrustWord::kClaimed, kSignatureDistrusted, L"Withdrawn signature", kRatingRisky, true},
      {TrustWord::kRisky, kSignatureNone, L"Risky", kRatingRisky, true},
  };
  for (const auto& each : kCases) {
    ItemRecord item = Item(L"alpha");
    item.rating = each.word == TrustWord::kRisky ? kRatingRisky : kRatingTrusted;
    const bool isRisky = item.rating == kRatingRisky;
    EXPECT_EQ(TrustText(item), isRisky ? L"Risky" : L"Checking\u2026");
    EXPECT_EQ(TrustPicture(item), isRisky ? kRatingRisky : kRatingUnknown) << each.text;
    item.trust.emplace();
    item.trust->word = each.word;
    item.trust->signature = each.signature;
    EXPECT_EQ(TrustText(item), each.text);
    EXPECT_EQ(TrustPicture(item), each.picture) << each.text;
    EXPECT_EQ(ToneOfRow(item) == RowTone::kRed, each.picture == kRatingRisky) << each.text;
    EXPECT_EQ(RunQuestion(item, true).empty(), !each.isAsked) << each.text;
    EXPECT_EQ(RunQuestion(item, false).empty(), each.picture != kRatingRisky) << each.text;
  }
}

TEST(TrustCheckerTest, AnswersEveryEntryWithWhatIsProved) {
  UiQueue queue;
  std::vector<ItemRecord> answered;
  TrustChecker checker(queue);
  ItemRecord trusted = Item(L"nowhere");
  trusted.rating = kRatingTrusted;
  const auto take = [&](const auto& checked) {
    answered.insert(answered.end(), checked.begin(), checked.end());
  };
  const auto hasAnswered = [&](std::size_t count) {
    return WaitUntil([&] {
      queue.RunAll();
      return answered.size() == count;
    });
  };
  checker.Check({trusted}, take);
  EXPECT_TRUE(hasAnswered(1));
  checker.CheckFirst(Item(L"nobody"), take);
  EXPECT_TRUE(hasAnswered(2));
  for (const ItemRecord& item : answered) {
    ASSERT_TRUE(item.trust);
    EXPECT_EQ(item.trust->word, item.rating == kRatingTrusted ? TrustWord::kClaimed : TrustWord::kUnknown);
    EXPECT_EQ(item.trust->signature, kSignatureUnreadable);
  }
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
