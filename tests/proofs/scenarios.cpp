#include "tests/proofs/scenarios.h"

#include "effective/system_states.h"
#include "model/item_list.h"

#include <stdexcept>

namespace smh::test {

namespace {

using Arrangement = std::function<void(ProofWorld&)>;

const HKEY kMachine = HKEY_LOCAL_MACHINE;
const HKEY kUser = HKEY_CURRENT_USER;

// A command whose bytes are not what the library would write: no terminator, and an odd byte.
RawValue OddCommand() {
  RawValue value{REG_EXPAND_SZ, UnitBytes(kProgram + L" /mark-x")};
  value.bytes.push_back(std::byte{7});
  return value;
}

Operation Switch(bool enable) {
  return {enable ? L"Error enable item \"" : L"Error disable item \"",
          enable ? Entry::kDisabled : Entry::kEnabled,
          [enable](TLocationStartup& location, const ItemRef& item) {
            return enable ? location.EnableItem(item) : location.DisableItem(item);
          }};
}
const Operation kEnable = Switch(true);
const Operation kDisable = Switch(false);
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
const Operation kSwitchOn{
    L"Error switch on item \"", Entry::kAny,
    [](TLocationStartup& location, const ItemRef& item) { return location.SetItemSwitchedOff(item, false); }};
Operation MoveTo(TTypeStartupLocation target) {
  return {L"Error move item \"", Entry::kAny, [target](TLocationStartup& location, const ItemRef& item) {
            return location.MoveItem(item, target);
          }};
}

Arrangement operator+(Arrangement first, Arrangement second) {
  return [=](ProofWorld& world) {
    first(world);
    second(world);
  };
}

// A value of the entry's name.
Arrangement Value(HKEY root, std::wstring key, Views views = Views::kBoth, RawValue value = OddCommand()) {
  return [=](ProofWorld& world) { world.Put(root, key, world.entryName, value, views); };
}
// A key of the entry's name, and its default value.
Arrangement Key(std::wstring list, RawValue value) {
  return [=](ProofWorld& world) { world.Put(kMachine, list + L'\\' + world.entryName, L"", value); };
}
Arrangement OfClass(HKEY root, std::wstring key, bool isKey = false, Views views = Views::kBoth,
                    const wchar_t* text = L"Foo") {
  return [=](ProofWorld& world) {
    world.Put(root, isKey ? key + L'\\' + kServedClass : key, isKey ? L"" : kServedClass, ExpandSz(text),
              views);
  };
}
// The switch of a name, off, with more behind than is known.
Arrangement SwitchedOff(HKEY root, const wchar_t* list, std::wstring name = {}) {
  return [=](ProofWorld& world) {
    SetValue(root, kSwitches + L'\\' + list, name.empty() ? world.entryName : name,
             Binary(std::string("\3\0\0\0mark-x789", 13)), OwnView());
  };
}
enum class Folder { kStartup, kDisabled, kBrisko };
Arrangement File(bool isCommon, Folder folder) {
  return [=](ProofWorld& world) {
    const StartupPlaces& places = isCommon ? world.Common() : world.User();
    if (folder == Folder::kBrisko) {
      WriteFileBytes(places.brisko + world.entryName + L".exe", "MZ not much of a program: mark-x");
    } else {
      world.PutShortcut(
          (folder == Folder::kStartup ? places.startup : places.disabled) + world.entryName + L".lnk",
          L"/mark-x");
    }
  };
}

const RawValue kOther = Sz(L"other.exe");
const RawValue kClass = Sz(kServedClass);
const Arrangement Nothing = [](ProofWorld&) {};
const Arrangement NoFolders = [](ProofWorld& world) { world.RemoveFolders(); };
const Arrangement ShortcutNameTaken = [](ProofWorld& world) {
  WriteFileBytes(world.User().disabled + world.entryName + L".lnk", "taken");
};
const Arrangement MoreBelowKey = [](ProofWorld& world) {
  const std::wstring key = kMenusKey + L'\\' + world.entryName;
  world.Put(kMachine, key, L"extra", Dword(7));
  world.Put(kMachine, key + L"\\deeper\\still", L"v", Binary("bytes"));
  world.Put(kMachine, key + L"\\other", L"", Sz(L"o"));
};
// Where it goes the plain view holds another entry, and then takes no part.
const Arrangement OtherInPlainSide = [](ProofWorld& world) {
  if (HasTwoViews()) OfClass(kMachine, kObjectsKey + kAutorunsSide, true, Views::kPlain, L"Other")(world);
};

std::vector<Scenario> BaseScenarios() {
  const Arrangement run = Value(kMachine, kRunKey);
  const Arrangement userRun = Value(kUser, kRunKey);
  const Arrangement differs =
      Value(kMachine, kRunKey, Views::kOwn) + Value(kMachine, kRunKey, Views::kPlain, kOther);
  const Arrangement takenInPlain = run + Value(kMachine, kRunSide, Views::kPlain, kOther);
  const Arrangement otherTools =
      Value(kMachine, kRunKey + kAutorunsSide) + Value(kMachine, kRunKey, Views::kBoth, kOther);
  const Arrangement tree = Key(kMenusKey, kClass) + MoreBelowKey;
  const Arrangement handlerTwice = Key(kMenusKey, kClass) + Key(kMenusKey + kAutorunsSide, kClass);
  const Arrangement object = OfClass(kMachine, kObjectsKey, true);
  const Arrangement approved = OfClass(kMachine, kApprovedKey);
  const Arrangement approvedOff = OfClass(kMachine, kApprovedKey + kAutorunsSide);
  const Arrangement userFile = File(false, Folder::kStartup);
  const Arrangement allFile = File(true, Folder::kStartup);
  constexpr auto kMenus = sulRegistryAllRegContextMenuHandlers;
  return {
      {"Run: disable, both views", kDisable, run, {sulRegistryCommonRun}},
      {"Run: disable, own view", kDisable, Value(kMachine, kRunKey, Views::kOwn), {sulRegistryCommonRun}},
      {"Run: disable, plain view", kDisable, Value(kMachine, kRunKey, Views::kPlain), {sulRegistryCommonRun}},
      {"Run: disable, views differ", kDisable, differs, {sulRegistryCommonRun}, true},
      {"Run: disable, name taken", kDisable, takenInPlain, {sulRegistryCommonRun}, true},
      {"Run: disable, user", kDisable, userRun, {sulRegistryUserRun}},
      {"Run: enable", kEnable, Value(kMachine, kRunSide), {sulRegistryCommonRun}},
      {"Run: enable, other tool's", kEnable, otherTools, {sulRegistryCommonRun}, true},
      {"Run: delete, both views", kDelete, run, {sulRegistryCommonRun}},
      {"Run: delete, views differ", kDelete, differs, {sulRegistryCommonRun}, true},
      {"Run: delete, user", kDelete, userRun, {sulRegistryUserRun}},
      {"Run: add", kAdd, Nothing, {sulRegistryCommonRun}},
      {"Run: change", kChange, run, {sulRegistryCommonRun}},
      {"Run: change, user", kChange, userRun, {sulRegistryUserRun}},
      {"RunOnce: disable", kDisable, Value(kMachine, kRunOnceKey), {sulRegistryCommonRunOnce}},
      {"RunOnce: enable, user", kEnable, Value(kUser, kRunOnceSide), {sulRegistryUserRunOnce}},
      {"Handler: disable, tree", kDisable, tree, {kMenus}},
      {"Handler: disable, listed", kDisable, handlerTwice, {kMenus}},
      {"Handler: enable", kEnable, Key(kMenusKey + kAutorunsSide, kClass), {kMenus}},
      {"Handler: delete, tree", kDelete, tree, {kMenus}},
      {"Object: disable, both views", kDisable, object, {sulRegistryIEBrowserObjects}},
      {"Object: disable, views differ",
       kDisable,
       object + OtherInPlainSide,
       {sulRegistryIEBrowserObjects},
       true},
      {"Object: enable, both views",
       kEnable,
       OfClass(kMachine, kObjectsKey + kAutorunsSide, true),
       {sulRegistryIEBrowserObjects}},
      {"Object: delete, both views", kDelete, object, {sulRegistryIEBrowserObjects}},
      {"Approved: disable", kDisable, approved, {sulRegistryShellExtApproved}},
      {"Approved: enable", kEnable, approvedOff, {sulRegistryShellExtApproved}},
      {"Approved: enable, listed", kEnable, approved + approvedOff, {sulRegistryShellExtApproved}},
      {"Approved: delete", kDelete, approved, {sulRegistryShellExtApproved}},
      {"Hook: disable, user", kDisable, OfClass(kUser, kHooksKey), {sulRegistryUserIEURLSearchHooks}},
      {"Hook: enable",
       kEnable,
       OfClass(kMachine, kHooksKey + kAutorunsSide),
       {sulRegistryCommonIEURLSearchHooks}},
      {"Hook: delete", kDelete, OfClass(kMachine, kHooksKey), {sulRegistryCommonIEURLSearchHooks}},
      {"Folder: disable", kDisable, userFile, {sulFolderUser}},
      {"Folder: disable, no folders", kDisable, NoFolders + userFile, {sulFolderUser}},
      {"Folder: disable, name taken", kDisable, userFile + ShortcutNameTaken, {sulFolderUser}},
      {"Folder: disable, common", kDisable, allFile, {sulFolderCommon}},
      {"Folder: enable, common", kEnable, File(true, Folder::kDisabled), {sulFolderCommon}},
      {"Folder: enable, other tool's", kEnable, File(false, Folder::kBrisko), {sulFolderUser}},
      {"Folder: delete", kDelete, userFile, {sulFolderUser}},
      {"Folder: add", kAdd, Nothing, {sulFolderUser}},
      {"Folder: add, common", kAdd, NoFolders, {sulFolderCommon}},
      {"Folder: change", kChange, userFile, {sulFolderUser}},
      {"Folder: change, disabled", kChange, File(false, Folder::kDisabled), {sulFolderUser}},
      {"Folder: change, common", kChange, allFile, {sulFolderCommon}},
  };
}

// The switch of the system goes with the entry.
void AddSwitches(std::vector<Scenario>& scenarios) {
  const Arrangement run = Value(kMachine, kRunKey);
  const Arrangement both = SwitchedOff(kMachine, L"Run") + SwitchedOff(kMachine, L"Run32");
  const Arrangement userRun = Value(kUser, kRunKey) + SwitchedOff(kUser, L"Run");
  const auto add = [&](const char* name, const Operation& operation, const Arrangement& arrangement,
                       std::vector<TTypeStartupLocation> locations) {
    scenarios.push_back({name, operation, arrangement, std::move(locations)});
    scenarios.back().hasSwitch = true;
  };
  add("Switch: on", kSwitchOn, userRun, {sulRegistryUserRun});
  add("Switch: deleted, user", kDelete, userRun, {sulRegistryUserRun});
  add("Switch: deleted, both views", kDelete, run + both, {sulRegistryCommonRun});
  add("Switch: left behind", kAdd, SwitchedOff(kMachine, L"Run", L"New"), {sulRegistryCommonRun});
  add("Switch: left behind, folder", kAdd, SwitchedOff(kUser, L"StartupFolder", L"New.lnk"), {sulFolderUser});
  add("Switch: moved, user Run to Run", MoveTo(sulRegistryCommonRun),
      userRun + SwitchedOff(kMachine, L"Run", L"notepad"), {sulRegistryUserRun, sulRegistryCommonRun});
  add("Switch: moved, Run to folder", MoveTo(sulFolderUser), run + both,
      {sulRegistryCommonRun, sulFolderUser});
  add("Switch: moved, folder to Run", MoveTo(sulRegistryUserRun),
      File(false, Folder::kStartup) + SwitchedOff(kUser, L"StartupFolder", L"Foo.lnk"),
      {sulFolderUser, sulRegistryUserRun});
  add("Switch: renamed", kDisable, userRun + Value(kUser, kRunSide, Views::kBoth, kOther),
      {sulRegistryUserRun});
}

// Every direction, of what is enabled and of what is not.
void AddMoves(std::vector<Scenario>& scenarios) {
  struct End {
    const char* name;
    TTypeStartupLocation location;
    Arrangement entry;
    Arrangement disabled;
  };
  const End ends[] = {
      {"Run", sulRegistryCommonRun, Value(kMachine, kRunKey), Value(kMachine, kRunSide)},
      {"user Run", sulRegistryUserRun, Value(kUser, kRunKey), Value(kUser, kRunSide)},
      {"RunOnce", sulRegistryCommonRunOnce, Value(kMachine, kRunOnceKey), Value(kMachine, kRunOnceSide)},
      {"user RunOnce", sulRegistryUserRunOnce, Value(kUser, kRunOnceKey), Value(kUser, kRunOnceSide)},
      {"folder", sulFolderUser, File(false, Folder::kStartup), File(false, Folder::kDisabled)},
      {"common folder", sulFolderCommon, File(true, Folder::kStartup), File(true, Folder::kDisabled)},
  };
  for (const End& from : ends) {
    for (const End& to : ends) {
      if (&from == &to) continue;
      // Every way once in either state, half of them in each.
      const bool isEnabled = ((&from - ends) + (&to - ends)) % 2 != 0;
      const std::string name = std::string("Move: ") + from.name + " to " + to.name;
      scenarios.push_back({name,
                           MoveTo(to.location),
                           isEnabled ? from.entry : from.disabled,
                           {from.location, to.location},
                           false,
                           L"Foo",
                           (&from - ends + &to - ends) % 3 != 0});
    }
  }
}

void AddNames(std::vector<Scenario>& scenarios) {
  const struct {
    const char* label;
    std::wstring name;
  } names[] = {
      {"colon", L"A: x"},
      {"slash", L"Tool/a"},
      {"backslash", L"a\\b"},
      {"surrogate",
       L"a\xD800"
       L"b"},
      {"trailing blank", L"Foo "},
      {"255 units", std::wstring(255, L'n')},
      {"16,383 units", std::wstring(16'383, L'n')},
  };
  for (const auto& [label, name] : names) {
    const auto add = [&, &label = label, &name = name](const char* what, const Operation& operation,
                                                       const Arrangement& arrangement,
                                                       std::vector<TTypeStartupLocation> locations) {
      scenarios.push_back({std::string(what) + ", " + label, operation, arrangement, std::move(locations),
                           false, name, true});
    };
    add("Run: disable", kDisable, Value(kMachine, kRunKey), {sulRegistryCommonRun});
    add("Run: enable", kEnable, Value(kUser, kRunSide), {sulRegistryUserRun});
    add("Run: delete", kDelete, Value(kMachine, kRunKey), {sulRegistryCommonRun});
    add("Run: change", kChange, Value(kMachine, kRunKey), {sulRegistryCommonRun});
    add("Run: move", MoveTo(sulRegistryUserRun), Value(kMachine, kRunKey),
        {sulRegistryCommonRun, sulRegistryUserRun});
    if (name.size() < 255) {
      add("Run: move to folder", MoveTo(sulFolderUser), Value(kUser, kRunKey),
          {sulRegistryUserRun, sulFolderUser});
    }
    if (name.size() > 255 || name.find(L'\\') != name.npos) continue;
    add("Handler: disable", kDisable, Key(kMenusKey, kClass), {sulRegistryAllRegContextMenuHandlers});
    add("Handler: delete", kDelete, Key(kMenusKey, kClass), {sulRegistryAllRegContextMenuHandlers});
  }
}

}  // namespace

void Scenario::Arrange(ProofWorld& world) const {
  world.entryName = entryName;
  arrangement(world);
}

std::span<const Scenario> Scenarios() {
  static const std::vector<Scenario> scenarios = [] {
    std::vector<Scenario> all = BaseScenarios();
    AddSwitches(all);
    AddMoves(all);
    AddNames(all);
    return all;
  }();
  return scenarios;
}

ItemRef LoadEntry(const Scenario& scenario) {
  ReloadedEntries(scenario.locations);
  const Entry wanted = scenario.operation.entry;
  if (wanted == Entry::kNone) return nullptr;
  ScopedLock lock(Items().Lock());
  for (const ItemRef& item : Items().Snapshot()) {
    const Entry state = item->IsEnabled() ? Entry::kEnabled : Entry::kDisabled;
    if (item->Location() == scenario.locations.front() && item->GivenText() == scenario.entryName &&
        (wanted == Entry::kAny || wanted == state)) {
      return item;
    }
  }
  throw std::runtime_error("not listed: " + scenario.name);
}

ChangeAnswer Perform(const Scenario& scenario, const ItemRef& item) {
  g_systemStates->SetRelease([]() noexcept { return kWindows8; });
  return scenario.operation.perform(*FindLocation(scenario.locations.front()), item);
}

}  // namespace smh::test
