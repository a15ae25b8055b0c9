// What a registry location's entries are made of: values, or subkeys with everything below them. Written and
// deleted through the backup service, which records it, or plain; always confirmed by reading back.
//
// Addresses name a view, a predefined key, a path below it and a value.
#pragma once

#include "infra/registry/registry_values.h"
#include "infra/registry/uRegistryUtils.h"

#include <optional>
#include <string>
#include <vector>

namespace smh {

// Empty for a key that does not exist. Raises EOSError for one that may not be read: what may stand there
// must not be taken for nothing.
ScopedKey OpenForReading(HKEY root, const std::wstring& path, REGSAM view);

// False, too, for a value whose key may not be read.
bool ValueExists(const RegistryValueAddress& address);

// One value of an entry, or a key without a default value when there is no data.
struct KeptValue {
  RegistryValueAddress address;
  std::optional<RegistryData> data;
  bool operator==(const KeptValue&) const = default;
};
// All that an entry holds, keys before what is below them; empty for one that is not there.
using KeptEntry = std::vector<KeptValue>;

// Recorded changes fail silently; plain ones raise EOSError. Text is written as REG_SZ: the type is not kept,
// on purpose. Reading raises EOSError when it cannot be told what stands there. Without state but the way of
// changing; for the thread of a change.
class EntryStore {
 public:
  // `recorded`: through the backup service, in the checkpoint of the thread.
  explicit EntryStore(bool recorded) noexcept : recorded_(recorded) {}
  virtual ~EntryStore() = default;
  EntryStore(const EntryStore&) = delete;
  EntryStore& operator=(const EntryStore&) = delete;

  // The entry's data; empty for one that is not there.
  virtual std::optional<RegistryData> Read(const RegistryValueAddress& address) const = 0;
  // The entry as a whole, to be put back later.
  virtual KeptEntry Keep(const RegistryValueAddress& address) const = 0;

  // Write and read back; false when something else stands there afterwards.
  bool WriteConfirmed(const RegistryValueAddress& address, const std::wstring& text) const;
  // Delete and look again; false when the entry is still there. An entry that is not there is no error.
  bool DeleteConfirmed(const RegistryValueAddress& address) const;
  // Makes the entry what it was, to the byte; nothing when there was none. A recorded change that does not
  // arrive is followed by a plain one: no entry may be lost.
  bool RestoreConfirmed(const RegistryValueAddress& address, const KeptEntry& kept) const;

 protected:
  // One change, recorded or plain, which the caller confirms.
  virtual void Write(bool recorded, const RegistryValueAddress& address, const RegistryData& data) const = 0;
  virtual void Delete(bool recorded, const RegistryValueAddress& address) const = 0;

 private:
  bool TryRestore(bool recorded, const RegistryValueAddress& address, const KeptEntry& kept) const;

  const bool recorded_;
};

// Entries that are values.
class ValueStore final : public EntryStore {
 public:
  using EntryStore::EntryStore;
  std::optional<RegistryData> Read(const RegistryValueAddress& address) const override;
  KeptEntry Keep(const RegistryValueAddress& address) const override;

 protected:
  void Write(bool recorded, const RegistryValueAddress& address, const RegistryData& data) const override;
  void Delete(bool recorded, const RegistryValueAddress& address) const override;
};

// Entries that are subkeys; their data is the default value, of type REG_NONE when there is none. The address
// names the subkey itself as its key. Deleting takes the subkey with everything below it. Put back are the
// keys and their values; their rights are those that the key above hands down.
class SubkeyStore final : public EntryStore {
 public:
  using EntryStore::EntryStore;
  std::optional<RegistryData> Read(const RegistryValueAddress& address) const override;
  KeptEntry Keep(const RegistryValueAddress& address) const override;

 protected:
  void Write(bool recorded, const RegistryValueAddress& address, const RegistryData& data) const override;
  void Delete(bool recorded, const RegistryValueAddress& address) const override;
};

}  // namespace smh
