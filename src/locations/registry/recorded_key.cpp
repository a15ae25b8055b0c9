#include "locations/registry/recorded_key.h"

#include "core/contracts/uDllGlobals.h"

namespace smh {

RecordedKey::RecordedKey(const RegistryValueAddress& address) : registry_(&DLLGlobals::Safeguard()) {
  registry_.SetRootKey(address.root);
  registry_.SetAccess(address.viewBits | KEY_ALL_ACCESS);
}

std::shared_ptr<RecordedKey> RecordedKey::Open(const RegistryValueAddress& address, bool canCreate) {
  auto key = std::make_shared<RecordedKey>(address);
  return key->registry_.OpenKey(address.key, canCreate) ? key : nullptr;
}

bool RecordedKey::IsDeleted() const noexcept {
  return RegQueryInfoKeyW(registry_.CurrentKey(), nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                          nullptr, nullptr, nullptr, nullptr, nullptr) == ERROR_KEY_DELETED;
}

}  // namespace smh
