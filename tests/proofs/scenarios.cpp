#include "proofs/scenarios.h"

#include "model/item_list.h"

#include <stdexcept>

namespace smh::test {

namespace {

const HKEY kMachine = HKEY_LOCAL_MACHINE;
const HKEY kUser = HKEY_CURRENT_USER;

constexpr wchar_t kEnableLine[] = L"Error enable item \"";
constexpr wchar_t kDisableLine[] = L"Error disable item \"";
constexpr wchar_t kDeleteLine[] = L"Error delete item \"";
constexpr wchar_t kAddLine[] = L"Error add item \"";
constexpr wchar_t kMoveLine[] = L"Error move item \"";
constexpr wchar_t kChangeLine[] = L"Error change item \"";

// A command whose bytes are not what the library would write: no terminator, and an odd byte.
RawValue OddCommand() {
  RawValue value{REG_EXPAND_SZ, UnitBytes(L"C:\\windows\\notepad.exe /x")};
  value.bytes.push_back(std::byte{7});
  return value;
}

void Enable(TLocationStartup& location, const ItemRef& item) {
  location.EnableItem(item);
}
void Disable(TLocationStartup& location, const ItemRef& item) {
  location.DisableItem(item);
}
void Delete(TLocationStartup& location, const ItemRef& item) {
  location.DeleteItem(item);
}
void Add(TLocationStartup& location, const ItemRef&) {
  location.AddItem(L"New", kProgram + L" /new");
}
void Change(TLocationStartup& location, const ItemRef& item) {
  location.ChangeItemCommand(item, kProgram + L" /changed");
}
template <TTypeStartupLocation kTarget>
void MoveTo(TLocationStartup& location, const ItemRef& item) {
  location.MoveItem(item, kTarget);
}

void RunInBothViews(ProofWorld& world) {
  world.Put(kMachine, kRunKey, L"Foo", OddCommand());
}
void RunInOwnView(ProofWorld& world) {
  world.Put(kMachine, kRunKey, L"Foo", OddCommand(), Views::kOwn);
}
void RunInPlainView(ProofWorld& world) {
  world.Put(kMachine, kRunKey, L"Foo", OddCommand(), Views::kPlain);
}
void RunOfUser(ProofWorld& world) {
  world.Put(kUser, kRunKey, L"Foo", OddCommand());
}
// The name is taken where the entry goes, in one view.
void RunNameTaken(ProofWorld& world) {
  RunInBothViews(world);
  world.Put(kMachine, kRunSide, L"Foo", Sz(L"other.exe"), Views::kPlain);
}
// The two views hold different entries under one name.
void RunDiffers(ProofWorld& world) {
  world.Put(kMachine, kRunKey, L"Foo", OddCommand(), Views::kOwn);
  world.Put(kMachine, kRunKey, L"Foo", Sz(L"other.exe"), Views::kPlain);
}
void RunDisabled(ProofWorld& world) {
  world.Put(kMachine, kRunSide, L"Foo", OddCommand());
}
void RunDisabledByOther(ProofWorld& world) {
  world.Put(kMachine, kRunKey + kAutorunsSide, L"Foo", OddCommand());
  world.Put(kMachine, kRunKey, L"Foo", Sz(L"other.exe"));
}
void Nothing(ProofWorld&) {}

void Handler(ProofWorld& world, const std::wstring& key, const RawValue& value) {
  world.Put(kMachine, key, L"", value);
}
void HandlerWithTree(ProofWorld& world) {
  const std::wstring key = kHandlersKey + L"\\Foo";
  Handler(world, key, Sz(kServedClass));
  world.Put(kMachine, key, L"extra", Dword(7));
  world.Put(kMachine, key + L"\\deeper\\still", L"v", Binary("bytes"));
  world.Put(kMachine, key + L"\\other", L"", Sz(L"o"));
}
void HandlerOverOther(ProofWorld& world) {
  Handler(world, kHandlersKey + L"\\Foo", ExpandSz(kServedClass));
  Handler(world, kHandlersKey + kAutorunsSide + L"\\Foo", Sz(L"{not a class}"));
}
void HandlerListedTwice(ProofWorld& world) {
  Handler(world, kHandlersKey + L"\\Foo", Sz(kServedClass));
  Handler(world, kHandlersKey + kAutorunsSide + L"\\Foo", Sz(kServedClass));
}
void ObjectInBothViews(ProofWorld& world) {
  Handler(world, kObjectsKey + L"\\" + kServedClass, Sz(L"Foo"));
}
void ObjectDisabled(ProofWorld& world) {
  Handler(world, kObjectsKey + kAutorunsSide + L"\\" + kServedClass, Sz(L"Foo"));
}

void ApprovedInBothViews(ProofWorld& world) {
  world.Put(kMachine, kApprovedKey, kServedClass, ExpandSz(L"Foo"));
}
void ApprovedDisabled(ProofWorld& world) {
  world.Put(kMachine, kApprovedKey + kAutorunsSide, kServedClass, ExpandSz(L"Foo"));
}
void ApprovedListedTwice(ProofWorld& world) {
  ApprovedInBothViews(world);
  ApprovedDisabled(world);
}

void NoFolders(ProofWorld& world) {
  world.RemoveFolders();
}
void ShortcutWithoutFolders(ProofWorld& world) {
  world.RemoveFolders();
  world.PutShortcut(world.User().startup + L"Foo.lnk", L"/old");
}
void ShortcutOfUser(ProofWorld& world) {
  world.PutShortcut(world.User().startup + L"Foo.lnk", L"/old");
}
void ShortcutNameTaken(ProofWorld& world) {
  ShortcutOfUser(world);
  world.PutFile(world.User().disabled + L"Foo.lnk", "taken");
}
void ShortcutDisabled(ProofWorld& world) {
  world.PutShortcut(world.User().disabled + L"Foo.lnk", L"/old");
}
void ShortcutOfAll(ProofWorld& world) {
  world.PutShortcut(world.Common().startup + L"Foo.lnk", L"/old");
}
void ShortcutOfAllDisabled(ProofWorld& world) {
  world.PutShortcut(world.Common().disabled + L"Foo.lnk", L"/old");
}
void ProgramDisabledByOther(ProofWorld& world) {
  world.PutFile(world.User().brisko + L"Foo.exe", "MZ not much of a program");
}

}  // namespace

std::span<const Scenario> Scenarios() {
  static const Scenario scenarios[] = {
      {"Run: disable, both views",
       kDisableLine,
       RunInBothViews,
       {sulRegistryCommonRun},
       L"Foo",
       true,
       Disable},
      {"Run: disable, own view", kDisableLine, RunInOwnView, {sulRegistryCommonRun}, L"Foo", true, Disable},
      {"Run: disable, plain view",
       kDisableLine,
       RunInPlainView,
       {sulRegistryCommonRun},
       L"Foo",
       true,
       Disable},
      {"Run: disable, views differ",
       kDisableLine,
       RunDiffers,
       {sulRegistryCommonRun},
       L"Foo",
       true,
       Disable,
       true},
      {"Run: disable, name taken",
       kDisableLine,
       RunNameTaken,
       {sulRegistryCommonRun},
       L"Foo",
       true,
       Disable,
       true},
      {"Run: disable, user", kDisableLine, RunOfUser, {sulRegistryUserRun}, L"Foo", true, Disable},
      {"Run: enable", kEnableLine, RunDisabled, {sulRegistryCommonRun}, L"Foo", false, Enable},
      {"Run: enable, other tool's",
       kEnableLine,
       RunDisabledByOther,
       {sulRegistryCommonRun},
       L"Foo",
       false,
       Enable,
       true},
      {"Run: delete, both views", kDeleteLine, RunInBothViews, {sulRegistryCommonRun}, L"Foo", true, Delete},
      {"Run: delete, views differ",
       kDeleteLine,
       RunDiffers,
       {sulRegistryCommonRun},
       L"Foo",
       true,
       Delete,
       true},
      {"Run: delete, user", kDeleteLine, RunOfUser, {sulRegistryUserRun}, L"Foo", true, Delete},
      {"Run: add", kAddLine, Nothing, {sulRegistryCommonRun}, nullptr, true, Add},
      {"Run: change", kChangeLine, RunInBothViews, {sulRegistryCommonRun}, L"Foo", true, Change},
      {"Run: change, user", kChangeLine, RunOfUser, {sulRegistryUserRun}, L"Foo", true, Change},
      {"Run: move to common",
       kMoveLine,
       RunOfUser,
       {sulRegistryUserRun, sulRegistryCommonRun},
       L"Foo",
       true,
       MoveTo<sulRegistryCommonRun>},
      {"Run: move to folder",
       kMoveLine,
       RunOfUser,
       {sulRegistryUserRun, sulFolderUser},
       L"Foo",
       true,
       MoveTo<sulFolderUser>},
      {"Handler: disable, tree",
       kDisableLine,
       HandlerWithTree,
       {sulRegistryAllRegContextMenuHandlers},
       L"Foo",
       true,
       Disable},
      {"Handler: disable, over other",
       kDisableLine,
       HandlerOverOther,
       {sulRegistryAllRegContextMenuHandlers},
       L"Foo",
       true,
       Disable},
      {"Handler: disable, listed",
       kDisableLine,
       HandlerListedTwice,
       {sulRegistryAllRegContextMenuHandlers},
       L"Foo",
       true,
       Disable},
      {"Handler: delete, tree",
       kDeleteLine,
       HandlerWithTree,
       {sulRegistryAllRegContextMenuHandlers},
       L"Foo",
       true,
       Delete},
      {"Object: disable, both views",
       kDisableLine,
       ObjectInBothViews,
       {sulRegistryIEBrowserObjects},
       L"Foo",
       true,
       Disable},
      {"Object: enable, both views",
       kEnableLine,
       ObjectDisabled,
       {sulRegistryIEBrowserObjects},
       L"Foo",
       false,
       Enable},
      {"Object: delete, both views",
       kDeleteLine,
       ObjectInBothViews,
       {sulRegistryIEBrowserObjects},
       L"Foo",
       true,
       Delete},
      {"Approved: disable",
       kDisableLine,
       ApprovedInBothViews,
       {sulRegistryShellExtApproved},
       L"Foo",
       true,
       Disable},
      {"Approved: enable",
       kEnableLine,
       ApprovedDisabled,
       {sulRegistryShellExtApproved},
       L"Foo",
       false,
       Enable},
      {"Approved: enable, listed",
       kEnableLine,
       ApprovedListedTwice,
       {sulRegistryShellExtApproved},
       L"Foo",
       false,
       Enable},
      {"Approved: delete",
       kDeleteLine,
       ApprovedInBothViews,
       {sulRegistryShellExtApproved},
       L"Foo",
       true,
       Delete},
      {"Folder: disable", kDisableLine, ShortcutOfUser, {sulFolderUser}, L"Foo", true, Disable},
      {"Folder: disable, no folders",
       kDisableLine,
       ShortcutWithoutFolders,
       {sulFolderUser},
       L"Foo",
       true,
       Disable},
      {"Folder: disable, name taken",
       kDisableLine,
       ShortcutNameTaken,
       {sulFolderUser},
       L"Foo",
       true,
       Disable},
      {"Folder: disable, common", kDisableLine, ShortcutOfAll, {sulFolderCommon}, L"Foo", true, Disable},
      {"Folder: enable, common",
       kEnableLine,
       ShortcutOfAllDisabled,
       {sulFolderCommon},
       L"Foo",
       false,
       Enable},
      {"Folder: enable, other tool's",
       kEnableLine,
       ProgramDisabledByOther,
       {sulFolderUser},
       L"Foo",
       false,
       Enable},
      {"Folder: delete", kDeleteLine, ShortcutOfUser, {sulFolderUser}, L"Foo", true, Delete},
      {"Folder: add", kAddLine, Nothing, {sulFolderUser}, nullptr, true, Add},
      {"Folder: add, common", kAddLine, NoFolders, {sulFolderCommon}, nullptr, true, Add},
      {"Folder: change", kChangeLine, ShortcutOfUser, {sulFolderUser}, L"Foo", true, Change},
      {"Folder: change, disabled", kChangeLine, ShortcutDisabled, {sulFolderUser}, L"Foo", false, Change},
      {"Folder: change, common", kChangeLine, ShortcutOfAll, {sulFolderCommon}, L"Foo", true, Change},
      {"Folder: move to common",
       kMoveLine,
       ShortcutOfUser,
       {sulFolderUser, sulFolderCommon},
       L"Foo",
       true,
       MoveTo<sulFolderCommon>},
      {"Folder: move, disabled",
       kMoveLine,
       ShortcutDisabled,
       {sulFolderUser, sulFolderCommon},
       L"Foo",
       false,
       MoveTo<sulFolderCommon>},
      {"Folder: move to Run",
       kMoveLine,
       ShortcutOfUser,
       {sulFolderUser, sulRegistryUserRun},
       L"Foo",
       true,
       MoveTo<sulRegistryUserRun>},
  };
  return scenarios;
}

ItemRef LoadEntry(const Scenario& scenario) {
  ReloadedEntries(scenario.locations);
  if (scenario.caption == nullptr) return nullptr;
  ScopedLock lock(Items().Lock());
  for (const ItemRef& item : Items().Snapshot()) {
    if (item->Location() == scenario.locations.front() && item->GivenText() == scenario.caption &&
        item->IsEnabled() == scenario.isEnabled) {
      return item;
    }
  }
  throw std::runtime_error(std::string("not listed: ") + scenario.name);
}

void Perform(const Scenario& scenario, const ItemRef& item) {
  scenario.change(*FindLocation(scenario.locations.front()), item);
}

}  // namespace smh::test
