#include "infra/registry/uRegistryUtils.h"
#include "tests/locations/registry/run_key_fixture.h"
#include "tests/support/import_patch.h"

#include <gmock/gmock.h>

#include <thread>

namespace smh::test {

using ::testing::ElementsAre;
using ::testing::UnorderedElementsAre;

// The keys of the others are tested with all locations.
TEST_F(RunKeyTest, ARunKeyListsItsValuesAndThoseOfItsSideKeys) {
  const std::pair<std::wstring, std::wstring> places[] = {
      {L"on", kRunKey},
      {L"own", kRunSide},
      {L"old", kRunKey + L"\\Disabled (Quillmark Startup Manager)"},
      {L"other", kRunKey + kAutorunsSide},
      {L"dash", kRunKey + L"-"},
  };
  for (const auto& [name, key] : places) SetValue(HKEY_CURRENT_USER, key, name, Sz(name + L".exe"));
  UserRun().ReadItems();
  EXPECT_THAT(Captions(UserRun()), ElementsAre(L"on", L"own", L"old", L"other", L"dash"));
  for (const auto& [name, key] : places) {
    const ItemRef item = FindByCaption(UserRun(), name);
    EXPECT_EQ(item->IsEnabled(), name == L"on");
    EXPECT_EQ(Command(item), name + L".exe");
    EXPECT_EQ(item->Name(), BuildFullValuePath(OwnView(), HKEY_CURRENT_USER, key, name));
    EXPECT_FALSE(item->IsProtected());
  }
}

TEST_F(RunKeyTest, OddValuesAreListedWithWhatTheyHave) {
  const std::wstring big(512 * 1024, L'x');
  const struct {
    std::wstring name;
    RawValue value;
    std::wstring command;
  } rows[] = {
      {L"", Sz(L"default.exe"), L"default.exe"},
      {L"expand", ExpandSz(L"%SystemRoot%\\x.exe"), L"%SystemRoot%\\x.exe"},
      {L"number", Dword(7), L""},
      {L"big", Sz(big), big},
      {L"half \xD800", Sz(L"h.exe"), L"h.exe"},
      {std::wstring(16'383, L'n'), Sz(L"long.exe"), L"long.exe"},
      {L"C:\\a \"b\"\\c", Sz(L"\""), L"\""},
  };
  for (const auto& row : rows) SetValue(HKEY_CURRENT_USER, kRunKey, row.name, row.value);
  UserRun().ReadItems();
  EXPECT_EQ(Captions(UserRun()).size(), std::size(rows));
  for (const auto& row : rows) {
    const ItemRef item = FindByCaption(UserRun(), row.name);
    ASSERT_NE(item, nullptr) << row.name.size();
    EXPECT_TRUE(Command(item) == row.command) << row.name.size();
  }
}

TEST_F(RunKeyTest, ANameWithAZeroIsListedProtected) {
  const ScopedKey key = MakeKey(HKEY_CURRENT_USER, kRunKey);
  SetCountedValue(key.Get(), std::wstring_view(L"a\0b", 3), Sz(L"zero.exe"));
  const ItemRef item = LoadAndFind(UserRun(),
                                   L"a\x2400"
                                   L"b");
  ASSERT_NE(item, nullptr);
  EXPECT_TRUE(item->IsProtected());
  EXPECT_EQ(Command(item), L"zero.exe");
  for (const auto& change : {&TLocationStartup::DisableItem, &TLocationStartup::DeleteItem}) {
    EXPECT_THROW((UserRun().*change)(item), EOSError);
  }
  EXPECT_TRUE(item->IsListed());
  RemoveCountedValue(key.Get(), std::wstring_view(L"a\0b", 3));
}

TEST_F(RunKeyTest, OfTwoValuesWithOnePathTheFirstIsListedUntilItGoes) {
  SetValue(HKEY_CURRENT_USER, kRunKey, L"AutorunsDisabled\\x", Sz(L"first.exe"));
  SetValue(HKEY_CURRENT_USER, kRunKey + L"\\AutorunsDisabled", L"x", Sz(L"second.exe"));
  UserRun().ReadItems();
  EXPECT_THAT(Captions(UserRun()), ElementsAre(L"AutorunsDisabled\\x"));
  EXPECT_TRUE(LogHas(L"has the same path as another."));

  RemoveValue(HKEY_CURRENT_USER, kRunKey, L"AutorunsDisabled\\x");
  UserRun().ReadItems();
  EXPECT_THAT(Captions(UserRun()), ElementsAre(L"x"));
  EXPECT_TRUE(LogHas(L"Delete item \"(x"));
  EXPECT_FALSE(FindByCaption(UserRun(), L"x")->IsEnabled());

  SetValue(HKEY_CURRENT_USER, kRunKey, L"AutorunsDisabled\\x", Sz(L"first.exe"));
  UserRun().ReadItems();
  EXPECT_THAT(Captions(UserRun()), ElementsAre(L"AutorunsDisabled\\x"));
}

TEST_F(RunKeyTest, AValueOfBothViewsIsListedOnceAndItsTwinWhenItIsGone) {
  if (!HasTwoViews()) {
    SetValue(HKEY_LOCAL_MACHINE, kRunKey, L"both", Sz(L"32.exe"));
    EXPECT_THAT(LoadAndFind(CommonRun(), L"both")->Name(),
                ::testing::StartsWith(L"(x32)HKEY_LOCAL_MACHINE\\"));
    return;
  }
  SetValue(HKEY_LOCAL_MACHINE, kRunKey, L"both", Sz(L"64.exe"), KEY_WOW64_64KEY);
  SetValue(HKEY_LOCAL_MACHINE, kRunKey, L"both", Sz(L"32.exe"));
  SetValue(HKEY_LOCAL_MACHINE, kRunKey, L"only32", Sz(L"only.exe"));
  CommonRun().ReadItems();
  EXPECT_THAT(Captions(CommonRun()), ElementsAre(L"both", L"only32"));
  EXPECT_EQ(Command(FindByCaption(CommonRun(), L"both")), L"64.exe");

  RemoveValue(HKEY_LOCAL_MACHINE, kRunKey, L"both", KEY_WOW64_64KEY);
  CommonRun().ReadItems();
  EXPECT_EQ(Command(FindByCaption(CommonRun(), L"both")), L"32.exe");
  EXPECT_THAT(FindByCaption(CommonRun(), L"both")->Name(), ::testing::StartsWith(L"(x32)"));

  // As a list from scratch would have it.
  SetValue(HKEY_LOCAL_MACHINE, kRunKey, L"both", Sz(L"64.exe"), KEY_WOW64_64KEY);
  CommonRun().ReadItems();
  EXPECT_EQ(Command(FindByCaption(CommonRun(), L"both")), L"64.exe");
  EXPECT_EQ(Listed(CommonRun()).size(), 2u);
}

TEST_F(RunKeyTest, AChangedCommandIsAChangeOfTheSameItem) {
  SetValue(HKEY_CURRENT_USER, kRunKey, L"app", Sz(L"C:\\windows\\notepad.exe"));
  const ItemRef item = LoadAndFind(UserRun(), L"app");
  item->ReadExtendedInfo();
  EXPECT_TRUE(item->TakeChangedMark());
  ASSERT_FALSE(item->NeedsExtendedInfo());

  SetValue(HKEY_CURRENT_USER, kRunKey, L"app", Sz(L"c:\\WINDOWS\\NOTEPAD.EXE"));
  EXPECT_EQ(LoadAndFind(UserRun(), L"app"), item);
  EXPECT_FALSE(item->NeedsExtendedInfo()) << "letter case is no change";

  SetValue(HKEY_CURRENT_USER, kRunKey, L"app", Sz(L"C:\\missing.exe"));
  EXPECT_EQ(LoadAndFind(UserRun(), L"app"), item);
  const ItemDetails details = item->State().details;
  EXPECT_EQ(details.Command, L"C:\\missing.exe");
  EXPECT_FALSE(details.FileFound);
  EXPECT_EQ(details.FileSize, 0);
  EXPECT_EQ(details.ImageIndex, kImageUnknownFile);
  EXPECT_EQ(details.Version->ProductName, L"");
  EXPECT_TRUE(item->NeedsExtendedInfo());
  EXPECT_TRUE(
      LogHas(L"Detect change item notepad (app). Target command change from \"C:\\windows\\notepad.exe\" to "
             L"\"C:\\missing.exe\"."));
}

TEST_F(RunKeyTest, KeysWithoutRights) {
  SetValue(HKEY_CURRENT_USER, kRunKey, L"a", Sz(L"a.exe"));
  {
    const LimitedKey limited(HKEY_CURRENT_USER, kRunKey, LimitedKey::Rights::kReadOnly);
    const ItemRef item = LoadAndFind(UserRun(), L"a");
    ASSERT_NE(item, nullptr);
    EXPECT_TRUE(item->IsProtected());
  }
  {
    const LimitedKey limited(HKEY_CURRENT_USER, kRunKey, LimitedKey::Rights::kNone);
    UserRun().ReadItems();
    EXPECT_THAT(Captions(UserRun()), ElementsAre());
  }
}

TEST_F(RunKeyTest, ALoadDuringAChangeLeavesTheListAloneAndIsDueAfterwards) {
  SetValue(HKEY_CURRENT_USER, kRunKey, L"a", Sz(L"a.exe"));
  SetValue(HKEY_CURRENT_USER, kRunKey, L"b", Sz(L"b.exe"));
  const ItemRef item = LoadAndFind(UserRun(), L"a");
  while (UserRun().IsChanged()) UserRun().ReadItems();

  bool reported = true;
  module.Safeguard().Before([&](const std::wstring& line) {
    if (!line.starts_with(L"BeginCheckpoint")) return;
    RemoveValue(HKEY_CURRENT_USER, kRunKey, L"b");
    SetValue(HKEY_CURRENT_USER, kRunKey, L"c", Sz(L"c.exe"));
    reported = UserRun().IsChanged();
    UserRun().ReadItems();
    EXPECT_THAT(Captions(UserRun()), UnorderedElementsAre(L"a", L"b"));
  });
  UserRun().DisableItem(item);
  module.Safeguard().Before(nullptr);
  EXPECT_FALSE(reported) << "the signal waits for the end of the change";
  EXPECT_TRUE(UserRun().IsChanged());
  UserRun().ReadItems();
  EXPECT_THAT(Captions(UserRun()), UnorderedElementsAre(L"a", L"c"));
}

TEST_F(RunKeyTest, TheWatchSeesOwnAndSideKeys) {
  SetValue(HKEY_CURRENT_USER, kRunKey, L"a", Sz(L"a.exe"));
  SetValue(HKEY_CURRENT_USER, kRunKey + L"-", L"d", Sz(L"d.exe"));
  while (UserRun().IsChanged()) UserRun().ReadItems();
  EXPECT_FALSE(UserRun().IsChanged());

  const auto seenAfter = [&](const auto& change) {
    change();
    const bool seen = UserRun().IsChanged();
    return seen && !UserRun().IsChanged();
  };
  EXPECT_TRUE(seenAfter([] { SetValue(HKEY_CURRENT_USER, kRunKey, L"a", Sz(L"b.exe")); }));
  EXPECT_TRUE(seenAfter([] { SetValue(HKEY_CURRENT_USER, kRunSide, L"s", Sz(L"s.exe")); }));
  EXPECT_TRUE(seenAfter([] { SetValue(HKEY_CURRENT_USER, kRunKey + L"-", L"d", Sz(L"e.exe")); }));
  EXPECT_FALSE(UserRun().IsChanged());
}

int armings = 0;

// Changes the Run key once it is watched in one view and a further key is about to be.
LSTATUS WINAPI ChangeBetween(HKEY key, BOOL subtree, DWORD filter, HANDLE event, BOOL asynchronous) {
  if (armings++ == 1) SetValue(HKEY_CURRENT_USER, kRunKey, L"a", Sz(L"between.exe"));
  return RealFunction<decltype(RegNotifyChangeKeyValue)>(L"advapi32.dll", "RegNotifyChangeKeyValue")(
      key, subtree, filter, event, asynchronous);
}

TEST_F(RunKeyTest, AChangeWhileTheWatchIsArmedIsSeenAndThoseAfterIt) {
  SetValue(HKEY_CURRENT_USER, kRunKey + L"-", L"d", Sz(L"d.exe"));
  while (UserRun().IsChanged()) UserRun().ReadItems();
  SetValue(HKEY_CURRENT_USER, kRunKey, L"a", Sz(L"a.exe"));
  SetValue(HKEY_CURRENT_USER, kRunKey + L"-", L"d", Sz(L"e.exe"));
  armings = 0;
  {
    const ImportPatch patch("RegNotifyChangeKeyValue", &ChangeBetween);
    EXPECT_TRUE(UserRun().IsChanged());
  }
  EXPECT_TRUE(UserRun().IsChanged());
  SetValue(HKEY_CURRENT_USER, kRunKey, L"a", Sz(L"after.exe"));
  EXPECT_TRUE(UserRun().IsChanged());
}

}  // namespace smh::test
