#include "run_key_fixture.h"

namespace smh::test {

class RunKeyMove : public RunKeyTest, public ::testing::WithParamInterface<bool> {
 protected:
  RunKeyMove() { module.Settings().useCheckpoints = GetParam(); }
};

INSTANTIATE_TEST_SUITE_P(Checkpoints, RunKeyMove, ::testing::Bool());

TEST_P(RunKeyMove, AnEntryGoesToTheOtherLocationUnderTheNameOfItsFile) {
  SetValue(HKEY_CURRENT_USER, kRun, L"My Notes", ExpandSz(L"C:\\windows\\notepad.exe"));
  SetValue(HKEY_LOCAL_MACHINE, kRun, L"notepad", Dword(1), OwnView());
  const ItemRef item = LoadAndFind(UserRun(), L"My Notes");
  UserRun().MoveItem(item, sulRegistryCommonRun);
  EXPECT_FALSE(item->IsListed());
  EXPECT_EQ(GetValue(HKEY_CURRENT_USER, kRun, L"My Notes"), std::nullopt);
  EXPECT_EQ(GetValue(HKEY_LOCAL_MACHINE, kRun, L"notepad (1)", OwnView()), Sz(L"C:\\windows\\notepad.exe"));
  EXPECT_EQ(GetValue(HKEY_LOCAL_MACHINE, kRun, L"notepad", OwnView()), Dword(1));
  const ItemRef moved = FindByCaption(CommonRun(), L"notepad (1)");
  ASSERT_NE(moved, nullptr);
  EXPECT_TRUE(moved->IsEnabled());
  const std::vector<std::wstring> lines = module.Safeguard().Lines();
  if (GetParam()) {
    ASSERT_FALSE(lines.empty());
    EXPECT_EQ(lines.front(), L"BeginCheckpoint \"Startup Manager: Moving My Notes\"");
    EXPECT_EQ(lines.back(), L"EndCheckpoint");
  } else {
    EXPECT_TRUE(lines.empty());
  }

  CommonRun().DisableItem(moved);
  CommonRun().MoveItem(moved, sulRegistryUserRun);
  EXPECT_EQ(GetValue(HKEY_CURRENT_USER, kOwnSide, L"notepad"), Sz(L"C:\\windows\\notepad.exe"))
      << "a disabled entry stays disabled";
}

TEST_P(RunKeyMove, ATargetThatRefusesIsAnAssertionWithNothingChanged) {
  SetValue(HKEY_CURRENT_USER, kRun, L"Foo", Sz(L"C:\\windows\\notepad.exe"));
  SetValue(HKEY_LOCAL_MACHINE, kRun, L"Bar", Sz(L"c:\\windows\\system32\\NOTEPAD.EXE"), OwnView());
  SetValue(HKEY_LOCAL_MACHINE, kRun + L"Services", L"missing", Sz(L"C:\\no such.exe"), OwnView());
  CommonRun().ReadItems();
  TLocationStartup& services = *FindLocation(sulRegistryRunServices);
  services.ReadItems();
  const ItemRef item = LoadAndFind(UserRun(), L"Foo");
  for (const TTypeStartupLocation target :
       {sulRegistryCommonRun, sulRegistryUserRun, sulNone, TTypeStartupLocation(99)}) {
    EXPECT_THROW(UserRun().MoveItem(item, target), EAssertionFailed) << target;
  }
  EXPECT_EQ(GetValue(HKEY_CURRENT_USER, kRun, L"Foo"), Sz(L"C:\\windows\\notepad.exe"));
  EXPECT_TRUE(item->IsListed());

  // A missing file may come from the usual Run keys only.
  EXPECT_FALSE(UserRun().CanAcceptItem(*FindByCaption(services, L"missing")));
  SetValue(HKEY_LOCAL_MACHINE, kRun, L"missing", Sz(L"C:\\no such.exe"), OwnView());
  EXPECT_TRUE(UserRun().CanAcceptItem(*LoadAndFind(CommonRun(), L"missing")));
}

TEST_P(RunKeyMove, AnEntryThatVanishedLeavesTheListAndNothingElseHappens) {
  SetValue(HKEY_CURRENT_USER, kRun, L"Foo", Sz(L"C:\\windows\\notepad.exe"));
  const ItemRef item = LoadAndFind(UserRun(), L"Foo");
  RemoveValue(HKEY_CURRENT_USER, kRun, L"Foo");
  UserRun().MoveItem(item, sulRegistryCommonRun);
  EXPECT_FALSE(item->IsListed());
  EXPECT_TRUE(module.Safeguard().Lines().empty());
  EXPECT_TRUE(Values(HKEY_LOCAL_MACHINE, kRun, OwnView()).empty());
}

TEST_F(RunKeyTest, AnEntryGoesBackWithoutTheServiceWhenThatRefusesToWrite) {
  SetValue(HKEY_CURRENT_USER, kRun, L"Foo", Sz(L"C:\\windows\\notepad.exe"));
  const ItemRef item = LoadAndFind(UserRun(), L"Foo");
  module.Safeguard().Answer(L"SetValue", ERROR_ACCESS_DENIED, 9);
  EXPECT_THROW(UserRun().MoveItem(item, sulRegistryCommonRun), ERegistryException);
  EXPECT_EQ(GetValue(HKEY_CURRENT_USER, kRun, L"Foo"), Sz(L"C:\\windows\\notepad.exe"));
}

}  // namespace smh::test
