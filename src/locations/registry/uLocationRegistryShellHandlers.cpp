#include "locations/registry/uLocationRegistryShellHandlers.h"

#include "infra/runtime/exceptions.h"
#include "infra/runtime/text.h"
#include "locations/registry/key_opening.h"
#include "locations/registry/server_file.h"

namespace smh {

namespace {

// A handler's key: the list that it stands in, and its name as enumerated, which may hold anything but "\".
struct HandlerPlace {
  std::wstring list;
  std::wstring name;
};

HandlerPlace Split(const std::wstring& key) {
  const std::size_t at = key.rfind(L'\\');
  if (at == std::wstring::npos) return {{}, key};
  return {key.substr(0, at), key.substr(at + 1)};
}

// A handler names its class by its key or by its default value; the other of the two is its name for people.
const std::wstring& IdentifierOf(const std::wstring& name, const std::wstring& data) {
  return IsClassIdentifier(name) ? name : data;
}

const std::wstring& CaptionOf(const std::wstring& name, const std::wstring& data) {
  return IsClassIdentifier(name) ? data : name;
}

}  // namespace

std::wstring_view TLocationRegistryShellHandlers::SideKeyName() const noexcept {
  return FileNamePart(KeyPath(false));
}

bool TLocationRegistryShellHandlers::ItemExists(const TStartupItem& item) {
  const auto address = AddressOf(item);
  return static_cast<bool>(OpenRegistryKey(address.root, address.key, address.viewBits | KEY_READ));
}

bool TLocationRegistryShellHandlers::ReadEntry(RegistryLoad& load, const Place& place,
                                               std::wstring_view subKey, std::wstring_view) {
  if (place.isOwn && SameText(subKey, SideKeyName())) return true;
  const std::wstring name(subKey);
  const bool isProtected = !IsKeyWritable(place.listing.Key(), name, place.view);
  const ScopedKey key = OpenRegistryKey(place.listing.Key(), name, place.view | KEY_READ);
  if (!key) {
    CountUnread(load, GetLastError());
    return true;
  }
  const std::wstring data = QueryRegistryText(key.Get(), {});
  const std::wstring server = ServerOf(IdentifierOf(name, data), load, place);
  if (server.empty()) return true;
  const std::wstring path = place.path + L'\\' + name;
  return TakeEntry(load, place, {path, data, data, CaptionOf(name, data), server, isProtected});
}

std::shared_ptr<const EntryStore> TLocationRegistryShellHandlers::Store(bool recorded) const {
  return std::make_shared<SubkeyStore>(recorded);
}

FoundEntry TLocationRegistryShellHandlers::ListAt(const RegistryValueAddress& address,
                                                  const RegistryData& data) const {
  const HandlerPlace place = Split(address.key);
  RegistryValueAddress shown = address;
  shown.valueName = data.Text();
  FoundEntry found;
  found.name = SharedText(shown.FullPath());
  found.caption = SharedText(CaptionOf(place.name, shown.valueName));
  found.command = SharedText(RequireServerFile(IdentifierOf(place.name, shown.valueName), address.viewBits));
  found.isEnabled = SameText(place.list, KeyPath(true));
  found.address = SharedValueAddress(shown);
  return found;
}

std::wstring TLocationRegistryShellHandlers::NameInPlace(const ItemState& listed) const {
  return Split(std::wstring(listed.address.key)).name;
}

std::unique_ptr<EntrySource> TLocationRegistryShellHandlers::OpenSource(const ItemState& listed,
                                                                        bool recorded) {
  RequireHandler(std::wstring(listed.address.key));
  return TLocationRegistry::OpenSource(listed, recorded);
}

TLocationRegistry::SwitchPlace TLocationRegistryShellHandlers::PlaceToSwitch(const RegistrySource& source,
                                                                             bool enable) const {
  RegistryValueAddress to = source.Address();
  to.key = std::wstring(KeyPath(enable)).append(L"\\").append(Split(to.key).name);
  RequireHandler(to.key);
  // Kept on purpose: only the default value is carried over.
  to.valueName = source.Data().Text();
  KeptEntry before = source.Store()->Keep(to);
  return {std::move(to), WrittenForm(source.Data()), std::move(before)};
}

void TLocationRegistryShellHandlers::RequireHandler(const std::wstring& key) const {
  const HandlerPlace place = Split(key);
  const bool isOwn = SameText(place.list, KeyPath(true));
  const bool isSideKey = isOwn && SameText(place.name, SideKeyName());
  if (place.name.empty() || isSideKey || (!isOwn && !SameText(place.list, KeyPath(false)))) {
    RaiseOSError(ERROR_INVALID_NAME);
  }
}

}  // namespace smh
