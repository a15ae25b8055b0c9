#include "locations/registry/uLocationRegistryShellExt.h"

#include "infra/runtime/text.h"
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

std::shared_ptr<const EntryStore> TLocationRegistryShellExt::Store(bool recorded) const {
  return std::make_shared<ValueStore>(recorded);
}

FoundEntry TLocationRegistryShellExt::ListAt(const RegistryValueAddress& address,
                                             const RegistryData& data) const {
  FoundEntry found;
  found.name = SharedText(address.FullPath());
  found.caption = SharedText(data.Text());
  found.command = SharedText(RequireServerFile(address.valueName, address.viewBits));
  found.isEnabled = SameText(address.key, KeyPath(true));
  found.address = SharedValueAddress(address);
  return found;
}

std::wstring TLocationRegistryShellExt::NameInPlace(const ItemState& listed) const {
  return std::wstring(listed.address.valueName);
}

TLocationRegistry::SwitchPlace TLocationRegistryShellExt::PlaceToSwitch(const RegistrySource& source,
                                                                        bool enable) const {
  RegistryValueAddress to = source.Address();
  to.key = KeyPath(enable);
  return {std::move(to), WrittenForm(source.Data())};
}

}  // namespace smh
