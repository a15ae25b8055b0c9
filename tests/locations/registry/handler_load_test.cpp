// What a load meets: many handlers, keys that go while they are read, classes that cannot be looked up; and
// which key each location loads.
#include "infra/runtime/import_function.h"
#include "tests/locations/registry/handler_fixture.h"
#include "tests/support/import_patch.h"

#include <gmock/gmock.h>

namespace smh::test {

namespace {

std::wstring Numbered(int number) {
  return L"Handler " + std::to_wstring(number);
}

unsigned openedKeys = 0;
// The handler that goes as soon as it is about to be opened; none when empty.
std::wstring vanishing;

LSTATUS WINAPI CountedOpen(HKEY key, LPCWSTR name, DWORD options, REGSAM access, PHKEY result) {
  ++openedKeys;
  if (!vanishing.empty() && name != nullptr && vanishing == name) {
    vanishing.clear();
    RegDeleteKeyExW(key, name, HasTwoViews() ? KEY_WOW64_64KEY : 0, 0);
  }
  // This program's own import leads here.
  static const auto original =
      ImportFunction<decltype(&RegOpenKeyExW)>(GetModuleHandleW(L"advapi32.dll"), "RegOpenKeyExW");
  return original(key, name, options, access, result);
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
  fill(10, 510);
  const unsigned some = KeysOpenedByOneLoad(Objects());
  fill(510, 5010);
  const unsigned all = KeysOpenedByOneLoad(Objects());
  ASSERT_EQ(Listed(Objects()).size(), 5010u);
  EXPECT_GT(some, few);
  EXPECT_EQ(all - some, 9 * (some - few));

  // One that goes between the listing of the names and its own turn costs the others nothing.
  vanishing = Numbered(2500);
  Objects().ReadItems();
  EXPECT_EQ(Listed(Objects()).size(), 5009u);
  DeleteKeyTree(HKEY_LOCAL_MACHINE, kObjectsKey, OwnView());
  Objects().ReadItems();
  EXPECT_THAT(Listed(Objects()), ::testing::IsEmpty());
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

using ::testing::ElementsAre;

namespace {

enum class Kind { kFolder, kRunKey, kHandlers, kValues };

struct Row {
  TTypeStartupLocation location;
  std::wstring className;
  Kind kind;
  // Handler lists are read under both roots; folders have none.
  HKEY root;
  std::wstring path;
};

const std::wstring kCurrent = L"Software\\Microsoft\\Windows\\CurrentVersion\\";

// Five kinds of handlers, each for the same five objects.
std::vector<Row> HandlerRows() {
  const std::pair<std::wstring, std::wstring> kinds[] = {{L"ContextMenu", L"ContextMenuHandlers"},
                                                         {L"DragDrop", L"DragDropHandlers"},
                                                         {L"Column", L"ColumnHandlers"},
                                                         {L"Property", L"PropertySheetHandlers"},
                                                         {L"Copy", L"CopyHookHandlers"}};
  const std::pair<std::wstring, std::wstring> objects[] = {{L"AllReg", L"*"},
                                                           {L"All", L"AllFilesystemObjects"},
                                                           {L"Directory", L"Directory"},
                                                           {L"Folder", L"Folder"},
                                                           {L"Background", L"Directory\\Background"}};
  std::vector<Row> rows;
  std::int32_t ordinal = sulRegistryAllRegContextMenuHandlers;
  for (const auto& [kind, list] : kinds) {
    for (const auto& [object, files] : objects) {
      rows.push_back({static_cast<TTypeStartupLocation>(ordinal++),
                      L"TLocationRegistry" + object + kind + L"Handlers", Kind::kHandlers, nullptr,
                      L"Software\\Classes\\" + files + L"\\shellex\\" + list});
    }
  }
  return rows;
}

// Every location in the order of the list.
std::vector<Row> ExpectedLocations() {
  std::vector<Row> rows = {
      {sulFolderUser, L"TLocationFolderUserRun", Kind::kFolder, nullptr, {}},
      {sulFolderCommon, L"TLocationFolderCommonRun", Kind::kFolder, nullptr, {}},
      {sulRegistryShellExtApproved, L"TLocationRegistryShellExtApproved", Kind::kValues, HKEY_LOCAL_MACHINE,
       kCurrent + L"Shell Extensions\\Approved"},
  };
  const std::vector<Row> handlers = HandlerRows();
  rows.insert(rows.end(), handlers.begin(), handlers.end());
  const std::vector<Row> others = {
      {sulRegistryUserRun, L"TLocationRegistryUserRun", Kind::kRunKey, HKEY_CURRENT_USER, kCurrent + L"Run"},
      {sulRegistryUserRunOnce, L"TLocationRegistryUserRunOnce", Kind::kRunKey, HKEY_CURRENT_USER,
       kCurrent + L"RunOnce"},
      {sulRegistryCommonRun, L"TLocationRegistryCommonRun", Kind::kRunKey, HKEY_LOCAL_MACHINE,
       kCurrent + L"Run"},
      {sulRegistryCommonRunOnce, L"TLocationRegistryCommonRunOnce", Kind::kRunKey, HKEY_LOCAL_MACHINE,
       kCurrent + L"RunOnce"},
      {sulRegistryUserRunOnceSetup, L"TLocationRegistryUserRunOnceSetup", Kind::kRunKey, HKEY_CURRENT_USER,
       kCurrent + L"RunOnce\\Setup"},
      {sulRegistryCommonRunOnceSetup, L"TLocationRegistryCommonRunOnceSetup", Kind::kRunKey,
       HKEY_LOCAL_MACHINE, kCurrent + L"RunOnce\\Setup"},
      {sulRegistryRunServices, L"TLocationRegistryCommonRunServices", Kind::kRunKey, HKEY_LOCAL_MACHINE,
       kCurrent + L"RunServices"},
      {sulRegistryRunServicesOnce, L"TLocationRegistryCommonRunServicesOnce", Kind::kRunKey,
       HKEY_LOCAL_MACHINE, kCurrent + L"RunServicesOnce"},
      {sulRegistryIEBrowserObjects, L"TLocationRegistryIEBrowserObjects", Kind::kHandlers, nullptr,
       kCurrent + L"Explorer\\Browser Helper Objects"},
      {sulRegistryUserIEURLSearchHooks, L"TLocationRegistryUserIEURLSearchHooks", Kind::kValues,
       HKEY_CURRENT_USER, kHooksKey},
      {sulRegistryCommonIEURLSearchHooks, L"TLocationRegistryCommonIEURLSearchHooks", Kind::kValues,
       HKEY_LOCAL_MACHINE, kHooksKey},
  };
  rows.insert(rows.end(), others.begin(), others.end());
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
    EXPECT_EQ(location.Row().className, row.className);
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
    if (row.kind == Kind::kHandlers) {
      EXPECT_THAT(Captions(location), ElementsAre(L"on", L"on", L"off", L"off"));
    } else {
      EXPECT_THAT(Captions(location), ElementsAre(L"on", L"off"));
    }
    for (const ItemRef& item : items) EXPECT_EQ(item->IsEnabled(), item->GivenText() == L"on");
    if (!items.empty() && row.root != nullptr) {
      EXPECT_THAT(
          items[0]->Name(),
          ::testing::HasSubstr(row.root == HKEY_CURRENT_USER ? L"HKEY_CURRENT_USER" : L"HKEY_LOCAL_MACHINE"));
    }

    // What it can do, done: the entry goes to the side key, back, and away.
    if (items.empty()) continue;
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
