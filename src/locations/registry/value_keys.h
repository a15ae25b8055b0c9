// The keys that a change reads values from again and again, open from the first reading to the change's end.
//
// For one thread and one change, milliseconds in all: what stays open that long is the key that was found at
// the address first. One that is deleted meanwhile is looked for again.
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
  // The key of the address, borrowed until the next call; null for a missing one. Raises as Query.
  HKEY Key(const RegistryValueAddress& address);

 private:
  struct Row {
    RegistryValueAddress address;
    ScopedKey key;
  };
  std::vector<Row> rows_;
};

}  // namespace smh
