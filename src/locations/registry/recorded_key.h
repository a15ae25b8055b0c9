// A key of the registry as the backup service opens it, for changes that it records.
#pragma once

#include "infra/registry/full_value_path.h"
#include "locations/registry/uSafeguardRegistry.h"

#include <memory>

namespace smh {

// Has the root and the view of an address, with all rights, and for as long as it lives the address' key,
// once it is open. For one thread and one change.
class RecordedKey {
 public:
  // Raises what asking for the service raises.
  explicit RecordedKey(const RegistryValueAddress& address);
  ~RecordedKey() { registry_.CloseKey(); }
  RecordedKey(const RecordedKey&) = delete;
  RecordedKey& operator=(const RecordedKey&) = delete;

  // With the address' key open; null when it does not open with all rights. `canCreate`: a missing one is
  // made, which is recorded.
  static std::shared_ptr<RecordedKey> Open(const RegistryValueAddress& address, bool canCreate);

  TSgRegistryEx* operator->() noexcept { return &registry_; }
  // Whether others have deleted the open key.
  bool IsDeleted() const noexcept;

 private:
  TSgRegistryEx registry_;
};

}  // namespace smh
