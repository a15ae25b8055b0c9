#include "tests/proofs/scenarios.h"

#include "model/item_list.h"

#include <stdexcept>

namespace smh::test {

namespace {

const HKEY kMachine = HKEY_LOCAL_MACHINE;
const HKEY kUser = HKEY_CURRENT_USER;

// A command whose bytes are not what the library would write: no terminator, and an odd byte.
RawValue OddCommand() {
  RawValue value{REG_EXPAND_SZ, UnitBytes(L"C:\\windows\\notepad.exe /x")};
  value.bytes.push_back(std::byte{7});
  return value;
}

const Operation kEnable{
    L"Error enable item \"", Entry::kDisabled,
    [](TLocationStartup& location, const ItemRef& item) { return location.EnableItem(item); }};
const Operation kDisable{
    L"Error disable item \"", Entry::kEnabled,
    [](TLocationStartup& location, const ItemRef& item) { return location.DisableItem(item); }};
const Operation kDelete{
    L"Error delete item \"", Entry::kAny,
    [](TLocationStartup& location, const ItemRef& item) { return location.DeleteItem(item); }};
const Operation kAdd{L"Error add item \"", Entry::kNone, [](TLocationStartup& location, const ItemRef&) {
                       return location.AddItem(L"New", kProgram + L" /new");
                     }};
const Operation kChange{L"Error change item \"", Entry::kAny,
                        [](TLocationStartup& location, const ItemRef& item) {
                          return location.ChangeItemCommand(item, kProgram + L" /changed");
                        }};
template <TTypeStartupLocation kTarget>
const Operation kMoveTo{
    L"Error move item \"", Entry::kAny,
    [](TLocationStartup& location, const ItemRef& item) { return location.MoveItem(item, kTarget); }};

constexpr auto RunInBothViews = [](ProofWorld& world) { world.Put(kMachine, kRunKey, L"Foo", OddCommand()); };
constexpr auto RunInOwnView = [](ProofWorld& world) {
  world.Put(kMachine, kRunKey, L"Foo", OddCommand(), Views::kOwn);
};
constexpr auto RunInPlainView = [](ProofWorld& world) {
  world.Put(kMachine, kRunKey, L"Foo", OddCommand(), Views::kPlain);
};
constexpr auto RunOfUser = [](ProofWorld& world) { world.Put(kUser, kRunKey, L"Foo", OddCommand()); };
// The name is taken where the entry goes, in one view.
constexpr auto RunNameTaken = [](ProofWorld& world) {
  RunInBothViews(world);
  world.Put(kMachine, kRunSide, L"Foo", Sz(L"other.exe"), Views::kPlain);
};
// The two views hold different entries under one name.
constexpr auto RunDiffers = [](ProofWorld& world) {
  world.Put(kMachine, kRunKey, L"Foo", OddCommand(), Views::kOwn);
  world.Put(kMachine, kRunKey, L"Foo", Sz(L"other.exe"), Views::kPlain);
};
constexpr auto RunDisabled = [](ProofWorld& world) { world.Put(kMachine, kRunSide, L"Foo", OddCommand()); };
constexpr auto RunDisabledByOther = [](ProofWorld& world) {
  world.Put(kMachine, kRunKey + kAutorunsSide, L"Foo", OddCommand());
  world.Put(kMachine, kRunKey, L"Foo", Sz(L"other.exe"));
};
constexpr auto Nothing = [](ProofWorld&) {};

void Handler(ProofWorld& world, const std::wstring& key, const RawValue& value) {
  world.Put(kMachine, key, L"", value);
}
constexpr auto HandlerWithTree = [](ProofWorld& world) {
  const std::wstring key = kMenusKey + L"\\Foo";
  Handler(world, key, Sz(kServedClass));
  world.Put(kMachine, key, L"extra", Dword(7));
  world.Put(kMachine, key + L"\\deeper\\still", L"v", Binary("bytes"));
  world.Put(kMachine, key + L"\\other", L"", Sz(L"o"));
};
constexpr auto HandlerListedTwice = [](ProofWorld& world) {
  Handler(world, kMenusKey + L"\\Foo", Sz(kServedClass));
  Handler(world, kMenusKey + kAutorunsSide + L"\\Foo", Sz(kServedClass));
};
constexpr auto ObjectInBothViews = [](ProofWorld& world) {
  Handler(world, kObjectsKey + L"\\" + kServedClass, Sz(L"Foo"));
};
// Where it goes the plain view holds another entry, and then takes no part.
constexpr auto ObjectViewsDiffer = [](ProofWorld& world) {
  ObjectInBothViews(world);
  if (!HasTwoViews()) return;
  world.Put(kMachine, kObjectsKey + kAutorunsSide + L"\\" + kServedClass, L"", Sz(L"Other"), Views::kPlain);
};
constexpr auto ObjectDisabled = [](ProofWorld& world) {
  Handler(world, kObjectsKey + kAutorunsSide + L"\\" + kServedClass, Sz(L"Foo"));
};
constexpr auto ApprovedInBothViews = [](ProofWorld& world) {
  world.Put(kMachine, kApprovedKey, kServedClass, ExpandSz(L"Foo"));
};
constexpr auto ApprovedDisabled = [](ProofWorld& world) {
  world.Put(kMachine, kApprovedKey + kAutorunsSide, kServedClass, ExpandSz(L"Foo"));
};
constexpr auto ApprovedListedTwice = [](ProofWorld& world) {
  ApprovedInBothViews(world);
  ApprovedDisabled(world);
};
constexpr auto NoFolders = [](ProofWorld& world) { world.RemoveFolders(); };
constexpr auto ShortcutWithoutFolders = [](ProofWorld& world) {
  world.RemoveFolders();
  world.PutShortcut(world.User().startup + L"Foo.lnk", L"/old");
};
constexpr auto ShortcutOfUser = [](ProofWorld& world) {
  world.PutShortcut(world.User().startup + L"Foo.lnk", L"/old");
};
constexpr auto ShortcutNameTaken = [](ProofWorld& world) {
  ShortcutOfUser(world);
  WriteFileBytes(world.User().disabled + L"Foo.lnk", "taken");
};
constexpr auto ShortcutDisabled = [](ProofWorld& world) {
  world.PutShortcut(world.User().disabled + L"Foo.lnk", L"/old");
};
constexpr auto ShortcutOfAll = [](ProofWorld& world) {
  world.PutShortcut(world.Common().startup + L"Foo.lnk", L"/old");
};
constexpr auto ShortcutOfAllDisabled = [](ProofWorld& world) {
  world.PutShortcut(world.Common().disabled + L"Foo.lnk", L"/old");
};
constexpr auto ProgramDisabledByOther = [](ProofWorld& world) {
  WriteFileBytes(world.User().brisko + L"Foo.exe", "MZ not much of a program");
};

}  // namespace

std::span<const Scenario> Scenarios() {
  static const Scenario scenarios[] = {
      {"Run: disable, both views", kDisable, RunInBothViews, {sulRegistryCommonRun}},
      {"Run: disable, own view", kDisable, RunInOwnView, {sulRegistryCommonRun}},
      {"Run: disable, plain view", kDisable, RunInPlainView, {sulRegistryCommonRun}},
      {"Run: disable, views differ", kDisable, RunDiffers, {sulRegistryCommonRun}, true},
      {"Run: disable, name taken", kDisable, RunNameTaken, {sulRegistryCommonRun}, true},
      {"Run: disable, user", kDisable, RunOfUser, {sulRegistryUserRun}},
      {"Run: enable", kEnable, RunDisabled, {sulRegistryCommonRun}},
      {"Run: enable, other tool's", kEnable, RunDisabledByOther, {sulRegistryCommonRun}, true},
      {"Run: delete, both views", kDelete, RunInBothViews, {sulRegistryCommonRun}},
      {"Run: delete, views differ", kDelete, RunDiffers, {sulRegistryCommonRun}, true},
      {"Run: delete, user", kDelete, RunOfUser, {sulRegistryUserRun}},
      {"Run: add", kAdd, Nothing, {sulRegistryCommonRun}},
      {"Run: change", kChange, RunInBothViews, {sulRegistryCommonRun}},
      {"Run: change, user", kChange, RunOfUser, {sulRegistryUserRun}},
      {"Run: move to common",
       kMoveTo<sulRegistryCommonRun>,
       RunOfUser,
       {sulRegistryUserRun, sulRegistryCommonRun}},
      {"Run: move to folder", kMoveTo<sulFolderUser>, RunOfUser, {sulRegistryUserRun, sulFolderUser}},
      {"Handler: disable, tree", kDisable, HandlerWithTree, {sulRegistryAllRegContextMenuHandlers}},
      {"Handler: disable, listed", kDisable, HandlerListedTwice, {sulRegistryAllRegContextMenuHandlers}},
      {"Handler: delete, tree", kDelete, HandlerWithTree, {sulRegistryAllRegContextMenuHandlers}},
      {"Object: disable, both views", kDisable, ObjectInBothViews, {sulRegistryIEBrowserObjects}},
      {"Object: disable, views differ", kDisable, ObjectViewsDiffer, {sulRegistryIEBrowserObjects}, true},
      {"Object: enable, both views", kEnable, ObjectDisabled, {sulRegistryIEBrowserObjects}},
      {"Object: delete, both views", kDelete, ObjectInBothViews, {sulRegistryIEBrowserObjects}},
      {"Approved: disable", kDisable, ApprovedInBothViews, {sulRegistryShellExtApproved}},
      {"Approved: enable", kEnable, ApprovedDisabled, {sulRegistryShellExtApproved}},
      {"Approved: enable, listed", kEnable, ApprovedListedTwice, {sulRegistryShellExtApproved}},
      {"Approved: delete", kDelete, ApprovedInBothViews, {sulRegistryShellExtApproved}},
      {"Folder: disable", kDisable, ShortcutOfUser, {sulFolderUser}},
      {"Folder: disable, no folders", kDisable, ShortcutWithoutFolders, {sulFolderUser}},
      {"Folder: disable, name taken", kDisable, ShortcutNameTaken, {sulFolderUser}},
      {"Folder: disable, common", kDisable, ShortcutOfAll, {sulFolderCommon}},
      {"Folder: enable, common", kEnable, ShortcutOfAllDisabled, {sulFolderCommon}},
      {"Folder: enable, other tool's", kEnable, ProgramDisabledByOther, {sulFolderUser}},
      {"Folder: delete", kDelete, ShortcutOfUser, {sulFolderUser}},
      {"Folder: add", kAdd, Nothing, {sulFolderUser}},
      {"Folder: add, common", kAdd, NoFolders, {sulFolderCommon}},
      {"Folder: change", kChange, ShortcutOfUser, {sulFolderUser}},
      {"Folder: change, disabled", kChange, ShortcutDisabled, {sulFolderUser}},
      {"Folder: change, common", kChange, ShortcutOfAll, {sulFolderCommon}},
      {"Folder: move to common", kMoveTo<sulFolderCommon>, ShortcutOfUser, {sulFolderUser, sulFolderCommon}},
      {"Folder: move, disabled",
       kMoveTo<sulFolderCommon>,
       ShortcutDisabled,
       {sulFolderUser, sulFolderCommon}},
      {"Folder: move to Run",
       kMoveTo<sulRegistryUserRun>,
       ShortcutOfUser,
       {sulFolderUser, sulRegistryUserRun}},
  };
  return scenarios;
}

ItemRef LoadEntry(const Scenario& scenario) {
  ReloadedEntries(scenario.locations);
  const Entry wanted = scenario.operation.entry;
  if (wanted == Entry::kNone) return nullptr;
  ScopedLock lock(Items().Lock());
  for (const ItemRef& item : Items().Snapshot()) {
    const Entry state = item->IsEnabled() ? Entry::kEnabled : Entry::kDisabled;
    if (item->Location() == scenario.locations.front() && item->GivenText() == L"Foo" &&
        (wanted == Entry::kAny || wanted == state)) {
      return item;
    }
  }
  throw std::runtime_error(std::string("not listed: ") + scenario.name);
}

ChangeAnswer Perform(const Scenario& scenario, const ItemRef& item) {
  return scenario.operation.perform(*FindLocation(scenario.locations.front()), item);
}

}  // namespace smh::test
