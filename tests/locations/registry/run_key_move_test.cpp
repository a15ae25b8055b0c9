#include "tests/locations/refusal.h"
#include "tests/locations/registry/run_key_fixture.h"
#include "tests/support/import_patch.h"

namespace smh::test {

using RunKeyMove = BothWays<RunKeyTest>;
INSTANTIATE_TEST_SUITE_P(Checkpoints, RunKeyMove, ::testing::Bool());

TEST_P(RunKeyMove, AnEntryGoesToTheOtherLocationUnderTheNameOfItsFile) {
  SetValue(HKEY_CURRENT_USER, kRunKey, L"My Notes", ExpandSz(L"C:\\windows\\notepad.exe"));
  SetValue(HKEY_LOCAL_MACHINE, kRunKey, L"notepad", Dword(1), OwnView());
  const ItemRef item = LoadAndFind(UserRun(), L"My Notes");
  UserRun().MoveItem(item, sulRegistryCommonRun);
  EXPECT_FALSE(item->IsListed());
  EXPECT_EQ(GetValue(HKEY_CURRENT_USER, kRunKey, L"My Notes"), std::nullopt);
  EXPECT_EQ(GetValue(HKEY_LOCAL_MACHINE, kRunKey, L"notepad (1)", OwnView()),
            Sz(L"C:\\windows\\notepad.exe"));
  EXPECT_EQ(GetValue(HKEY_LOCAL_MACHINE, kRunKey, L"notepad", OwnView()), Dword(1));
  const ItemRef moved = FindByCaption(CommonRun(), L"notepad (1)");
  ASSERT_NE(moved, nullptr);
  EXPECT_TRUE(moved->IsEnabled());
  ExpectCheckpoint(L"Startup Manager: Moving My Notes");

  CommonRun().DisableItem(moved);
  CommonRun().MoveItem(moved, sulRegistryUserRun);
  EXPECT_EQ(GetValue(HKEY_CURRENT_USER, kRunSide, L"notepad"), Sz(L"C:\\windows\\notepad.exe"))
      << "a disabled entry stays disabled";
}

TEST_P(RunKeyMove, ATargetThatRefusesIsAnAssertionWithNothingChanged) {
  SetValue(HKEY_CURRENT_USER, kRunKey, L"Foo", Sz(L"C:\\windows\\notepad.exe"));
  SetValue(HKEY_LOCAL_MACHINE, kRunKey, L"Bar", Sz(L"c:\\windows\\system32\\NOTEPAD.EXE"), OwnView());
  SetValue(HKEY_LOCAL_MACHINE, kRunKey + L"Services", L"missing", Sz(L"C:\\no such.exe"), OwnView());
  CommonRun().ReadItems();
  TLocationStartup& services = *FindLocation(sulRegistryRunServices);
  services.ReadItems();
  const ItemRef item = LoadAndFind(UserRun(), L"Foo");
  for (const TTypeStartupLocation target :
       {sulRegistryCommonRun, sulRegistryUserRun, sulNone, TTypeStartupLocation(99)}) {
    EXPECT_THROW(UserRun().MoveItem(item, target), EAssertionFailed) << target;
  }
  EXPECT_EQ(GetValue(HKEY_CURRENT_USER, kRunKey, L"Foo"), Sz(L"C:\\windows\\notepad.exe"));
  EXPECT_TRUE(item->IsListed());

  // A missing file may come from the usual Run keys only.
  EXPECT_FALSE(UserRun().CanAcceptItem(*FindByCaption(services, L"missing")));
  SetValue(HKEY_LOCAL_MACHINE, kRunKey, L"missing", Sz(L"C:\\no such.exe"), OwnView());
  EXPECT_TRUE(UserRun().CanAcceptItem(*LoadAndFind(CommonRun(), L"missing")));
}

// Another program, that writes a value of that name as soon as the key was seen to hold none.
const std::wstring kWanted = L"wanted";
LSTATUS WINAPI QueryAndWrite(HKEY key, const wchar_t* name, DWORD* reserved, DWORD* type, BYTE* data,
                             DWORD* size) {
  const auto query = RealFunction<decltype(RegQueryValueExW)>(L"advapi32.dll", "RegQueryValueExW");
  const LSTATUS status = query(key, name, reserved, type, data, size);
  if (status == ERROR_FILE_NOT_FOUND && name == kWanted) {
    SetValue(HKEY_LOCAL_MACHINE, kRunKey, kWanted, Sz(L"other.exe"), OwnView());
  }
  return status;
}

TEST_P(RunKeyMove, WhatComesToStandInAPlaceThatWasFreeIsNotOverwritten) {
  const std::wstring command = L"C:\\no such\\wanted.exe";
  SetValue(HKEY_CURRENT_USER, kRunKey, L"Foo", Sz(command));
  const ItemRef item = LoadAndFind(UserRun(), L"Foo");
  const ImportPatch patch("RegQueryValueExW", QueryAndWrite);
  for (const bool moves : {true, false}) {
    SCOPED_TRACE(moves);
    ExpectChangedMeanwhile([&] {
      moves ? UserRun().MoveItem(item, sulRegistryCommonRun) : CommonRun().AddItem(kWanted, command);
    });
    EXPECT_EQ(GetValue(HKEY_LOCAL_MACHINE, kRunKey, kWanted, OwnView()), Sz(L"other.exe"));
    EXPECT_EQ(GetValue(HKEY_CURRENT_USER, kRunKey, L"Foo"), Sz(command));
    RemoveValue(HKEY_LOCAL_MACHINE, kRunKey, kWanted, OwnView());
  }
}

TEST_F(RunKeyTest, ASourceThatIsNoTextIsRefusedBeforeAnythingIsWritten) {
  SetValue(HKEY_CURRENT_USER, kRunKey, L"number", Dword(1));
  UserRun().ReadItems();
  EXPECT_THROW(UserRun().DisableItem(FindByCaption(UserRun(), L"number")), ERegistryException);
  EXPECT_FALSE(KeyIsThere(HKEY_CURRENT_USER, kRunSide));
  EXPECT_EQ(GetValue(HKEY_CURRENT_USER, kRunKey, L"number"), Dword(1));
}

}  // namespace smh::test
