#include "locations/registry/registry_location.h"

#include "infra/log/uStatisticsLog.h"
#include "infra/runtime/embedded_nul.h"
#include "infra/runtime/text.h"
#include "locations/registry/class_watch.h"
#include "locations/registry/key_opening.h"
#include "locations/registry/server_file.h"
#include "model/change_refused.h"
#include "model/reader_state.h"
#include "sysutil/command_line.h"
#include "sysutil/network_roots.h"
#include "sysutil/uFileUtils.h"
#include "sysutil/uRegEditUtils.h"
#include "sysutil/version/uWinVersionInfo.h"

#include <algorithm>

namespace smh {

namespace {

// Between two loads because of classes, which an installation changes without end.
constexpr ULONGLONG kClassesPauseMs = 10'000;

FileReachability ReachabilityOf(const SharedText& file) {
  if (IsFullPath(file) && ReachableStamp(file)) return kFileFound;
  return IsReachable(file) ? kFileMissing : kFileUnreachable;
}

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
      }()) {
  // Before the first load asks for one.
  if (row.family != LocationFamily::kRunKey) classesSeen_ = ClassChanges();
}

REGSAM TLocationRegistry::OwnView() {
  return WinVersionInfo::IsWow64() ? KEY_WOW64_64KEY : 0;
}

bool TLocationRegistry::IsChanged() {
  // A signal that comes while a change runs is kept for later.
  if (Gate().IsBusy()) return false;
  bool isChanged = Gate().TakeLoadDue();
  if (watch_.IsDue()) {
    watch_.Accept();
    isChanged = true;
  }
  return HaveClassesChanged() || isChanged;
}

bool TLocationRegistry::HaveClassesChanged() {
  if (!asksForClasses_) return false;
  const std::uint64_t changes = ClassChanges();
  const ULONGLONG now = GetTickCount64();
  if (changes == classesSeen_ || now < classesAgain_) return false;
  classesSeen_ = changes;
  classesAgain_ = now + kClassesPauseMs;
  return true;
}

void TLocationRegistry::ShowItemLocation(const TStartupItem& item) {
  const auto address = AddressOf(item);
  RegEditUtils::OpenRegEdit(address.viewBits, address.root, ValueToShow(address), address.key);
}

void TLocationRegistry::LoadItems(Look look) {
  const std::optional<Load> begun = BeginLoad(look);
  if (!begun) return;
  asksForClasses_ = false;
  RegistryLoad load{*begun};
  load.places = Places();
  const bool isCurrent =
      TakePlaces(load) && RemoveMissingItems(load, [&](TStartupItem& item) { return LookFor(load, item); });
  if (!isCurrent) {
    Gate().MarkLoadDue();
  } else if (OwnView() != 0 && load.unread == 0) {
    EndTwins(load);
  }
}

// All views of a key together, so that they are compared as they stand at one time.
bool TLocationRegistry::TakePlaces(RegistryLoad& load) {
  const auto together = static_cast<std::ptrdiff_t>(load.places.size() / (1 + keys_.side.size()));
  for (auto place = load.places.begin(); place != load.places.end(); place += together) {
    std::for_each(place, place + together, [&](Place& one) { ListPlace(load, one); });
    if (!std::all_of(place, place + together, [&](Place& one) { return TakePlace(load, one); })) return false;
  }
  return true;
}

std::vector<TLocationRegistry::Place> TLocationRegistry::Places() const {
  std::vector<Place> places;
  const auto add = [&](const std::wstring& path, bool isOwn) {
    for (const HKEY root : keys_.roots) places.push_back({root, path, OwnView(), isOwn});
    if (OwnView() == 0) return;
    for (const HKEY root : keys_.roots) places.push_back({root, path, 0, isOwn});
  };
  add(keys_.own, true);
  for (const std::wstring& path : keys_.side) add(path, false);
  for (Place& place : places) {
    if (place.view != OwnView()) place.main = &place - keys_.roots.size();
  }
  return places;
}

