#include "locations/registry/value_keys.h"

#include "infra/runtime/exceptions.h"
#include "locations/registry/key_opening.h"

#include <algorithm>

namespace smh {

std::vector<ValueKeys::Row>::iterator ValueKeys::Find(const RegistryValueAddress& address) noexcept {
  return std::ranges::find_if(rows_, [&](const Row& row) {
    return row.address.viewBits == address.viewBits && row.address.root == address.root &&
           row.address.key == address.key;
  });
}

HKEY ValueKeys::Key(const RegistryValueAddress& address) {
  if (const auto known = Find(address); known != rows_.end()) return known->key.get();
  if (recorded_ && Writable(address, false)) return rows_.back().key.get();
  ScopedKey key = OpenForReading(address.root, address.key, address.viewBits);
  // That there is none may change at any time.
  if (!key) return nullptr;
  Use(address, Share(std::move(key)));
  return rows_.back().key.get();
}

std::shared_ptr<RecordedKey> ValueKeys::Writable(const RegistryValueAddress& address, bool canCreate) {
  if (const auto known = Find(address); known != rows_.end() && known->recorded) return known->recorded;
  std::shared_ptr<RecordedKey> opened = RecordedKey::Open(address, canCreate);
  if (opened) Add(address, {opened, (*opened)->CurrentKey()}, opened);
  return opened;
}

void ValueKeys::Add(const RegistryValueAddress& address, SharedKey key,
                    std::shared_ptr<RecordedKey> recorded) {
  Forget(address);
  rows_.push_back({address, std::move(key), std::move(recorded)});
}

void ValueKeys::Forget(const RegistryValueAddress& address) noexcept {
  if (const auto known = Find(address); known != rows_.end()) rows_.erase(known);
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
    Forget(address);
  }
  return std::nullopt;
}

}  // namespace smh
