// Whether Windows would start an entry, and why not: every rule alone and several together, read from where
// the system reads them.
#include "tests/effective/effective_fixture.h"
#include "tests/support/import_patch.h"
#include "tests/support/startup_folders.h"
#include "tests/support/waiting.h"

namespace smh::test {
namespace {

struct Written {
  HKEY root;
  std::wstring path, name;
  RawValue value;
  // Of a 64-bit Windows: the 32-bit view alone, or the system's own.
  bool isPlain = false;

  void Put() const { SetValue(root, path, name, value, isPlain ? 0 : OwnView()); }
};

struct Row {
  const char* what;
  TTypeStartupLocation location;
  std::vector<Written> written;
  StartsAnswer starts;
  std::int32_t reasons;
  // Of 64-bit and of 32-bit programs: "y", "n", "?" or "-", where there are two views.
  std::string views = "--";
  WindowsRelease release = kWindows8;
};

char Word(const std::optional<StartsAnswer>& answer) {
  return answer ? "?yn"[*answer] : '-';
}

class StartReasonsTest : public EffectiveTest {
 protected:
  void Check(const Row& row, std::wstring_view caption = L"Foo") {
    SCOPED_TRACE(row.what);
    SetRelease(row.release);
    for (const Written& one : row.written) one.Put();
    const ItemRef item = Load(row.location, caption);
    ASSERT_NE(item, nullptr);
    const EffectiveState state = EffectiveStateOf(*item);
    EXPECT_EQ(state.starts, row.starts);
    EXPECT_EQ(state.reasons, row.reasons);
    if (HasTwoViews()) {
      EXPECT_EQ((std::string{Word(state.starts64), Word(state.starts32)}), row.views);
    }
  }
};

Written Run(HKEY root, const std::wstring& key = kRunKey, const std::wstring& command = kProgram,
            bool isPlain = false) {
  return {root, key, L"Foo", Sz(command), isPlain};
}
Written Switched(HKEY root, const wchar_t* list, const RawValue& value = kOff) {
  return {root, kSwitches + list, L"foo", value};
}
Written Policy(HKEY root, const wchar_t* name, const RawValue& value = Dword(1)) {
  return {root, kPolicies, name, value};
}

// A test of its own for each row: the keys are emptied in between.
class RunReasons : public StartReasonsTest, public testing::WithParamInterface<Row> {};
TEST_P(RunReasons, AreToldByTheSystemsRules) {
  Check(GetParam());
}

constexpr auto kUserRun = sulRegistryUserRun;
constexpr auto kAllRun = sulRegistryCommonRun;
const std::wstring kOnce = kRunKey + L"Once";
const std::wstring kAway = L"\\\\smh-away\\share\\x.exe";
INSTANTIATE_TEST_SUITE_P(
    Rows, RunReasons,
    testing::Values(
        Row{"nothing", kUserRun, {Run(kOwn)}, kStartsYes, 0},
        Row{"on", kUserRun, {Run(kOwn), Switched(kOwn, L"Run", kOn)}, kStartsYes, 0},
        Row{"off", kUserRun, {Run(kOwn), Switched(kOwn, L"Run")}, kStartsNo, kReasonSwitchedOff},
        Row{"Windows 7 has no switch",
            kUserRun,
            {Run(kOwn), Switched(kOwn, L"Run")},
            kStartsYes,
            0,
            "--",
            {6, 1, 7601}},
        Row{"another's switches",
            kUserRun,
            {Run(kOwn), Switched(kAll, L"Run"), Switched(kOwn, L"Run32"), Switched(kOwn, L"StartupFolder")},
            kStartsYes,
            0},
        Row{"odd switch",
            kUserRun,
            {Run(kOwn), Switched(kOwn, L"Run", Binary("\x03"))},
            kStartsUnknown,
            kReasonSwitchedOff},
        Row{"odd switch of what is missing",
            kUserRun,
            {Run(kOwn, kRunKey, L"C:\\gone\\x.exe"), Switched(kOwn, L"Run", Binary("\x03"))},
            kStartsNo,
            kReasonMissing},
        Row{"disabled", kUserRun, {Run(kOwn, kRunSide)}, kStartsNo, kReasonDisabled},
        Row{"missing", kUserRun, {Run(kOwn, kRunKey, L"C:\\gone\\x.exe")}, kStartsNo, kReasonMissing},
        Row{"unreachable", kUserRun, {Run(kOwn, kRunKey, kAway)}, kStartsUnknown, kReasonUnreachable},
        Row{"unreachable and off",
            kUserRun,
            {Run(kOwn, kRunKey, kAway), Switched(kOwn, L"Run")},
            kStartsNo,
            kReasonSwitchedOff | kReasonUnreachable},
        Row{"an address", kUserRun, {Run(kOwn, kRunKey, L"ms-gone:x")}, kStartsUnknown, 0},
        Row{"policy",
            kUserRun,
            {Run(kOwn), Policy(kOwn, L"DisableCurrentUserRun")},
            kStartsNo,
            kReasonPolicy},
        Row{"policy of bytes",
            kUserRun,
            {Run(kOwn), Policy(kOwn, L"DisableCurrentUserRun", Binary(std::string("\1\0\0\0", 4)))},
            kStartsNo,
            kReasonPolicy},
        Row{"odd policy",
            kUserRun,
            {Run(kOwn), Policy(kOwn, L"DisableCurrentUserRun", Sz(L"1"))},
            kStartsUnknown,
            kReasonPolicy},
        Row{"the machine's 0 decides",
            kUserRun,
            {Run(kOwn), Policy(kOwn, L"DisableCurrentUserRun"),
             Policy(kAll, L"DisableCurrentUserRun", Dword(0))},
            kStartsYes,
            0},
        Row{"the other list's policy",
            kUserRun,
            {Run(kOwn), Policy(kOwn, L"DisableLocalMachineRun"), Policy(kOwn, L"DisableCurrentUserRunOnce")},
            kStartsYes,
            0},
        Row{"once",
            sulRegistryUserRunOnce,
            {Run(kOwn, kOnce), Policy(kAll, L"DisableCurrentUserRunOnce"), Switched(kOwn, L"Run")},
            kStartsNo,
            kReasonPolicy},
        Row{"all users' once",
            sulRegistryCommonRunOnce,
            {Run(kAll, kOnce), Policy(kAll, L"DisableLocalMachineRunOnce")},
            kStartsNo,
            kReasonPolicy},
        Row{"once for set-up",
            sulRegistryUserRunOnceSetup,
            {Run(kOwn, kOnce + L"\\Setup")},
            kStartsUnknown,
            0},
        Row{"services",
            sulRegistryRunServices,
            {Run(kAll, kRunKey + L"Services")},
            kStartsNo,
            kReasonNotRead},
        Row{"disallowed program",
            kUserRun,
            {Run(kOwn),
             Policy(kOwn, L"DisallowRun"),
             {kOwn, kPolicies + L"\\DisallowRun", L"1", Sz(L"NOTEPAD.exe")}},
            kStartsNo,
            kReasonPolicy},
        Row{"disallowed program that starts another",
            kUserRun,
            {Run(kOwn, kRunKey, L"rundll32.exe C:\\windows\\system32\\shell32.dll,Control_RunDLL"),
             Policy(kOwn, L"DisallowRun"),
             {kOwn, kPolicies + L"\\DisallowRun", L"1", Sz(L"rundll32.exe")}},
            kStartsNo,
            kReasonPolicy},
        Row{"disallowed list that does not count",
            kUserRun,
            {Run(kOwn), {kOwn, kPolicies + L"\\DisallowRun", L"1", Sz(L"notepad.exe")}},
            kStartsYes,
            0},
        Row{"only others are allowed",
            kUserRun,
            {Run(kOwn),
             Policy(kOwn, L"RestrictRun"),
             {kOwn, kPolicies + L"\\RestrictRun", L"1", Sz(L"calc.exe")}},
            kStartsNo,
            kReasonPolicy},
        Row{"allowed",
            kUserRun,
            {Run(kOwn),
             Policy(kOwn, L"RestrictRun"),
             {kOwn, kPolicies + L"\\RestrictRun", L"7", Sz(L"Notepad.EXE")}},
            kStartsYes,
            0},
        Row{"the machine's list is not documented",
            kUserRun,
            {Run(kOwn), Policy(kAll, L"RestrictRun")},
            kStartsUnknown,
            kReasonPolicy},
        Row{"several",
            kUserRun,
            {Run(kOwn, kRunSide, L"C:\\gone\\x.exe"), Switched(kOwn, L"Run"),
             Policy(kOwn, L"DisableCurrentUserRun")},
            kStartsNo,
            kReasonDisabled | kReasonSwitchedOff | kReasonPolicy | kReasonMissing},
        Row{"all users", kAllRun, {Run(kAll), Switched(kAll, L"Run")}, kStartsNo, kReasonSwitchedOff, "n-"},
        Row{"all users' policy",
            kAllRun,
            {Run(kAll), Policy(kOwn, L"DisableLocalMachineRun")},
            kStartsNo,
            kReasonPolicy,
            "n-"}));

// Of a 64-bit Windows alone.
class ViewReasons : public StartReasonsTest, public testing::WithParamInterface<Row> {};
TEST_P(ViewReasons, NameTheView) {
  if (!HasTwoViews()) GTEST_SKIP() << "one view";
  Check(GetParam(), GetParam().location == kAllRun ? L"Foo" : L"Foo menu");
}

// The sample's handler in one list of both views; its class in the views that are named.
std::vector<Written> Handler(bool in64, bool in32, std::vector<Written> rest) {
  std::vector<Written> written{{kAll, kMenusKey + L"\\Foo menu", L"", Sz(kClass)}};
  for (const bool isPlain : {false, true}) {
    if (isPlain ? in32 : in64)
      written.push_back({kAll, kServer + L"\\InprocServer32", L"", Sz(kProgram), isPlain});
  }
  written.insert(written.end(), rest.begin(), rest.end());
  return written;
}
constexpr auto kMenu = sulRegistryAllRegContextMenuHandlers;
INSTANTIATE_TEST_SUITE_P(
    Rows, ViewReasons,
    testing::Values(
        Row{"32-bit Run key",
            kAllRun,
            {Run(kAll, kRunKey, kProgram, true), Switched(kAll, L"Run32")},
            kStartsNo,
            kReasonSwitchedOff,
            "-n"},
        Row{"its switch is not that of the other",
            kAllRun,
            {Run(kAll, kRunKey, kProgram, true), Switched(kAll, L"Run")},
            kStartsYes,
            0,
            "-y"},
        Row{"one of two is off",
            kAllRun,
            {Run(kAll), Run(kAll, kRunKey, kProgram, true), Switched(kAll, L"Run")},
            kStartsYes,
            kReasonSwitchedOff | kReasonOnlyFor64,
            "ny"},
        Row{"both are off",
            kAllRun,
            {Run(kAll), Run(kAll, kRunKey, kProgram, true), Switched(kAll, L"Run"), Switched(kAll, L"Run32")},
            kStartsNo,
            kReasonSwitchedOff,
            "nn"},
        Row{"another command for 32-bit programs",
            kAllRun,
            {Run(kAll), Run(kAll, kRunKey, L"C:\\windows\\regedit.exe", true), Switched(kAll, L"Run")},
            kStartsNo,
            kReasonSwitchedOff,
            "n-"},
        Row{"another text for 32-bit programs", sulRegistryCommonIEURLSearchHooks,
            Handler(true, true,
                    {{kAll, kHooksKey, kClass, Sz(L"Foo menu")},
                     {kAll, kHooksKey, kClass, Sz(L"Foo"), true}}),
            kStartsYes, 0, "yy"},
        Row{"loaded", kMenu, Handler(true, false, {}), kStartsYes, 0, "y-"},
        Row{"loaded twice", kMenu, Handler(true, true, {}), kStartsYes, 0, "yy"},
        Row{"missing for 32-bit programs", kMenu,
            Handler(true, true, {{kAll, kServer + L"\\InprocServer32", L"", Sz(L"C:\\gone.dll"), true}}),
            kStartsYes, kReasonMissing | kReasonOnlyFor32, "yn"},
        Row{"missing for 64-bit programs", kMenu,
            Handler(true, true, {{kAll, kServer + L"\\InprocServer32", L"", Sz(L"C:\\gone.dll")}}),
            kStartsYes, kReasonMissing | kReasonOnlyFor64, "ny"},
        Row{"blocked by the user", kMenu, Handler(true, true, {{kOwn, kBlockedKey, kClass, Sz(L"")}}),
            kStartsNo, kReasonBlocked, "nn"},
        Row{"blocked for 64-bit programs", kMenu, Handler(true, true, {{kAll, kBlockedKey, kClass, Sz(L"")}}),
            kStartsYes, kReasonBlocked | kReasonOnlyFor64, "ny"},
        Row{"blocked for 32-bit programs", kMenu,
            Handler(true, true, {{kAll, kBlockedKey, kClass, Sz(L""), true}}), kStartsYes,
            kReasonBlocked | kReasonOnlyFor32, "yn"},
        Row{"blocked where it is not read", kMenu,
            Handler(true, false, {{kAll, kBlockedKey, kClass, Sz(L""), true}}), kStartsYes, 0, "y-"},
        Row{"approved for 32-bit programs", kMenu,
            Handler(true, true,
                    {Policy(kOwn, L"EnforceShellExtensionSecurity"),
                     {kAll, kApprovedKey, kClass, Sz(L"x"), true}}),
            kStartsYes, kReasonNotApproved | kReasonOnlyFor64, "ny"},
        Row{"each for another reason", kMenu,
            Handler(true, true,
                    {Policy(kOwn, L"EnforceShellExtensionSecurity"),
                     {kAll, kApprovedKey, kClass, Sz(L"x"), true},
                     {kAll, kBlockedKey, kClass, Sz(L""), true}}),
            kStartsNo, kReasonNotApproved | kReasonBlocked | kReasonOnlyFor64 | kReasonOnlyFor32, "nn"}));

// On both kinds of Windows; what the views say is another test's.
TEST_F(StartReasonsTest, ExtensionsAndAddOnsHaveRulesOfTheirOwn) {
  const Written server{kAll, kServer + L"\\InprocServer32", L"", Sz(kProgram)};
  const Written menu{kAll, kMenusKey + L"\\" + kClass, L"", Sz(L"Foo")};
  const Written column{kAll, kColumnsKey + L"\\" + kClass, L"", Sz(L"Foo")};
  const Written object{kAll, kObjectsKey + L"\\" + kClass, L"", Sz(L"Foo")};
  const Written hook{kOwn, kHooksKey, kClass, Sz(L"Foo")};
  const Written approved{kAll, kApprovedKey, kClass, Sz(L"Foo")};
  const Written enforced = Policy(kOwn, L"EnforceShellExtensionSecurity");
  const Written denied{kOwn, kAddOnPolicies + L"\\CLSID", kClass, Sz(L"0")};
  const auto flags = [](DWORD bits) {
    return Written{kOwn, kVersion + L"Ext\\Settings\\" + kClass, L"Flags", Dword(bits)};
  };
  const Written noneLoaded{kOwn, kBrowserKey, L"Enable Browser Extensions", Sz(L"no")};
  const Written listOnly{kAll, kAddOnPolicies, L"RestrictToList", Dword(1)};
  constexpr auto kColumns = sulRegistryFolderColumnHandlers;
  constexpr auto kObjects = sulRegistryIEBrowserObjects;
  constexpr auto kHooks = sulRegistryUserIEURLSearchHooks;
  const Row rows[] = {
      {"column", kColumns, {column}, kStartsNo, kReasonNotRead, "n-"},
      {"column on Windows XP", kColumns, {column}, kStartsYes, 0, "y-", {5, 1, 2600}},
      {"not approved", kMenu, {menu, enforced}, kStartsNo, kReasonNotApproved, "n-"},
      {"approved by the user",
       kMenu,
       {menu, enforced, {kOwn, kApprovedKey, kClass, Sz(L"")}},
       kStartsYes,
       0,
       "y-"},
      {"enforced by the machine",
       kMenu,
       {menu, Policy(kAll, L"EnforceShellExtensionSecurity")},
       kStartsUnknown,
       kReasonNotApproved,
       "?-"},
      {"a permission", sulRegistryShellExtApproved, {approved}, kStartsUnknown, 0, "?-"},
      {"a permission that is blocked",
       sulRegistryShellExtApproved,
       {approved, {kOwn, kBlockedKey, kClass, Sz(L"")}},
       kStartsNo,
       kReasonBlocked,
       "n-"},
      {"object", kObjects, {object, enforced}, kStartsYes, 0, "y-"},
      {"object denied", kObjects, {object, denied}, kStartsNo, kReasonPolicy, "n-"},
      {"object allowed by the machine",
       kObjects,
       {object, denied, {kAll, kAddOnPolicies + L"\\CLSID", kClass, Sz(L"1")}},
       kStartsYes,
       0,
       "y-"},
      {"object not in the list", kObjects, {object, listOnly}, kStartsNo, kReasonPolicy, "n-"},
      {"object switched off", kObjects, {object, flags(0x401)}, kStartsNo, kReasonBlocked, "n-"},
      {"object switched off that a policy allows",
       kObjects,
       {object, flags(1), {kAll, kAddOnPolicies + L"\\CLSID", kClass, Sz(L"1")}},
       kStartsUnknown,
       kReasonBlocked,
       "?-"},
      {"object with other flags", kObjects, {object, flags(0x400)}, kStartsYes, 0, "y-"},
      {"no objects", kObjects, {object, noneLoaded}, kStartsNo, kReasonPolicy, "n-"},
      {"hook beside no objects", kHooks, {hook, noneLoaded}, kStartsYes, 0, "y-"},
      {"hook denied", kHooks, {hook, denied}, kStartsNo, kReasonPolicy, "n-"},
      {"hook on Windows 11", kHooks, {hook}, kStartsNo, kReasonOnlyInIEMode, "n-", kWindows11},
  };
  for (const Row& row : rows) {
    const EmptiedKeys keys{{kPolicies, kAddOnPolicies, kVersion + L"Shell Extensions",
                            kVersion + L"Ext\\Settings", kBrowserKey, kServer}};
    server.Put();
    Check(row);
  }
}

// Neither for nothing nor for a no.
TEST_F(StartReasonsTest, WhatCannotBeReadMakesUnknownWhatItDecides) {
  constexpr auto kObjects = sulRegistryIEBrowserObjects;
  const Written entries[] = {{kOwn, kRunKey, L"Foo", Sz(kProgram)},
                             {kAll, kServer + L"\\InprocServer32", L"", Sz(kProgram)},
                             {kAll, kMenusKey + L"\\" + kClass, L"", Sz(L"Foo")},
                             {kAll, kObjectsKey + L"\\" + kClass, L"", Sz(L"Foo")}};
  for (const Written& entry : entries) entry.Put();
  const struct {
    std::wstring path;
    TTypeStartupLocation location;
    StartReason reason;
  } rows[] = {{kSwitches + L"Run", kUserRun, kReasonSwitchedOff},
              {kVersion + L"Explorer\\StartupApproved", kUserRun, kReasonSwitchedOff},
              {kPolicies, kUserRun, kReasonPolicy},
              {kPolicies, kMenu, kReasonNotApproved},
              {kBlockedKey, kMenu, kReasonBlocked},
              {kAddOnPolicies, kObjects, kReasonPolicy},
              {kVersion + L"Ext\\Settings", kObjects, kReasonBlocked},
              {kBrowserKey, kObjects, kReasonPolicy}};
  for (const auto& row : rows) {
    const LimitedKey limited(kOwn, row.path, LimitedKey::Rights::kNone, OwnView());
    Check({"", row.location, {}, kStartsUnknown, row.reason, row.location == kUserRun ? "--" : "?-"});
  }
  const StartupPlaces folder(StartupPlaces::Whose::kUser, [] {});
  WriteFileBytes(folder.startup + L"Foo.lnk", "no shortcut");
  Check({"shortcut", sulFolderUser, {}, kStartsUnknown, 0}, L"Foo.lnk");
}

// Another program writes: the reader is told, and marks the entries whose answer changes, and no others.
TEST_F(StartReasonsTest, WhatOthersChangeIsNoticedAndMarksTheEntry) {
  SetValue(kOwn, kRunKey, L"Foo", Sz(kProgram));
  SetValue(kOwn, kRunKey, L"Bar", Sz(kProgram));
  const ItemRef item = Load(kUserRun, L"Foo");
  const ItemRef other = Load(kUserRun, L"Bar");
  for (const ItemRef& one : {item, other}) one->ReadExtendedInfo();
  const Written writes[] = {Switched(kOwn, L"Run"),
                            Policy(kOwn, L"DisallowRun"),
                            {kOwn, kBlockedKey, kClass, Sz(L"")},
                            {kAll, kAddOnPolicies, L"RestrictToList", Dword(1)},
                            {kOwn, kVersion + L"Ext\\Settings\\" + kClass, L"Flags", Dword(1)},
                            {kOwn, kBrowserKey, L"Enable Browser Extensions", Sz(L"no")}};
  g_systemStates->Read(true);
  EXPECT_FALSE(g_systemStates->IsChanged());
  for (const Written& write : writes) {
    for (const ItemRef& one : {item, other}) one->TakeChangedMark();
    write.Put();
    EXPECT_TRUE(WaitUntil([] { return g_systemStates->IsChanged(); })) << (&write - writes);
    g_systemStates->Read(true);
    EXPECT_FALSE(g_systemStates->IsChanged());
    EXPECT_EQ(item->TakeChangedMark(), &write == writes);
    EXPECT_FALSE(other->TakeChangedMark());
  }
}

int g_calls = 0;
LSTATUS WINAPI CountOpen(HKEY key, const wchar_t* path, DWORD options, REGSAM access, HKEY* opened) {
  ++g_calls;
  return RealFunction<decltype(RegOpenKeyExW)>(L"advapi32.dll", "RegOpenKeyExW")(key, path, options, access,
                                                                                 opened);
}

TEST_F(StartReasonsTest, AMachineWithoutSwitchesAndPoliciesCostsAHandfulOfCalls) {
  for (int i = 0; i < 100; ++i) SetValue(kOwn, kRunKey, std::to_wstring(i), Sz(kProgram));
  Load(kUserRun, L"1");
  EXPECT_EQ(SystemStates().StateOf(*Listed(At(kUserRun)).front()).starts, kStartsUnknown) << "not read yet";
  g_systemStates->Read(false);
  const ImportPatch patch("RegOpenKeyExW", CountOpen);
  g_calls = 0;
  g_systemStates->Read(false);
  EXPECT_LE(g_calls, 6);
  for (const ItemRef& item : Listed(At(kUserRun))) EXPECT_EQ(EffectiveStateOf(*item).starts, kStartsYes);
  EXPECT_LE(g_calls, 6);
}

}  // namespace
}  // namespace smh::test
