#include "locations/registry/uLocationRegistryShellExt.h"

#include "locations/registry/server_file.h"
#include "model/reader_state.h"

namespace smh {

bool TLocationRegistryShellExt::ItemExists(const TStartupItem& item) {
  return ValueExists(AddressOf(item));
}

bool TLocationRegistryShellExt::ReadKey(RegistryLoad& load, const Place& place) {
  const ScopedKey key = OpenRegistryKey(place.root, place.path, place.view | KEY_READ);
  if (!key) return true;
  // A search hook needs no description.
  const bool listsWithoutDescription = Row().family == LocationFamily::kSearchHooks;
  const bool isProtected = !IsKeyWritable(place.root, place.path, place.view);
  RegistryValueReader values(key.Get());
  while (values.Next()) {
    CheckTerminated();
    const std::wstring_view description = values.Text();
    if (description.empty() && !listsWithoutDescription) continue;
    const std::wstring name(values.Name());
    const std::wstring server = ServerFile(name, place.view);
    if (server.empty()) continue;
    if (!TakeEntry(load, place, {place.path, name, name, description, server, isProtected})) return false;
  }
  return true;
}

std::unique_ptr<EntryStore> TLocationRegistryShellExt::Store(bool recorded) const {
  return std::make_unique<ValueStore>(recorded);
}

TLocationRegistry::Switch TLocationRegistryShellExt::PlanSwitch(const TStartupItem& item, const RegistryData&,
                                                                bool enable) {
  RegistryValueAddress to = AddressOf(item);
  to.key = KeyPath(enable);
  // The description read at load, not the caption that people see.
  return SameNameSwitch(item, std::move(to), std::wstring(item.GivenText()));
}

}  // namespace smh
