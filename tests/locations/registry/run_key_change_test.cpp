#include "infra/registry/uRegistryUtils.h"
#include "tests/locations/registry/run_key_fixture.h"

#include <gmock/gmock.h>

namespace smh::test {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::UnorderedElementsAre;

using RunKeyChange = BothWays<RunKeyTest>;
INSTANTIATE_TEST_SUITE_P(Checkpoints, RunKeyChange, ::testing::Bool());

TEST_P(RunKeyChange, DisablingAndEnablingMoveTheValueAndNumberNamesThatAreTaken) {
  SetValue(HKEY_CURRENT_USER, kRunKey, L"Foo", Sz(L"new.exe"));
  SetValue(HKEY_CURRENT_USER, kRunKey, L"Foo (1)", Sz(L"other.exe"));
  SetValue(HKEY_CURRENT_USER, kRunSide, L"Foo", Sz(L"old.exe"));
  const ItemRef item = LoadAndFind(UserRun(), L"Foo");
  UserRun().DisableItem(item);
  ExpectCheckpoint(L"Startup Manager: Disabling Foo");
  EXPECT_THAT(TextsIn(HKEY_CURRENT_USER, kRunSide), UnorderedElementsAre(L"Foo=old.exe", L"Foo (1)=new.exe"));
  EXPECT_THAT(TextsIn(HKEY_CURRENT_USER, kRunKey), ElementsAre(L"Foo (1)=other.exe"));
  EXPECT_FALSE(item->IsEnabled());
  EXPECT_TRUE(item->TakeChangedMark());
  EXPECT_EQ(item->Name(), BuildFullValuePath(OwnView(), HKEY_CURRENT_USER, kRunSide, L"Foo (1)"));

  module.Safeguard().Clear();
  UserRun().EnableItem(item);
  ExpectCheckpoint(L"Startup Manager: Enabling Foo (1)");
  EXPECT_EQ(item->State().details.Caption, L"Foo (1) (1)");
  EXPECT_THAT(TextsIn(HKEY_CURRENT_USER, kRunKey),
              UnorderedElementsAre(L"Foo (1)=other.exe", L"Foo (1) (1)=new.exe"));
  EXPECT_TRUE(item->IsEnabled());

  UserRun().ReadItems();
  EXPECT_TRUE(item->IsListed()) << "the same object goes on";
}

TEST_P(RunKeyChange, AnEntryThatAnotherToolDisabledComesBackAndThenGoesToTheOwnPlace) {
  const std::wstring dash = kRunKey + L"-";
  SetValue(HKEY_CURRENT_USER, dash, L"d", ExpandSz(L"%TEMP%\\d.exe"));
  const ItemRef item = LoadAndFind(UserRun(), L"d");
  UserRun().EnableItem(item);
  EXPECT_EQ(GetValue(HKEY_CURRENT_USER, kRunKey, L"d"), Sz(L"%TEMP%\\d.exe"));
  EXPECT_EQ(GetValue(HKEY_CURRENT_USER, dash, L"d"), std::nullopt);
  UserRun().DisableItem(item);
  EXPECT_EQ(GetValue(HKEY_CURRENT_USER, kRunSide, L"d"), Sz(L"%TEMP%\\d.exe"));
  EXPECT_EQ(GetValue(HKEY_CURRENT_USER, dash, L"d"), std::nullopt);
}

TEST_P(RunKeyChange, BothViewsAreKeptInStepUnlessThePlainOneHoldsAnotherEntry) {
  if (!HasTwoViews()) return;
  constexpr REGSAM k64 = KEY_WOW64_64KEY;
  SetValue(HKEY_LOCAL_MACHINE, kRunKey, L"same", Sz(L"s.exe"), k64);
  SetValue(HKEY_LOCAL_MACHINE, kRunKey, L"same", Sz(L"s.exe"));
  SetValue(HKEY_LOCAL_MACHINE, kRunKey, L"other", Sz(L"64.exe"), k64);
  SetValue(HKEY_LOCAL_MACHINE, kRunKey, L"other", Sz(L"32.exe"));
  SetValue(HKEY_LOCAL_MACHINE, kRunKey, L"one", Sz(L"1.exe"), k64);
  SetValue(HKEY_LOCAL_MACHINE, kRunSide, L"one", Sz(L"taken in the plain view"));
  CommonRun().ReadItems();

  for (const wchar_t* caption : {L"same", L"other", L"one"}) {
    CommonRun().DisableItem(FindByCaption(CommonRun(), caption));
  }
  EXPECT_THAT(TextsIn(HKEY_LOCAL_MACHINE, kRunSide, k64),
              UnorderedElementsAre(L"same=s.exe", L"other=64.exe", L"one (1)=1.exe"));
  EXPECT_THAT(TextsIn(HKEY_LOCAL_MACHINE, kRunKey, k64), IsEmpty());
  EXPECT_THAT(TextsIn(HKEY_LOCAL_MACHINE, kRunSide),
              UnorderedElementsAre(L"same=s.exe", L"one=taken in the plain view"));
  EXPECT_THAT(TextsIn(HKEY_LOCAL_MACHINE, kRunKey), ElementsAre(L"other=32.exe"));

  CommonRun().ReadItems();
  const ItemRef left =
      FindItem(sulRegistryCommonRun, BuildFullValuePath(0, HKEY_LOCAL_MACHINE, kRunKey, L"other"));
  ASSERT_NE(left, nullptr) << "the plain view's own entry is listed now";
  EXPECT_EQ(Command(left), L"32.exe");
}

TEST_P(RunKeyChange, DeletingTakesTheTwinAlongButNotAnotherEntry) {
  SetValue(HKEY_LOCAL_MACHINE, kRunKey, L"same", Sz(L"s.exe"), OwnView());
  SetValue(HKEY_LOCAL_MACHINE, kRunKey, L"same", Sz(L"s.exe"));
  SetValue(HKEY_LOCAL_MACHINE, kRunKey, L"other", Sz(L"64.exe"), OwnView());
  if (HasTwoViews()) SetValue(HKEY_LOCAL_MACHINE, kRunKey, L"other", Dword(1));
  CommonRun().ReadItems();
  const ItemRef same = FindByCaption(CommonRun(), L"same");
  CommonRun().DeleteItem(same);
  ExpectCheckpoint(L"Startup Manager: Deleting same");
  EXPECT_FALSE(same->IsListed());
  EXPECT_EQ(GetValue(HKEY_LOCAL_MACHINE, kRunKey, L"same", OwnView()), std::nullopt);
  EXPECT_EQ(GetValue(HKEY_LOCAL_MACHINE, kRunKey, L"same"), std::nullopt);

  CommonRun().DeleteItem(FindByCaption(CommonRun(), L"other"));
  EXPECT_EQ(GetValue(HKEY_LOCAL_MACHINE, kRunKey, L"other", OwnView()), std::nullopt);
  if (HasTwoViews()) {
    EXPECT_EQ(GetValue(HKEY_LOCAL_MACHINE, kRunKey, L"other"), Dword(1));
  }
}

TEST_P(RunKeyChange, AddingFindsWhatIsThereInsteadOfOverwritingIt) {
  SetValue(HKEY_CURRENT_USER, kRunKey, L"list\xE4t", Sz(L"l.exe"));
  UserRun().ReadItems();
  SetValue(HKEY_CURRENT_USER, kRunKey, L"unlist\xE4t", Sz(L"u.exe"));

  const int listed = UserRun().AddItem(L"LIST\xC4T", L"x.exe").position;
  EXPECT_EQ(listed, FindByCaption(UserRun(), L"list\xE4t")->Position());
  const int unlisted = UserRun().AddItem(L"unlist\xC4T", L"x.exe").position;
  const ItemRef found = FindByCaption(UserRun(), L"unlist\xE4t");
  ASSERT_NE(found, nullptr);
  EXPECT_EQ(unlisted, found->Position());
  EXPECT_EQ(Command(found), L"u.exe");
  EXPECT_THAT(RecordedChanges(), IsEmpty()) << "nothing was changed";
  module.Safeguard().Clear();
  EXPECT_EQ(GetValue(HKEY_CURRENT_USER, kRunKey, L"list\xE4t"), Sz(L"l.exe"));

  const int added = UserRun().AddItem(L"a\\\"b\"", L"\"C:\\windows\\notepad.exe\" /x").position;
  ExpectCheckpoint(L"Startup Manager: Adding a\\\"b\"");
  const ItemRef item = FindByCaption(UserRun(), L"a\\\"b\"");
  ASSERT_NE(item, nullptr);
  EXPECT_EQ(added, item->Position());
  EXPECT_TRUE(item->IsEnabled());
  EXPECT_TRUE(item->State().details.FileFound);
  EXPECT_EQ(GetValue(HKEY_CURRENT_USER, kRunKey, L"a\\\"b\"", OwnView()),
            Sz(L"\"C:\\windows\\notepad.exe\" /x"));
  UserRun().ReadItems();
  EXPECT_TRUE(item->IsListed());
}

TEST_P(RunKeyChange, ChangingTheCommandRewritesItsOwnViewAndReplacesTheItem) {
  SetValue(HKEY_LOCAL_MACHINE, kRunKey, L"a", ExpandSz(L"a.exe"), OwnView());
  if (HasTwoViews()) SetValue(HKEY_LOCAL_MACHINE, kRunKey, L"a", ExpandSz(L"a.exe"));
  SetValue(HKEY_LOCAL_MACHINE, kRunKey, L"b", Sz(L"b.exe"), OwnView());
  const ItemRef item = LoadAndFind(CommonRun(), L"a");
  const int position = item->Position();
  CommonRun().ChangeItemCommand(item, L"A.EXE");
  EXPECT_EQ(GetValue(HKEY_LOCAL_MACHINE, kRunKey, L"a", OwnView()), ExpandSz(L"a.exe"));
  EXPECT_TRUE(item->IsListed());

  module.Safeguard().Clear();
  CommonRun().ChangeItemCommand(item, L"new.exe");
  ExpectCheckpoint(L"Startup Manager: Changing a");
  EXPECT_EQ(GetValue(HKEY_LOCAL_MACHINE, kRunKey, L"a", OwnView()), Sz(L"new.exe"));
  if (HasTwoViews()) {
    EXPECT_EQ(GetValue(HKEY_LOCAL_MACHINE, kRunKey, L"a"), ExpandSz(L"a.exe"));
  }
  EXPECT_FALSE(item->IsListed());
  const ItemRef changed = FindByCaption(CommonRun(), L"a");
  EXPECT_EQ(changed->Position(), position);
  EXPECT_EQ(changed->Name(), item->Name());
  EXPECT_EQ(Command(changed), L"new.exe");
}

}  // namespace smh::test
