#include "locations/registry/uLocationRegistryStd.h"

#include "infra/runtime/embedded_nul.h"
#include "infra/runtime/exceptions.h"
#include "infra/runtime/format.h"
#include "infra/runtime/text.h"
#include "locations/registry/key_opening.h"
#include "model/change_refused.h"

#include <algorithm>

namespace smh {

namespace {

// Of a value's name, in code units.
constexpr std::size_t kLongestName = 16'383;

// A NUL inside a name would end it everywhere: it is shown as its symbol.
std::wstring WithSymbolsForNuls(std::wstring_view name) {
  std::wstring shown(name);
  std::ranges::replace(shown, L'\0', L'\x2400');
  return shown;
}

// As its key has it: a name in other letters is the same name.
std::wstring SpelledName(const RegistryValueAddress& address) {
  const ScopedKey key = OpenForReading(address.root, address.key, address.viewBits);
  if (!key) return address.valueName;
  RegistryValueReader values(key.Get());
  while (values.Next()) {
    if (SameText(values.Name(), address.valueName)) return std::wstring(values.Name());
  }
  return address.valueName;
}

void RequireShortName(const std::wstring& name) {
  if (name.size() > kLongestName) RaiseTooLong(L"name");
}

}  // namespace

bool TLocationRegistryStd::ItemExists(const TStartupItem& item) {
  return ValueExists(AddressOf(item));
}

bool TLocationRegistryStd::CanAcceptItem(const TStartupItem& item) {
  if (!TLocationStartup::CanAcceptItem(item)) return false;
  if (item.Get([](const ItemState& state) { return state.details.FileFound; })) return true;
  switch (item.Location()) {
    case sulRegistryUserRun:
    case sulRegistryUserRunOnce:
    case sulRegistryCommonRun:
    case sulRegistryCommonRunOnce:
      return true;
    default:
      return false;
  }
}

bool TLocationRegistryStd::ReadEntry(RegistryLoad& load, const Place& place, std::wstring_view name,
                                     std::wstring_view text) {
  const bool hasNul = HoldsNul(name);
  const std::wstring symbols = hasNul ? WithSymbolsForNuls(name) : std::wstring();
  const std::wstring_view shown = hasNul ? std::wstring_view(symbols) : name;
  return TakeEntry(load, place, {place.path, name, shown, shown, text, hasNul || place.isProtected});
}

std::shared_ptr<const EntryStore> TLocationRegistryStd::Store(bool recorded) const {
  return std::make_shared<ValueStore>(recorded);
}

FoundEntry TLocationRegistryStd::ListAt(const RegistryValueAddress& address, const RegistryData& data) const {
  FoundEntry found;
  found.name = SharedText(address.FullPath());
  found.caption = SharedText(address.valueName);
  found.command = SharedText(data.Text());
  found.isEnabled = SameText(address.key, KeyPath(true));
  found.address = SharedValueAddress(address);
  return found;
}

std::wstring TLocationRegistryStd::NameInPlace(const ItemState& listed) const {
  return std::wstring(listed.address.valueName);
}

// "name", else "name (1)", "name (2)", ...: the first that the key does not hold, and under whose path
// nothing is listed; value names may hold "\".
std::wstring TLocationRegistryStd::FreeName(const EntryStore& store, const RegistryValueAddress& wanted,
                                            bool bothViews) const {
  const bool asksPlain = bothViews && !IsOneInBothViews(wanted.root, wanted.key);
  RegistryValueAddress place = wanted;
  const auto isTakenIn = [&](REGSAM view) {
    return !store.Keep({view, place.root, place.key, place.valueName}).empty();
  };
  for (int number = 1;; ++number) {
    RequireShortName(place.valueName);
    const bool isTaken = isTakenIn(wanted.viewBits) || (asksPlain && isTakenIn(0)) ||
                         IsListedElsewhere(place.FullPath(), place);
    if (!isTaken) return place.valueName;
    place.valueName = Format(L"%s (%d)", wanted.valueName, number);
  }
}

TLocationRegistry::SwitchPlace TLocationRegistryStd::PlaceToSwitch(const RegistrySource& source,
                                                                   bool enable) const {
  const std::wstring command = source.Command();
  RegistryValueAddress to = source.Address();
  to.key = KeyPath(enable);
  to.valueName = FreeName(*source.Store(), to, to.viewBits == KEY_WOW64_64KEY);
  return {std::move(to), StringData(command), {}};
}

std::unique_ptr<EntryTarget> TLocationRegistryStd::PlanAdd(const std::wstring& name,
                                                           const std::wstring& command, bool recorded) {
  RequireShortName(name);
  RegistryValueAddress address{OwnView(), FirstRoot(), KeyPath(true), name};
  const std::shared_ptr<const EntryStore> store = Store(recorded);
  KeptEntry before = store->Keep(address);
  if (!before.empty()) {
    address.valueName = SpelledName(address);
    before = store->Keep(address);
  }
  if (const std::optional<RegistryData> present = DataOf(before)) {
    FoundEntry found = ListAt(address, *present);
    found.isProtected = !IsKeyWritable(address.root, address.key, address.viewBits);
    return std::make_unique<RegistryTarget>(store, address, std::move(before), WrittenForm(*present),
                                            std::move(found));
  }
  if (IsListedElsewhere(address.FullPath(), address)) RaiseNameTaken();
  return std::make_unique<RegistryTarget>(store, address, std::move(before), StringData(command),
                                          ListAt(address, StringData(command)));
}

std::unique_ptr<EntryTarget> TLocationRegistryStd::PlanInsert(EntrySource& source, const ItemState& entry,
                                                              bool recorded) {
  const std::wstring command = source.Command();
  const ItemDetails& details = entry.details;
  RegistryValueAddress address{OwnView(), FirstRoot(), KeyPath(entry.isEnabled),
                               std::wstring(details.EntryName.empty() ? entry.givenText : details.EntryName)};
  const std::shared_ptr<const EntryStore> store = Store(recorded);
  address.valueName = FreeName(*store, address, false);
  FoundEntry found = ListAt(address, StringData(command));
  // Nothing stands there: what comes to stand there from now on is somebody else's.
  return std::make_unique<RegistryTarget>(store, address, KeptEntry(), StringData(command), std::move(found));
}

std::unique_ptr<EntryTarget> TLocationRegistryStd::PlanCommand(EntrySource& source,
                                                               const std::wstring& command, bool) {
  const auto& entry = static_cast<RegistrySource&>(source);
  return std::make_unique<RegistryTarget>(entry.Store(), entry.Address(), entry.Kept(), StringData(command),
                                          ListAt(entry.Address(), StringData(command)));
}

}  // namespace smh
