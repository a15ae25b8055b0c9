#include "hosts/common/item_place.h"

#include "core/contracts/location_table.h"
#include "infra/registry/full_value_path.h"

namespace smh {

namespace {

// The name of a value may hold backslashes; an entry's caption, when it is that name, tells where it begins.
void TakeWholeValueName(const std::wstring& caption, RegistryValueAddress& address) {
  const std::wstring path = address.key + address.valueName;
  if (!path.ends_with(L'\\' + caption)) return;
  address.key = path.substr(0, path.size() - caption.size());
  address.valueName = caption;
}

std::wstring PlainKey(std::wstring key) {
  if (key.ends_with(L'\\')) key.pop_back();
  if (key.starts_with(L'\\')) key.erase(0, 1);
  return key;
}

}  // namespace

std::vector<std::pair<std::wstring, std::wstring>> ItemPlace(const ItemRecord& item) {
  RegistryValueAddress address;
  ParseFullValuePath(item.name, address.viewBits, address.valueName, address.key, address.root);
  if (address.root == nullptr) return {{L"File", item.name}};
  TakeWholeValueName(item.caption, address);
  if (FamilyOf(LocationRowOf(item.location)).entriesAreKeys) address.valueName.clear();
  return {{L"Root", std::wstring(RootKeyName(address.root))},
          {L"View", address.viewBits == KEY_WOW64_64KEY ? L"64-bit" : L"32-bit"},
          {L"Key", PlainKey(address.key)},
          {L"Value", address.valueName.empty() ? L"(Default)" : address.valueName}};
}

}  // namespace smh