void TLocationRegistry::ListPlace(RegistryLoad& load, Place& place) {
  CheckTerminated();
  ScopedKey key = OpenRegistryKey(place.root, place.path, place.view | KEY_READ);
  place.isUnread = !key && CountUnread(load, GetLastError());
  if (!key) return;
  if (!EntriesAreKeys()) place.isProtected = !IsKeyWritable(place.root, place.path, place.view);
  place.listing =
      KeyListing(std::move(key), EntriesAreKeys() ? KeyListing::Of::kSubKeys : KeyListing::Of::kValues);
}

bool TLocationRegistry::TakePlace(RegistryLoad& load, Place& place) {
  const KeyListing& listing = place.listing;
  const bool asksMain = HasMainChanged(place);
  if (asksMain && place.main->listing.Key() == nullptr) ListPlace(load, *place.main);
  for (std::size_t i = 0; i < listing.Count(); ++i) {
    CheckTerminated();
    const std::wstring_view name = listing.Name(i);
    // Before the main view is asked: what stands there now may come to both. Nobody can be asked for a name
    // with a NUL; subkeys are asked for when they are read.
    const bool isAsked = !listing.IsCertain() && !HoldsNul(name) && (asksMain || !EntriesAreKeys());
    const std::optional<std::wstring> now = isAsked ? TextNow(place, name) : std::nullopt;
    if (asksMain && !AskFor(load, *place.main, name)) return false;
    if (isAsked && !now) continue;
    if (!ReadEntry(load, place, name, now ? std::wstring_view(*now) : listing.Text(i))) return false;
  }
  return true;
}

std::optional<std::wstring> TLocationRegistry::TextNow(const Place& place, std::wstring_view name) const {
  const HKEY key = place.listing.Key();
  if (EntriesAreKeys()) {
    const bool isGone =
        !OpenRegistryKey(key, std::wstring(name), place.view | KEY_READ) && IsMissingKey(GetLastError());
    return isGone ? std::nullopt : std::optional(std::wstring());
  }
  const std::optional<RegistryData> data = QueryRegistryValue(key, std::wstring(name));
  return data ? std::optional(data->Text()) : std::nullopt;
}

bool TLocationRegistry::AskFor(RegistryLoad& load, const Place& place, std::wstring_view name) {
  if (place.listing.Key() == nullptr) return true;
  if (EntriesAreKeys()) return ReadEntry(load, place, name, {});
  const std::optional<std::wstring> text = TextNow(place, name);
  return !text || ReadEntry(load, place, name, *text);
}

bool TLocationRegistry::LookFor(RegistryLoad& load, TStartupItem& item) {
  const RegistryValueAddress address = AddressOf(item);
  const std::wstring_view key = address.key;
  const std::size_t at = EntriesAreKeys() ? std::min(key.rfind(L'\\'), key.size()) : key.size();
  // As enumerated: the name of a key may hold "/" and ":".
  const std::wstring_view name =
      EntriesAreKeys() ? key.substr(std::min(at + 1, key.size())) : std::wstring_view(address.valueName);
  for (const Place& place : load.places) {
    if (place.view != address.viewBits || place.root != address.root) continue;
    if (!SameText(place.path, key.substr(0, at))) continue;
    if (!LookIn(load, place, item, name)) return false;
    const bool isMain = place.view != 0 && item.WasFoundIn(load.number);
    return !isMain || DropPlain(load, address);
  }
  return true;
}

bool TLocationRegistry::LookIn(RegistryLoad& load, const Place& place, TStartupItem& item,
                               std::wstring_view name) {
  const bool isUntold = HoldsNul(name) && !place.listing.IsCertain();
  // Nothing else may signal what it is.
  if (isUntold) Gate().MarkLoadDue();
  const unsigned unread = load.unread;
  if (!isUntold && !place.isUnread && !AskFor(load, place, name)) return false;
  if (isUntold || place.isUnread || load.unread != unread) KeepItem(item, load);
  return true;
}

