#include "locations/registry/value_keys.h"

#include "infra/runtime/exceptions.h"
#include "locations/registry/key_opening.h"

#include <algorithm>

namespace smh {

HKEY ValueKeys::Key(const RegistryValueAddress& address) {
  const auto known = std::ranges::find_if(rows_, [&](const Row& row) {
    return row.address.viewBits == address.viewBits && row.address.root == address.root &&
           row.address.key == address.key;
  });
  if (known != rows_.end()) return known->key.Get();
  ScopedKey key = OpenForReading(address.root, address.key, address.viewBits);
  // That there is none may change at any time.
  return key ? rows_.emplace_back(Row{address, std::move(key)}).key.Get() : nullptr;
}

std::optional<RegistryData> ValueKeys::Query(const RegistryValueAddress& address) {
  while (const HKEY key = Key(address)) {
    RegistryData data;
    const LSTATUS status = ReadRegistryValue(key, address.valueName, data);
    if (status == ERROR_SUCCESS) return data;
    if (status != ERROR_KEY_DELETED) {
      if (!IsMissingKey(static_cast<DWORD>(status))) CheckStatus(status);
      break;
    }
    std::erase_if(rows_, [key](const Row& row) { return row.key.Get() == key; });
  }
  return std::nullopt;
}

}  // namespace smh
