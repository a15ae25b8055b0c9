// The keys that a change reads its values through, open from one call to the next. What a change writes
// through is read through: what is looked at last is what is written.
//
// What stays open is the key that was found at the address when it was opened; one that is deleted meanwhile
// is looked for again, one that is renamed is not. For one thread and one change.
#pragma once

#include "infra/registry/full_value_path.h"
#include "infra/registry/registry_values.h"
#include "infra/runtime/handle.h"
#include "locations/registry/recorded_key.h"

#include <memory>
#include <optional>
#include <type_traits>
#include <vector>

namespace smh {

// An open key that whoever holds it last closes, as its maker has it.
using SharedKey = std::shared_ptr<std::remove_pointer_t<HKEY>>;
// Raises std::bad_alloc.
inline SharedKey Share(ScopedKey key) {
  return SharedKey(key.Release(), [](HKEY open) { RegCloseKey(open); });
}

class ValueKeys {
 public:
  // `recorded`: with all rights through the backup service, where it opens them; else for reading.
  explicit ValueKeys(bool recorded) noexcept : recorded_(recorded) {}
  ValueKeys(const ValueKeys&) = delete;
  ValueKeys& operator=(const ValueKeys&) = delete;

  // The value as it stands now; none when it, or its key, does not exist. Raises EOSError when that cannot be
  // told: what may stand there must not be taken for nothing.
  std::optional<RegistryData> Query(const RegistryValueAddress& address);
  // The key of the address, borrowed until the next call; null for a missing one. Raises as Query.
  HKEY Key(const RegistryValueAddress& address);
  // The same with all rights, through the service; null when it does not open so. `canCreate`: a missing one
  // is made.
  std::shared_ptr<RecordedKey> Writable(const RegistryValueAddress& address, bool canCreate);
  // Reads the values of the address' key through this one, which is open for reading too.
  void Use(const RegistryValueAddress& address, SharedKey key) { Add(address, std::move(key), nullptr); }
  // What is read next of the address' key, or of any, is read at its address as that stands then.
  void Forget(const RegistryValueAddress& address) noexcept;
  void ForgetAll() noexcept { rows_.clear(); }

 private:
  struct Row {
    RegistryValueAddress address;
    SharedKey key;
    std::shared_ptr<RecordedKey> recorded;
  };
  std::vector<Row>::iterator Find(const RegistryValueAddress& address) noexcept;
  void Add(const RegistryValueAddress& address, SharedKey key, std::shared_ptr<RecordedKey> recorded);

  const bool recorded_;
  std::vector<Row> rows_;
};

}  // namespace smh