bool TLocationRegistry::DropPlain(RegistryLoad& load, const RegistryValueAddress& main) {
  AssignFullValuePath(load.otherPath, 0, main.root, main.key, main.valueName);
  const ItemRef plain = FindItem(LocationType(), load.otherPath);
  if (plain == nullptr || !plain->WasFoundIn(load.number)) return true;
  // As the main one's twin it is seen by the next load.
  Gate().MarkLoadDue();
  return RemoveItem(*plain, load);
}

std::wstring TLocationRegistry::ServerOf(const std::wstring& identifier, RegistryLoad& load,
                                         const Place& place) {
  asksForClasses_ = true;
  std::optional<std::wstring> server = ServerFile(identifier, place.view);
  if (server) return std::move(*server);
  CountUnread(load, ERROR_NOT_READY);
  return {};
}

bool TLocationRegistry::CountUnread(RegistryLoad& load, DWORD error) noexcept {
  if (!MayOpenLater(error)) return false;
  ++load.unread;
  MarkIncomplete();
  return true;
}

bool TLocationRegistry::HasMainChanged(const Place& place) const {
  if (place.main == nullptr || place.listing.Count() == 0) return false;
  const KeyListing& main = place.main->listing;
  return main.Key() == nullptr
             ? static_cast<bool>(OpenRegistryKey(place.main->root, place.path, place.main->view | KEY_READ))
             : !main.IsStill();
}

ItemRef TLocationRegistry::ShownByMainView(RegistryLoad& load, const Place& place,
                                           const SeenEntry& seen) const {
  if (place.main == nullptr) return nullptr;
  AssignFullValuePath(load.otherPath, OwnView(), place.root, seen.key, seen.shownName);
  const ItemRef other = FindItem(LocationType(), load.otherPath);
  // One that could not be read may stay listed.
  const bool isShown = other != nullptr && (load.unread > 0 || other->WasFoundIn(load.number));
  return isShown ? other : nullptr;
}

// The file of a class may differ from view to view: there the text is all that counts for what is one entry.
void TLocationRegistry::MarkTwin(TStartupItem& main, unsigned load, const SeenEntry& seen) const {
  const bool isCommand = Row().family == LocationFamily::kRunKey;
  const std::wstring_view text = isCommand ? seen.command : seen.caption;
  const bool isSame = main.Get([&](const ItemState& state) {
    return SameText(isCommand ? state.details.Command : state.givenText, text);
  });
  std::int32_t file = TStartupItem::kTwinsFileIsSame;
  const auto hasFile = [&](const ItemState& state) { return SameText(state.details.Command, seen.command); };
  if (!isCommand && !main.Get(hasFile))
    file = ReachabilityOf(ResolveCommandToFile(std::wstring(seen.command).c_str()));
  main.MarkTwin(load, isSame ? kTwinSame : kTwinOther, isSame ? std::wstring_view() : text, file);
}

bool TLocationRegistry::TakeEntry(RegistryLoad& load, const Place& place, const SeenEntry& seen) {
  // Also one that is listed itself: the other has come to stand there since.
  if (const ItemRef main = ShownByMainView(load, place, seen)) {
    MarkTwin(*main, load.number, seen);
    return true;
  }
  AssignFullValuePath(load.path, place.view, place.root, seen.key, seen.shownName);
  if (const ItemRef own = FindItem(LocationType(), load.path)) {
    const bool isSame = own->Get([&](const ItemState& state) {
      return SameText(state.address.key, seen.key) && SameText(state.address.valueName, seen.valueName);
    });
    const bool isFound = own->WasFoundIn(load.number);
    if (isSame) return isFound || UpdateItem(*own, seen.command, seen.isProtected, load);
    if (isFound) {
      LogFormat(L"Value \"%s\" of key \"%s\" in location \"%s\" has the same path as another.",
                seen.shownName, seen.key, MemberName());
      return true;
    }
    // It has gone, or comes behind this one.
    if (!RemoveItem(*own, load)) return false;
  }
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
  auto target = std::make_unique<RegistryTarget>(entry.Store(), place.to, std::move(place.before),
                                                 std::move(place.data), std::move(found));
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
