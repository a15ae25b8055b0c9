#include "locations/registry/registry_location.h"

#include "core/contracts/uDllGlobals.h"
#include "infra/runtime/text.h"
#include "model/checkpoint.h"
#include "model/reader_state.h"
#include "sysutil/uRegEditUtils.h"
#include "sysutil/version/uWinVersionInfo.h"

#include <algorithm>

namespace smh {

namespace {

constexpr wchar_t kDeleteLine[] = L"Error delete item \"%s\" in location \"%s\".";
constexpr wchar_t kEnableLine[] = L"Error enable item \"%s\" in location \"%s\".";
constexpr wchar_t kDisableLine[] = L"Error disable item \"%s\" in location \"%s\".";

// In the order of reading.
std::vector<HKEY> RootHandles(LocationRoot root) {
  if (root == LocationRoot::kBoth) return {HKEY_LOCAL_MACHINE, HKEY_CURRENT_USER};
  return {root == LocationRoot::kUser ? HKEY_CURRENT_USER : HKEY_LOCAL_MACHINE};
}

}  // namespace

TLocationRegistry::TLocationRegistry(const LocationRow& row)
    : TLocationStartup(row, Abilities{.canModify = FamilyOf(row).canModify}),
      keys_{RootHandles(row.root), std::wstring(row.place), SidePaths(row)},
      watch_([this] {
        std::vector<WatchedKey> watched;
        for (const HKEY root : keys_.roots) {
          watched.push_back({root, keys_.own});
          for (const std::wstring& path : keys_.side) watched.push_back({root, path});
        }
        return watched;
      }()) {}

REGSAM TLocationRegistry::OwnView() {
  return WinVersionInfo::IsWow64() ? KEY_WOW64_64KEY : 0;
}

bool TLocationRegistry::IsChanged() {
  // A signal that comes while a change runs is kept for later.
  if (Gate().IsBusy()) return false;
  if (watch_.IsSignalled()) {
    watch_.Rearm();
    Gate().TakeLoadDue();
    return true;
  }
  return Gate().TakeLoadDue();
}

void TLocationRegistry::ShowItemLocation(const TStartupItem& item) {
  const RegistryValueAddress address = AddressOf(item);
  RegEditUtils::OpenRegEdit(address.viewBits, address.root, ValueToShow(address), address.key);
}

void TLocationRegistry::ReadItems() {
  CatchFailure([this] { LoadItems(); },
               [this] {
                 LogCurrentException();
                 LogFormat(L"Error load item list for location \"%s\".", MemberName());
               });
}

void TLocationRegistry::LoadItems() {
  // Twice at most: pruning can make room for entries that were passed over.
  bool again = true;
  for (int pass = 0; pass < 2 && again; ++pass) {
    const std::optional<Load> begun = BeginLoad();
    if (!begun) return;
    RegistryLoad load{*begun};
    bool current = ReadPath(load, keys_.own, true);
    for (const std::wstring& path : keys_.side) current = current && ReadPath(load, path, false);
    if (!current || !Prune(load, again)) {
      Gate().MarkLoadDue();
      return;
    }
  }
}

bool TLocationRegistry::ReadPath(RegistryLoad& load, const std::wstring& path, bool isOwn) {
  for (const REGSAM view : {REGSAM(KEY_WOW64_64KEY), REGSAM(0)}) {
    if (view != 0 && OwnView() == 0) continue;
    for (const HKEY root : keys_.roots) {
      CheckTerminated();
      if (!ReadKey(load, {root, path, view, isOwn})) return false;
    }
  }
  return true;
}

bool TLocationRegistry::IsShownByOtherView(RegistryLoad& load, const Place& place, const SeenEntry& seen) {
  if (OwnView() == 0) return false;
  AssignFullValuePath(load.otherPath, place.view ^ KEY_WOW64_64KEY, place.root, seen.key, seen.shownName);
  ItemRef other = FindItem(LocationType(), load.otherPath);
  if (other == nullptr) return false;
  // One that this load has found already stays.
  if (!other->WasFoundIn(load.number)) load.skipCauses.push_back(std::move(other));
  return true;
}

bool TLocationRegistry::TakeEntry(RegistryLoad& load, const Place& place, const SeenEntry& seen) {
  AssignFullValuePath(load.path, place.view, place.root, seen.key, seen.shownName);
  ItemRef own = FindItem(LocationType(), load.path);
  if (own == nullptr) {
    if (IsShownByOtherView(load, place, seen)) return true;
    FoundEntry entry;
    entry.name = SharedText(load.path);
    entry.caption = SharedText(seen.caption);
    entry.command = SharedText(seen.command);
    entry.isEnabled = place.isOwn;
    entry.isProtected = seen.isProtected;
    if (load.key != seen.key) load.key = SharedText(seen.key);
    const bool isNamedByCaption = seen.valueName == seen.caption;
    entry.address = {place.view, place.root, load.key,
                     isNamedByCaption ? entry.caption : SharedText(seen.valueName)};
    return ListEntry(std::move(entry), load);
  }
  const bool isSame = own->Get([&](const ItemState& state) {
    return SameText(state.address.key, seen.key) && SameText(state.address.valueName, seen.valueName);
  });
  if (isSame && !own->WasFoundIn(load.number)) return UpdateItem(*own, seen.command, load);
  LogFormat(L"Value \"%s\" of key \"%s\" in location \"%s\" has the same path as another.", seen.shownName,
            seen.key, MemberName());
  load.skipCauses.push_back(std::move(own));
  return true;
}

bool TLocationRegistry::Prune(const RegistryLoad& load, bool& again) {
  again = false;
  if (!RemoveMissingItems(load)) return false;
  again = std::ranges::any_of(load.skipCauses,
                              [&](const ItemRef& cause) { return !cause->WasFoundIn(load.number); });
  return true;
}

std::wstring TLocationRegistry::ItemLine(std::wstring_view format, const std::wstring& itemName) const {
  return Format(format, itemName, MemberName());
}

void TLocationRegistry::EnableItem(const ItemRef& item) {
  TLocationStartup::EnableItem(item);
  SwitchItem(item, true);
}

void TLocationRegistry::DisableItem(const ItemRef& item) {
  TLocationStartup::DisableItem(item);
  SwitchItem(item, false);
}

void TLocationRegistry::SwitchItem(const ItemRef& item, bool enable) {
  if (!Owns(*item)) return;
  const ChangeGate::Scope change(Gate());
  const std::wstring name = item->Name();
  const auto line = [&] { return ItemLine(enable ? kEnableLine : kDisableLine, name); };
  RunLogged(
      [&] {
        if (!SwitchEntry(item, enable)) LogLine(line());
      },
      line);
}

bool TLocationRegistry::SwitchEntry(const ItemRef& item, bool enable) {
  ScopedLock listLock(Items().Lock());
  ScopedLock itemLock(item->Lock);
  if (!item->IsListed() || item->IsEnabled() == enable) return true;
  const bool recorded = DLLGlobals::UseBackupCheckpoints();
  const std::unique_ptr<EntryStore> store = Store(recorded);
  const RegistryValueAddress from = AddressOf(*item);
  const RegistryData source = ReadSource(*store, from);
  const bool twin = IsPlainTwin(*store, from, source);
  Switch plan = PlanSwitch(*item, source, enable);
  // A listed target may be gone from the registry, and then the source is all there is.
  plan.isListed = plan.isListed && store->Read(plan.to).has_value();

  const ScopedCheckpoint checkpoint(recorded, enable ? ChangeKind::kEnabling : ChangeKind::kDisabling,
                                    item->GivenText());
  if (plan.isListed) {
    if (!DeleteEntryAndTwin(*store, from)) return false;
    Items().Remove(*item);
    return true;
  }
  if (!MoveEntry(*store, {from, plan.to, std::move(plan.text), twin})) return false;
  Items().Relocate(*item, SharedText(plan.to.FullPath()), SharedValueAddress(plan.to), enable);
  return true;
}

TLocationRegistry::Switch TLocationRegistry::SameNameSwitch(const TStartupItem& item, RegistryValueAddress to,
                                                            std::wstring text) const {
  const ScopedLock lock(Items().Lock());
  const ItemRef there = Items().Find(LocationType(), to.FullPath());
  return {std::move(to), std::move(text), there != nullptr && there.get() != &item};
}

void TLocationRegistry::DeleteItem(const ItemRef& item) {
  TLocationStartup::DeleteItem(item);
  if (!Owns(*item)) return;
  const ChangeGate::Scope change(Gate());
  const std::wstring name = item->Name();
  const auto line = [&] { return ItemLine(kDeleteLine, name); };
  RunLogged(
      [&] {
        ScopedLock lock(Items().Lock());
        if (!item->IsListed()) return;
        const bool recorded = DLLGlobals::UseBackupCheckpoints();
        const ScopedCheckpoint checkpoint(recorded, ChangeKind::kDeleting, item->GivenText());
        if (DeleteEntryAndTwin(*Store(recorded), AddressOf(*item))) {
          Items().Remove(*item);
        } else {
          LogLine(line());
        }
      },
      line);
}

}  // namespace smh
