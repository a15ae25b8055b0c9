// What a load meets: many handlers, keys that go while they are read, classes that cannot be looked up; and
// which key each location loads.
#include "tests/locations/registry/handler_fixture.h"
#include "tests/support/import_patch.h"
#include "tests/support/process_counts.h"
#include "tests/support/waiting.h"

#include <gmock/gmock.h>

namespace smh::test {

namespace {

std::wstring Numbered(int number) {
  return L"Handler " + std::to_wstring(number);
}

unsigned openedKeys = 0;
// The handler that goes as soon as it is about to be opened; none when empty.
std::wstring vanishing;
// The end of the names that cannot be opened now; none when empty.
std::wstring blocked;
// The key below which nothing opens any more: the first that a server is looked up below.
bool isDying = false;
HKEY dead = nullptr;

LSTATUS WINAPI CountedOpen(HKEY key, LPCWSTR name, DWORD options, REGSAM access, PHKEY result) {
  ++openedKeys;
  if (!vanishing.empty() && name != nullptr && vanishing == name) {
    vanishing.clear();
    RegDeleteKeyExW(key, name, HasTwoViews() ? KEY_WOW64_64KEY : 0, 0);
  }
  const std::wstring_view text(name == nullptr ? L"" : name);
  if (!blocked.empty() && text.ends_with(blocked)) return ERROR_NO_SYSTEM_RESOURCES;
  if (isDying && text.starts_with(L'{') && text.ends_with(L"\\InprocServer32")) {
    dead = key;
    isDying = false;
  }
  if (dead != nullptr && key == dead) return ERROR_KEY_DELETED;
  static const auto real = RealFunction<decltype(RegOpenKeyExW)>(L"advapi32.dll", "RegOpenKeyExW");
  return real(key, name, options, access, result);
}
unsigned KeysOpenedByOneLoad(TLocationStartup& location) {
  openedKeys = 0;
  location.ReadItems();
  return openedKeys;
}

class HandlerLoad : public HandlerTest {
 private:
  const ImportPatch open_{"RegOpenKeyExW", &CountedOpen};
};

}  // namespace

TEST_F(HandlerLoad, EveryHandlerCostsTheSameNumberOfKeys) {
  const auto fill = [](int from, int to) {
    const ScopedKey list = MakeKey(HKEY_LOCAL_MACHINE, kObjectsKey, OwnView());
    for (int i = from; i < to; ++i) SetHandler(list.Get(), Numbered(i), kClass, OwnView());
  };
  fill(0, 10);
  const unsigned few = KeysOpenedByOneLoad(Objects());
  const int handles = HandleCount();
  fill(10, 510);
  const unsigned some = KeysOpenedByOneLoad(Objects());
  fill(510, 5010);
  const unsigned all = KeysOpenedByOneLoad(Objects());
  ASSERT_EQ(Listed(Objects()).size(), 5010u);
  EXPECT_GT(some, few);
  EXPECT_EQ(all - some, 9 * (some - few));
  EXPECT_LE(HandleCount(), handles + 2);

  // One that goes between the listing of the names and its own turn costs the others nothing.
  vanishing = Numbered(2500);
  Objects().ReadItems();
  EXPECT_EQ(Listed(Objects()).size(), 5009u);
  DeleteKeyTree(HKEY_LOCAL_MACHINE, kObjectsKey, OwnView());
  Objects().ReadItems();
  EXPECT_THAT(Listed(Objects()), ::testing::IsEmpty());
}

TEST_F(HandlerLoad, WhatCannotBeOpenedForAMomentStaysListed) {
  for (const wchar_t* name : {L"First", L"Second"})
    SetHandler(HKEY_LOCAL_MACHINE, kMenusKey + L"\\" + name, kClass, OwnView());
  Menus().ReadItems();
  const std::vector<ItemRef> before = Listed(Menus());
  ASSERT_EQ(before.size(), 2u);
  for (const std::wstring& end : {kMenusKey, std::wstring(L"First"), kClass + L"\\InprocServer32"}) {
    blocked = end;
    Menus().ReadItems();
    blocked.clear();
    EXPECT_EQ(Listed(Menus()), before) << end;
    EXPECT_TRUE(Menus().IsRetryDue());
    Menus().ReadItems();
    EXPECT_FALSE(Menus().IsRetryDue());
  }
  // The key of all classes, which is kept open, has been deleted and made anew.
  isDying = HasTwoViews();
  Menus().ReadItems();
  dead = nullptr;
  EXPECT_EQ(Listed(Menus()), before);
  EXPECT_FALSE(isDying);
}

ULONGLONG hurry = 0;
ULONGLONG WINAPI Ticks() {
  return hurry + RealFunction<decltype(GetTickCount64)>(L"kernel32.dll", "GetTickCount64")();
}

TEST_F(HandlerTest, AClassThatComesChangesOrGoesBesideItsHandlerIsNoticed) {
  const ImportPatch ticks("GetTickCount64", &Ticks);
  const auto isNoticed = [] {
    if (!WaitUntil([] { return Menus().IsChanged(); }, 500)) return false;
    Menus().ReadItems();
    return true;
  };
  while (isNoticed()) {
  }
  const std::wstring server = kClasses + kUnserved + L"\\InprocServer32";
  SetHandler(HKEY_LOCAL_MACHINE, kMenusKey + L"\\New", kUnserved, OwnView());
  EXPECT_TRUE(isNoticed());
  EXPECT_THAT(Listed(Menus()), ::testing::IsEmpty());
  hurry += 10'000;
  SetHandler(HKEY_LOCAL_MACHINE, server, kServer, OwnView());
  EXPECT_TRUE(isNoticed());
  ASSERT_EQ(Listed(Menus()).size(), 1u);
  const ItemRef item = Listed(Menus()).front();

  SetHandler(HKEY_LOCAL_MACHINE, server, kOtherServer, OwnView());
  EXPECT_FALSE(isNoticed()) << "so soon after the last one";
  hurry += 10'000;
  EXPECT_TRUE(isNoticed());
  EXPECT_EQ(Command(item), kOtherServer);
  hurry += 10'000;
  DeleteKeyTree(HKEY_LOCAL_MACHINE, server, OwnView());
  EXPECT_TRUE(isNoticed());
  EXPECT_FALSE(item->IsListed());
}

TEST_F(HandlerTest, ClassesThatCannotBeLookedUpCostTheOthersNothing) {
  for (const std::wstring& name : {kClass, kOther, kUnserved})
    SetHandler(HKEY_LOCAL_MACHINE, kMenusKey + L"\\" + name, L"d", OwnView());
  std::vector<std::unique_ptr<LimitedKey>> denied;
  const std::wstring looping = kClasses + kUnserved + L"\\InprocServer32";
  for (const REGSAM view : {REGSAM(0), OwnView()}) {
    denied.push_back(std::make_unique<LimitedKey>(HKEY_LOCAL_MACHINE, kClasses + kOther + L"\\InprocServer32",
                                                  LimitedKey::Rights::kNone, view));
    // A class that leads back to itself.
    const ScopedKey self = MakeKey(HKEY_LOCAL_MACHINE, kClasses + kUnserved, view);
    MakeLink(HKEY_LOCAL_MACHINE, looping, self.Get(), view);
    if (!HasTwoViews()) break;
  }
  Menus().ReadItems();
  EXPECT_EQ(Listed(Menus()).size(), 1u);
  EXPECT_NE(LoadAndFind(Menus(), OwnView(), HKEY_LOCAL_MACHINE, kMenusKey + L"\\" + kClass, L"d"), nullptr);
  for (const REGSAM view : {REGSAM(0), OwnView()}) DeleteKeyTree(HKEY_LOCAL_MACHINE, looping, view);
}

namespace {

enum class Kind { kFolder, kRunKey, kHandlers, kValues };

struct Row {
  TTypeStartupLocation location;
  // Behind the T and "Location" of the class.
  std::wstring className;
  Kind kind;
  // Handler lists are read under both roots; folders have none.
  HKEY root;
  std::wstring path;
};

const std::wstring kCurrent = L"Software\\Microsoft\\Windows\\CurrentVersion\\";
const HKEY kUser = HKEY_CURRENT_USER;
const HKEY kMachine = HKEY_LOCAL_MACHINE;

// Every location in the order of the list; the handlers as five kinds, each for the same five objects.
std::vector<Row> ExpectedLocations() {
  std::vector<Row> rows = {
      {sulFolderUser, L"FolderUserRun", Kind::kFolder, nullptr, {}},
      {sulFolderCommon, L"FolderCommonRun", Kind::kFolder, nullptr, {}},
      {sulRegistryShellExtApproved, L"RegistryShellExtApproved", Kind::kValues, kMachine, kApprovedKey},
  };
  const std::pair<const wchar_t*, const wchar_t*> objects[] = {{L"AllReg", L"*"},
                                                               {L"All", L"AllFilesystemObjects"},
                                                               {L"Directory", L"Directory"},
                                                               {L"Folder", L"Folder"},
                                                               {L"Background", L"Directory\\Background"}};
  std::int32_t ordinal = sulRegistryAllRegContextMenuHandlers;
  for (const std::wstring kind : {L"ContextMenu", L"DragDrop", L"Column", L"PropertySheet", L"CopyHook"}) {
    // Two class names are shorter than their keys.
    const std::wstring name = kind.substr(0, kind.find(kind.starts_with(L"Property") ? L"Sheet" : L"Hook"));
    for (const auto& [object, files] : objects) {
      rows.push_back({static_cast<TTypeStartupLocation>(ordinal++),
                      L"Registry" + (object + name) + L"Handlers", Kind::kHandlers, nullptr,
                      L"Software\\Classes\\" + (files + std::wstring(L"\\shellex\\")) + kind + L"Handlers"});
    }
  }
  const Row others[] = {
      {sulRegistryUserRun, L"RegistryUserRun", Kind::kRunKey, kUser, kRunKey},
      {sulRegistryUserRunOnce, L"RegistryUserRunOnce", Kind::kRunKey, kUser, kCurrent + L"RunOnce"},
      {sulRegistryCommonRun, L"RegistryCommonRun", Kind::kRunKey, kMachine, kRunKey},
      {sulRegistryCommonRunOnce, L"RegistryCommonRunOnce", Kind::kRunKey, kMachine, kCurrent + L"RunOnce"},
      {sulRegistryUserRunOnceSetup, L"RegistryUserRunOnceSetup", Kind::kRunKey, kUser,
       kCurrent + L"RunOnce\\Setup"},
      {sulRegistryCommonRunOnceSetup, L"RegistryCommonRunOnceSetup", Kind::kRunKey, kMachine,
       kCurrent + L"RunOnce\\Setup"},
      {sulRegistryRunServices, L"RegistryCommonRunServices", Kind::kRunKey, kMachine,
       kCurrent + L"RunServices"},
      {sulRegistryRunServicesOnce, L"RegistryCommonRunServicesOnce", Kind::kRunKey, kMachine,
       kCurrent + L"RunServicesOnce"},
      {sulRegistryIEBrowserObjects, L"RegistryIEBrowserObjects", Kind::kHandlers, nullptr, kObjectsKey},
      {sulRegistryUserIEURLSearchHooks, L"RegistryUserIEURLSearchHooks", Kind::kValues, kUser, kHooksKey},
      {sulRegistryCommonIEURLSearchHooks, L"RegistryCommonIEURLSearchHooks", Kind::kValues, kMachine,
       kHooksKey},
  };
  rows.insert(rows.end(), std::begin(others), std::end(others));
  return rows;
}

}  // namespace

class AllLocationsTest : public HandlerTest {
 protected:
  // An entry under both roots, of which a location may read only one.
  static void Fill(const Row& row, const std::wstring& path, const std::wstring& name) {
    for (const HKEY root : {HKEY_LOCAL_MACHINE, HKEY_CURRENT_USER}) {
      if (row.kind == Kind::kHandlers) {
        SetHandler(root, path + L"\\" + name, kClass, OwnView());
      } else if (row.kind == Kind::kValues) {
        SetValue(root, path, name == L"on" ? kClass : kOther, Sz(name), OwnView());
      } else {
        SetValue(root, path, name, Sz(L"x.exe"), OwnView());
      }
    }
  }
};

TEST_F(AllLocationsTest, EveryLocationReadsItsOwnKeyAndSideKeyInTheOrderOfTheList) {
  const std::vector<Row> rows = ExpectedLocations();
  ASSERT_EQ(Locations().size(), rows.size());
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const Row& row = rows[i];
    TLocationStartup& location = *Locations()[i];
    SCOPED_TRACE(row.location);
    EXPECT_EQ(location.LocationType(), row.location);
    EXPECT_EQ(location.Row().className, L"TLocation" + row.className);
    EXPECT_TRUE(location.CanEnable());
    EXPECT_TRUE(location.CanDelete());
    EXPECT_EQ(location.CanModify(), row.kind == Kind::kFolder || row.kind == Kind::kRunKey);
    if (row.kind == Kind::kFolder) continue;

    const std::wstring side =
        row.path + (row.kind == Kind::kRunKey ? L"\\Disabled (Startup Manager)" : L"\\AutorunsDisabled");
    const EmptiedKeys emptied({row.path});
    Fill(row, row.path, L"on");
    Fill(row, side, L"off");
    location.ReadItems();
    const std::vector<ItemRef> items = Listed(location);
    using Texts = std::vector<std::wstring>;
    ASSERT_EQ(Captions(location),
              row.kind == Kind::kHandlers ? Texts({L"on", L"on", L"off", L"off"}) : Texts({L"on", L"off"}));
    for (const ItemRef& item : items) EXPECT_EQ(item->IsEnabled(), item->GivenText() == L"on");
    if (row.root != nullptr) {
      EXPECT_THAT(items[0]->Name(),
                  ::testing::HasSubstr(row.root == kUser ? L"HKEY_CURRENT_USER" : L"HKEY_LOCAL_MACHINE"));
    }

    // What it can do, done: the entry goes to the side key, back, and away.
    location.DisableItem(items[0]);
    EXPECT_FALSE(items[0]->IsEnabled());
    EXPECT_THAT(items[0]->Name(), ::testing::HasSubstr(side));
    location.EnableItem(items[0]);
    EXPECT_TRUE(location.ItemExists(*items[0]));
    location.DeleteItem(items[0]);
    EXPECT_FALSE(location.ItemExists(*items[0]));
    EXPECT_FALSE(items[0]->IsListed());
  }
}

}  // namespace smh::test
