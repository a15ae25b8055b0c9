#include "locations/registry/uLocationRegistryShellExt.h"

#include "infra/runtime/text.h"
#include "locations/registry/server_file.h"

namespace smh {

bool TLocationRegistryShellExt::ItemExists(const TStartupItem& item) {
  return ValueExists(AddressOf(item));
}

bool TLocationRegistryShellExt::ReadEntry(RegistryLoad& load, const Place& place, std::wstring_view name,
                                          std::wstring_view text) {
  // A search hook needs no description.
  if (text.empty() && Row().family != LocationFamily::kSearchHooks) return true;
  const std::wstring server = ServerOf(std::wstring(name), load, place);
  if (server.empty()) return true;
  return TakeEntry(load, place, {place.path, name, name, text, server, place.isProtected});
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
  KeptEntry before = source.Store()->Keep(to);
  return {std::move(to), WrittenForm(source.Data()), std::move(before)};
}

}  // namespace smh
