#include "locations/registry/uLocationRegistryStd.h"

#include "infra/runtime/embedded_nul.h"
#include "model/reader_state.h"

#include <algorithm>

namespace smh {

namespace {

// A zero inside a name would end it everywhere: it is shown as its symbol.
std::wstring WithSymbolsForZeros(std::wstring_view name) {
  std::wstring shown(name);
  std::ranges::replace(shown, L'\0', L'\x2400');
  return shown;
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

bool TLocationRegistryStd::ReadKey(RegistryLoad& load, const Place& place) {
  const ScopedKey key = OpenRegistryKey(place.root, place.path, place.view | KEY_READ);
  if (!key) return true;
  const bool isProtected = !IsKeyWritable(place.root, place.path, place.view);
  RegistryValueReader values(key.Get());
  while (values.Next()) {
    CheckTerminated();
    const std::wstring_view name = values.Name();
    const bool hasZero = HoldsNul(name);
    const std::wstring symbols = hasZero ? WithSymbolsForZeros(name) : std::wstring();
    const std::wstring_view shown = hasZero ? std::wstring_view(symbols) : name;
    const SeenEntry seen{place.path, name, shown, shown, values.Text(), hasZero || isProtected};
    if (!TakeEntry(load, place, seen)) return false;
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
