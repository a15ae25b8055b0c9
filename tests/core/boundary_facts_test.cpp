// What IStartupItemFacts tells of entries of every kind of place.
#include "samples/link_builder.h"
#include "tests/core/boundary_favorite_fixture.h"
#include "tests/support/startup_folders.h"
#include "tests/support/test_main.h"

namespace smh::test {
namespace {

const std::wstring kServerKey = L"Software\\Classes\\CLSID\\";
constexpr std::wstring_view kNulName(L"nul\0x", 5);

class FactsTest : public FavoriteTest {
 protected:
  ~FactsTest() override {
    items.Stop();
    items.SetShowAllLocations(0);
  }
  // The facts from the root on: "[root]|view|[key]|[value]|[disabled by]|twin|".
  static std::wstring PlaceOf(const RawItem& item) {
    std::wstring place;
    for (std::int32_t index = 4; index <= 9; ++index) place += item.Fact(index) + L'|';
    return place;
  }
};

TEST_F(FactsTest, TellThePlaceOfEveryEntry) {
  SetUserRun(L"a\\b", sample.Path());
  SetUserRun(L"", L"\"" + sample.Path() + L"\" /default");
  const ScopedKey run = MakeKey(HKEY_CURRENT_USER, kRunKey);
  SetCountedValue(run.Get(), kNulName, Sz(sample.Path()));
  SetValue(HKEY_CURRENT_USER, kRunSide, L"Ours", Sz(sample.Path()));
  SetValue(HKEY_CURRENT_USER, kRunKey + kAutorunsSide, L"Theirs", Sz(sample.Path()));
  SetValue(HKEY_LOCAL_MACHINE, kRunKey, L"Alone", Sz(sample.Path()), OwnView());
  const std::wstring identifier = L"{6F2C4B70-1D6E-4A1F-8B4C-7E2D308F9C01}";
  const RegistryTree handler(kMenusKey + L"\\Facts/handler");
  const RegistryTree parked(kMenusKey + kAutorunsSide + L"\\Facts parked");
  const RegistryTree server(kServerKey + identifier, HKEY_LOCAL_MACHINE, OwnView());
  const RegistryTree plainServer(kServerKey + identifier, HKEY_LOCAL_MACHINE);
  handler.Set({}, L"", Sz(identifier));
  parked.Set({}, L"", Sz(identifier));
  for (const RegistryTree* tree : {&server, &plainServer}) {
    tree->Set(L"InprocServer32", L"", Sz(sample.Path()));
  }
  items.SetShowAllLocations(1);
  Read();
  items.Stop();
  RemoveCountedValue(run.Get(), kNulName);

  const std::wstring user = L"[HKEY_CURRENT_USER]|" + std::wstring(HasTwoViews() ? L"64" : L"32") + L"|[";
  const std::wstring twin = HasTwoViews() ? L"1|" : L"0|";
  const struct {
    std::int32_t location;
    std::wstring caption, place;
  } rows[] = {
      {kUserRun, L"a\\b", user + kRunKey + L"]|[a\\b]|[]|" + twin},
      {kUserRun, L"Boundary sample program", user + kRunKey + L"]|[]|[]|" + twin},
      {kUserRun, L"nul\x2400x", user + kRunKey + L"]|[" + std::wstring(kNulName) + L"]|[]|" + twin},
      {kUserRun, L"Ours", user + kRunSide + L"]|[Ours]|[own]|" + twin},
      {kUserRun, L"Theirs",
       user + kRunKey + kAutorunsSide + L"]|[Theirs]|[" + kRunKey + kAutorunsSide + L"]|" + twin},
      {kAllMenus, L"Facts/handler", user + kMenusKey + L"\\Facts/handler]|-|[]|" + twin},
      {kAllMenus, L"Facts parked", user + kMenusKey + kAutorunsSide + L"\\Facts parked]|-|[own]|" + twin},
  };
  for (const auto& row : rows) {
    const RawItem item = Find(row.location, row.caption);
    ASSERT_TRUE(item) << row.caption;
    EXPECT_EQ(PlaceOf(item), row.place) << row.caption;
    EXPECT_EQ(item.Fact(0), std::to_wstring(row.location));
    EXPECT_EQ(item.Fact(1) + item.Fact(2) + item.Fact(3), L"1[" + sample.Path() + L"][]");
    for (const std::int32_t index : {-1, 10}) EXPECT_EQ(item.Fact(index), L"-");
  }
  for (std::int32_t index = -1; index <= 10; ++index) EXPECT_EQ(NoItem().Fact(index), L"-") << index;
}

TEST_F(FactsTest, TellWhoDisabledAFile) {
  const StartupPlaces places(StartupPlaces::Whose::kUser, [this] { items.Stop(); });
  const std::pair<std::wstring, std::wstring> rows[] = {
      {places.startup, L""},
      {places.disabled, L"own"},
      {places.autoruns, places.autoruns.substr(0, places.autoruns.size() - 1)},
      {places.brisko, places.brisko.substr(0, places.brisko.size() - 1)}};
  for (std::size_t i = 0; i < std::size(rows); ++i) {
    SHCreateDirectoryExW(nullptr, rows[i].first.c_str(), nullptr);
    WriteFileBytes(rows[i].first + std::to_wstring(i) + L".exe", "x");
  }
  Read();
  for (std::size_t i = 0; i < std::size(rows); ++i) {
    const RawItem item = Find(kUserFolder, std::to_wstring(i));
    ASSERT_TRUE(item) << i;
    EXPECT_EQ(PlaceOf(item), L"-|-|-|-|[" + rows[i].second + L"]|-|");
  }
}

TEST_F(FactsTest, TwinsComeTurnAndGoWithThePlainView) {
  if (!HasTwoViews()) GTEST_SKIP() << "one view";
  const auto set = [&](const wchar_t* name, const wchar_t* arguments, REGSAM view) {
    SetValue(HKEY_LOCAL_MACHINE, kRunKey, name, Sz(sample.Path() + arguments), view);
  };
  set(L"Alone", L"", OwnView());
  set(L"Same", L"", OwnView());
  set(L"Same", L"", 0);
  set(L"Other", L"", OwnView());
  set(L"Other", L" /x", 0);
  set(L"Plain", L"", 0);
  Read();
  const RawItem alone = Find(kCommonRun, L"Alone");
  const RawItem same = Find(kCommonRun, L"Same");
  const RawItem other = Find(kCommonRun, L"Other");
  const RawItem plain = Find(kCommonRun, L"Plain");
  EXPECT_EQ(alone.Fact(9) + same.Fact(9) + other.Fact(9) + plain.Fact(9), L"0120");
  EXPECT_EQ(same.Fact(5) + plain.Fact(5), L"6432");
  for (const RawItem* item : {&alone, &same, &other}) item->ReadChanged();
  set(L"Alone", L"", 0);
  RemoveValue(HKEY_LOCAL_MACHINE, kRunKey, L"Same");
  set(L"Other", L"", 0);
  EXPECT_TRUE(WaitUntil([&] { return alone.Fact(9) + same.Fact(9) + other.Fact(9) == L"101"; }));
  for (const RawItem* item : {&alone, &same, &other}) EXPECT_EQ(item->ReadChanged(), 1u);
}

TEST_F(FactsTest, NameTheLibraryThatAProgramServes) {
  const std::wstring library = TextsLibrary();
  const std::wstring command = L"rundll32.exe \"" + library + L"\",Start";
  SetUserRun(L"Served", command);
  SetUserRun(L"Gone", L"rundll32.exe C:\\gone.dll,Start");
  keys.Add(1, L"Served", command);
  Read();
  const RawItem item = FindUserRun(L"Served");
  EXPECT_EQ(item.Fact(1) + item.Fact(2) + item.Fact(3), L"1[" + library + L"][" + library + L"]");
  EXPECT_EQ(FindUserRun(L"Gone").Fact(3), L"[]");
  // A default program is described by its program.
  const RawFavorites favorites = ReadFavorites();
  const RawFavorite client = favorites.Item(0);
  EXPECT_EQ(client.Fact(3), L"[" + library + L"]");
  EXPECT_TRUE(client.Fact(2).ends_with(L"\\rundll32.exe]")) << client.Fact(2);
  EXPECT_EQ(client.Fact(0) + client.Fact(1) + client.Fact(4) + client.Fact(8) + client.Fact(9), L"-1---");
}

const std::wstring kSwitchKey = L"Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\StartupApproved";

// "starts|reasons|since|can switch|64-bit|32-bit"
std::string StartFacts(const RawItem& item) {
  std::wstring facts;
  for (const std::int32_t index : {11, 12, 13, 14, 16, 17}) facts += item.Fact(index) + L'|';
  return {facts.begin(), facts.end()};
}

// What Windows the prefix pretends is settled when a process begins: one with switches, and one without.
SMH_CHILD(SwitchAnEntry) {
  const RawCollection items = (*new LoadedLibrary).Manager().Items();
  if (items.Refresh() != S_OK || !WaitUntilComplete(items)) return 1;
  RawItem item = items.Item(0);
  for (std::int32_t i = 1; item.GetLocation() != kUserRun; ++i) item = items.Item(i);
  const RawFacts facts(item);
  const auto print = [&](HRESULT result) {
    std::printf("%ld %s\n", static_cast<long>(result), StartFacts(item).c_str());
  };
  print(0);
  if (arguments.at(0) == L"without") return IsAssertion(facts.SetSwitchedOff(1), L"uStartupItemIntf") ? 0 : 1;
  print(facts.SetSwitchedOff(0x101));
  print(facts.SetSwitchedOff(0x100));
  item.ReadChanged();
  SetValue(HKEY_CURRENT_USER, kSwitchKey + L"\\Run", L"Foo", Dword(3), OwnView());
  const bool isNoticed = WaitUntil([&] { return item.ReadChanged() != 0; });
  print(facts.SetSwitchedOff(1));
  return isNoticed ? 0 : 1;
}

TEST_F(FactsTest, TellWhetherWindowsWouldStartTheEntryAndSwitchIt) {
  const EmptiedKeys rules{{kSwitchKey, L"Software\\Microsoft\\Windows\\CurrentVersion\\Policies\\Explorer"}};
  SetUserRun(L"Foo", sample.Path());
  Read();
  EXPECT_EQ(RawFacts(NoItem()).SetSwitchedOff(1), S_FALSE);
  items.Stop();
  const RegistryTree pretended(L"Software\\Wine\\AppDefaults\\boundary_tests.exe");
  pretended.Set(L"", L"Version", Sz(L"win7"));
  const ChildResult without = RunChild(L"SwitchAnEntry", {L"without"});
  ExpectEnd(without, 0);
  EXPECT_EQ(without.output, "0 1|0|-|0|-|-|\r\n");
  pretended.Set(L"", L"Version", Sz(L"win10"));
  const ChildResult child = RunChild(L"SwitchAnEntry", {L"with"});
  ExpectEnd(child, 0);
  EXPECT_EQ(child.output,
            "0 1|0|-|1|-|-|\r\n0 2|2|set|1|-|-|\r\n0 1|0|-|1|-|-|\r\n-2147418113 0|2|unset|0|-|-|\r\n");
}

}  // namespace
}  // namespace smh::test
