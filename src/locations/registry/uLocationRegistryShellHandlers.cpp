#include "locations/registry/uLocationRegistryShellHandlers.h"

#include "infra/runtime/exceptions.h"
#include "infra/runtime/text.h"
#include "locations/registry/server_file.h"
#include "model/reader_state.h"

namespace smh {

std::wstring_view TLocationRegistryShellHandlers::SideKeyName() const noexcept {
  return FileNamePart(KeyPath(false));
}

bool TLocationRegistryShellHandlers::ItemExists(const TStartupItem& item) {
  const RegistryValueAddress address = AddressOf(item);
  return static_cast<bool>(OpenRegistryKey(address.root, address.key, address.viewBits | KEY_READ));
}

bool TLocationRegistryShellHandlers::ReadKey(RegistryLoad& load, const Place& place) {
  const ScopedKey list = OpenRegistryKey(place.root, place.path, place.view | KEY_READ);
  if (!list) return true;
  for (const std::wstring& name : SubKeyNames(list.Get())) {
    CheckTerminated();
    if (place.isOwn && SameText(name, SideKeyName())) continue;
    if (!ReadHandler(load, place, list.Get(), name)) return false;
  }
  return true;
}

bool TLocationRegistryShellHandlers::ReadHandler(RegistryLoad& load, const Place& place, HKEY list,
                                                 const std::wstring& name) {
  const bool isProtected = !IsKeyWritable(list, name, place.view);
  const ScopedKey key = OpenRegistryKey(list, name, place.view | KEY_READ);
  if (!key) return true;
  const std::wstring data = QueryRegistryText(key.Get(), {});
  const bool isNamedByClass = IsClassIdentifier(name);
  const std::wstring server = ServerFile(isNamedByClass ? name : data, place.view);
  if (server.empty()) return true;
  const std::wstring path = place.path + L'\\' + name;
  return TakeEntry(load, place, {path, data, data, isNamedByClass ? data : name, server, isProtected});
}

std::unique_ptr<EntryStore> TLocationRegistryShellHandlers::Store(bool recorded) const {
  return std::make_unique<SubkeyStore>(recorded);
}

TLocationRegistry::Switch TLocationRegistryShellHandlers::PlanSwitch(const TStartupItem& item,
                                                                     const RegistryData& source,
                                                                     bool enable) {
  RegistryValueAddress to = AddressOf(item);
  // Among the enabled handlers it would be the side key itself.
  if (enable && SameText(FileNamePart(to.key), SideKeyName())) RaiseOSError(ERROR_INVALID_NAME);
  to.key = KeyPath(enable) + L'\\' + std::wstring(FileNamePart(to.key));
  // Kept on purpose: only the default value is carried over.
  to.valueName = source.Text();
  return SameNameSwitch(item, to, to.valueName);
}

}  // namespace smh
