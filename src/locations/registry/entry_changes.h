// How the changes of a registry location write, delete and move its entries: recorded by the backup service
// or plain, always confirmed by reading back, and never a source deleted before its target is confirmed.
#pragma once

#include "infra/registry_values.h"
#include "infra/uRegistryUtils.h"
#include "model/uStartupItem.h"

#include <optional>
#include <string>

namespace smh {

// Where an item's entry lies.
RegistryValueAddress AddressOf(const TStartupItem& item);

bool IsKeyWritable(HKEY root, const std::wstring& path, REGSAM view) noexcept;

// What an entry of a location is made of. Recorded changes fail silently; plain ones raise EOSError. Text is
// written as REG_SZ: the type is not kept, on purpose.
class EntryStore {
 public:
  explicit EntryStore(bool recorded) noexcept : recorded_(recorded) {}
  virtual ~EntryStore() = default;
  EntryStore(const EntryStore&) = delete;
  EntryStore& operator=(const EntryStore&) = delete;

  // The entry's data; empty for one that is not there. Raises EOSError when that cannot be told: what may
  // stand in a key without read rights must not be taken for nothing.
  virtual std::optional<RegistryData> Read(const RegistryValueAddress& address) const = 0;
  // An entry that is not there is no error.
  virtual void Delete(const RegistryValueAddress& address) const = 0;

  // Write and read back; false when something else stands there afterwards.
  bool WriteConfirmed(const RegistryValueAddress& address, const std::wstring& text) const;
  // Delete and look again; false when the entry is still there.
  bool DeleteConfirmed(const RegistryValueAddress& address) const;
  // Puts back data that was deleted or overwritten, to the byte. A recorded write that does not arrive is
  // followed by a plain one: no entry may be lost.
  bool RestoreConfirmed(const RegistryValueAddress& address, const RegistryData& data) const;

 protected:
  virtual void Write(bool recorded, const RegistryValueAddress& address, const RegistryData& data) const = 0;
  bool IsRecorded() const noexcept { return recorded_; }

 private:
  bool WriteData(bool recorded, const RegistryValueAddress& address, const RegistryData& data) const;

  const bool recorded_;
};

// Entries that are values.
class ValueStore final : public EntryStore {
 public:
  using EntryStore::EntryStore;
  std::optional<RegistryData> Read(const RegistryValueAddress& address) const override;
  void Delete(const RegistryValueAddress& address) const override;

 protected:
  void Write(bool recorded, const RegistryValueAddress& address, const RegistryData& data) const override;
};

// Entries that are subkeys; their data is the default value, of type REG_NONE when there is none. The address
// names the subkey itself as its key. Deleting takes the subkey with everything below it.
class SubkeyStore final : public EntryStore {
 public:
  using EntryStore::EntryStore;
  std::optional<RegistryData> Read(const RegistryValueAddress& address) const override;
  void Delete(const RegistryValueAddress& address) const override;

 protected:
  void Write(bool recorded, const RegistryValueAddress& address, const RegistryData& data) const override;
};

// The entry that a change starts from. Raises EOSError for a missing one.
RegistryData ReadSource(const EntryStore& store, const RegistryValueAddress& address);
// The same for a text: raises ERegistryException for one that is neither REG_SZ nor REG_EXPAND_SZ.
RegistryData ReadTextSource(const EntryStore& store, const RegistryValueAddress& address);

// "name", else "name (1)", "name (2)", ...: the first that `key` does not hold in the view, nor in the plain
// view too when `bothViews`. Raises EOSError for a key that may not be read.
std::wstring UniqueValueName(const RegistryValueAddress& wanted, bool bothViews);

// An entry of the 64-bit view is kept in step with the plain view, unless the plain view holds another entry
// under that name.
bool IsPlainTwin(const EntryStore& store, const RegistryValueAddress& source, const RegistryData& data);

struct EntryMove {
  RegistryValueAddress from;
  RegistryValueAddress to;
  // What is written at `to`.
  std::wstring text;
  // The plain view goes along.
  bool twin = false;
};

// Moves an entry. Answers whether it moved; when not (or when it raises) what stood at both ends stands there
// again.
bool MoveEntry(const EntryStore& store, const EntryMove& move);

// Deletes an entry, and its twin in the plain view when it has one. Answers whether it is gone from its own
// view; `complete` says whether everything went.
bool DeleteEntry(const EntryStore& store, const RegistryValueAddress& address, bool& complete);

}  // namespace smh
