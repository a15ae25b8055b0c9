// The keys that a change reads values from again and again, open between the looks that decide.
//
// What stays open is the key that was found at the address first; one that is deleted meanwhile is looked for
// again, one that is renamed is not. For one thread and one change.
#pragma once

#include "infra/registry/full_value_path.h"
#include "infra/registry/registry_values.h"

#include <optional>
#include <vector>

namespace smh {

class ValueKeys {
 public:
  ValueKeys() = default;
  ValueKeys(const ValueKeys&) = delete;
  ValueKeys& operator=(const ValueKeys&) = delete;

  // The value as it stands now; none when it, or its key, does not exist. Raises EOSError when that cannot be
  // told: what may stand there must not be taken for nothing.
  std::optional<RegistryData> Query(const RegistryValueAddress& address);
  // What is read next is read at its address as that stands then.
  void Forget() noexcept { rows_.clear(); }

 private:
  // The key of the address, borrowed until the next call; null for a missing one. Raises as Query.
  HKEY Key(const RegistryValueAddress& address);

  struct Row {
    RegistryValueAddress address;
    ScopedKey key;
  };
  std::vector<Row> rows_;
};

}  // namespace smh
