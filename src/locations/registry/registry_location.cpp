#include "locations/registry/registry_location.h"

#include "infra/log/uStatisticsLog.h"
#include "infra/runtime/catch_failure.h"
#include "infra/runtime/text.h"
#include "model/change_refused.h"
#include "model/reader_state.h"
#include "sysutil/uRegEditUtils.h"
#include "sysutil/version/uWinVersionInfo.h"

#include <algorithm>

namespace smh {

namespace {

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
  const auto address = AddressOf(item);
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
  // Once more when pruning can make room for entries that were passed over, and while others write.
  constexpr int kMostPasses = 4;
  bool again = true;
  bool isTorn = false;
  for (int pass = 0; pass < kMostPasses && again; ++pass) {
    const std::vector<KeyStamp> before = Stamps();
    const std::optional<Load> begun = BeginLoad();
    if (!begun) return;
    RegistryLoad load{*begun};
    const bool isCurrent = ReadPlaces(load);
    isTorn = isCurrent && Stamps() != before;
    // What it has not found may stand there all the same.
    if (isTorn) continue;
    if (!isCurrent || !Prune(load, again)) {
      Gate().MarkLoadDue();
      return;
    }
  }
  if (isTorn) Gate().MarkLoadDue();
}

std::vector<TLocationRegistry::Place> TLocationRegistry::Places() const {
  std::vector<Place> places;
  const auto add = [&](const std::wstring& path, bool isOwn) {
    for (const REGSAM view : {REGSAM(KEY_WOW64_64KEY), REGSAM(0)}) {
      if (view != 0 && OwnView() == 0) continue;
      for (const HKEY root : keys_.roots) places.push_back({root, path, view, isOwn});
    }
  };
  add(keys_.own, true);
  for (const std::wstring& path : keys_.side) add(path, false);
  return places;
}

bool TLocationRegistry::ReadPlaces(RegistryLoad& load) {
  for (const Place& place : Places()) {
    CheckTerminated();
    if (!ReadKey(load, place)) return false;
  }
  return true;
}

std::vector<TLocationRegistry::KeyStamp> TLocationRegistry::Stamps() const {
  std::vector<KeyStamp> stamps;
  for (const Place& place : Places()) {
    KeyStamp& stamp = stamps.emplace_back();
    const ScopedKey key = OpenRegistryKey(place.root, place.path, place.view | KEY_QUERY_VALUE);
    if (!key) continue;
    FILETIME written = {};
    RegQueryInfoKeyW(key.Get(), nullptr, nullptr, nullptr, &stamp.subKeys, nullptr, nullptr, &stamp.values,
                     nullptr, nullptr, nullptr, &written);
    stamp.written = (std::uint64_t(written.dwHighDateTime) << 32) | written.dwLowDateTime;
  }
  return stamps;
}

bool TLocationRegistry::IsShownByMainView(RegistryLoad& load, const Place& place, const SeenEntry& seen) {
  if (place.view == OwnView()) return false;
  AssignFullValuePath(load.otherPath, OwnView(), place.root, seen.key, seen.shownName);
  ItemRef other = FindItem(LocationType(), load.otherPath);
  if (other == nullptr) return false;
  // One that this load has found already stays.
  if (!other->WasFoundIn(load.number)) load.skipCauses.push_back(std::move(other));
  return true;
}

bool TLocationRegistry::TakeEntry(RegistryLoad& load, const Place& place, const SeenEntry& seen) {
  // Also one that is listed itself: the other has come to stand there since.
  if (IsShownByMainView(load, place, seen)) return true;
  AssignFullValuePath(load.path, place.view, place.root, seen.key, seen.shownName);
  ItemRef own = FindItem(LocationType(), load.path);
  if (own == nullptr) {
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

std::unique_ptr<EntrySource> TLocationRegistry::OpenSource(const ItemState& listed, bool recorded) {
  return RegistrySource::Read(Store(recorded), RegistryValueAddress(listed.address),
                              [this](const RegistryValueAddress& address, const RegistryData& data) {
                                return ListAt(address, data);
                              });
}

std::unique_ptr<EntryTarget> TLocationRegistry::PlanSwitch(EntrySource& source, bool enable, bool) {
  auto& entry = static_cast<RegistrySource&>(source);
  SwitchPlace place = PlaceToSwitch(entry, enable);
  FoundEntry found = ListAt(place.to, place.data);
  if (IsListedElsewhere(found.name, place.to)) RaiseNameTaken();
  auto target =
      std::make_unique<RegistryTarget>(entry.Store(), place.to, std::move(place.data), std::move(found));
  if (target->IsTaken()) RaiseNameTaken();
  if (entry.HasTwin() && !target->AddTwin()) entry.LeaveTwin();
  return target;
}

bool TLocationRegistry::IsListedElsewhere(std::wstring_view path, const RegistryValueAddress& address) const {
  const ItemRef item = FindItem(LocationType(), path);
  if (item == nullptr) return false;
  return item->Get([&](const ItemState& state) {
    return !SameText(state.address.key, address.key) || !SameText(state.address.valueName, address.valueName);
  });
}

}  // namespace smh
