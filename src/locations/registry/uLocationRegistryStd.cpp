#include "locations/registry/uLocationRegistryStd.h"

#include "model/reader_control.h"

#include <algorithm>

namespace smh {

namespace {

// A zero inside a name would end it everywhere: it is shown as its symbol, and the entry is protected.
bool ReplaceZeros(std::wstring& name) {
  const bool found = name.find(L'\0') != std::wstring::npos;
  std::replace(name.begin(), name.end(), L'\0', L'\x2400');
  return found;
}

}  // namespace

TLocationRegistryStd::TLocationRegistryStd(const RunKeyClass& row)
    : TLocationRegistry(row.type, Abilities{},
                        {{RootHandle(row.root)},
                         row.keyPath,
                         {std::begin(row.disabledKeyPaths), std::end(row.disabledKeyPaths)}}) {}

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

bool TLocationRegistryStd::ReadKey(Load& load, const Place& place) {
  const ScopedKey key = OpenRegistryKey(place.root, place.path, place.view | KEY_READ);
  if (!key) return true;
  const bool isProtected = !IsKeyWritable(place.root, place.path, place.view);
  RegistryValueReader values(key.Get());
  while (values.Next()) {
    CheckTerminated();
    FoundEntry entry;
    entry.address = {place.view, place.root, place.path, std::wstring(values.Name())};
    entry.caption = values.Name();
    entry.isEnabled = place.isOwn;
    entry.isProtected = ReplaceZeros(entry.caption) || isProtected;
    if (values.IsText()) entry.command = values.Text();
    const std::wstring shownName = entry.caption;
    if (!TakeEntry(load, std::move(entry), shownName)) return false;
  }
  return true;
}

std::unique_ptr<EntryStore> TLocationRegistryStd::Store(bool recorded) const {
  return std::make_unique<ValueStore>(recorded);
}

TLocationRegistry::Switch TLocationRegistryStd::PlanSwitch(const TStartupItem& item,
                                                           const RegistryData& source, bool enable) {
  RegistryValueAddress to = AddressOf(item);
  if (!source.IsText()) RaiseInvalidDataType(to.valueName);
  to.key = KeyPath(enable);
  to.valueName = UniqueValueName(to, to.viewBits == KEY_WOW64_64KEY);
  return {std::move(to), source.Text()};
}

}  // namespace smh
