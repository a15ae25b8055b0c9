// What a registry location's entries are made of: values, or subkeys with everything below them. How they are
// written, deleted and put back, always confirmed by reading back and never over what others have written.
#pragma once

#include "locations/registry/registry_writer.h"

namespace smh {

// Reading raises EOSError when it cannot be told what stands there, EChangeRefused where another program has
// been at work. For one change and its thread.
class EntryStore {
 public:
  // `recorded`: through the backup service, in the checkpoint of the thread.
  explicit EntryStore(bool recorded) noexcept : keys_(recorded), writer_(recorded, keys_) {}
  virtual ~EntryStore() = default;
  EntryStore(const EntryStore&) = delete;
  EntryStore& operator=(const EntryStore&) = delete;

  // The entry as a whole, to be compared and put back.
  virtual KeptEntry Keep(const RegistryValueAddress& address) const = 0;
  // The same, of what has come to lie at the address since.
  KeptEntry KeepAnew(const RegistryValueAddress& address) const;
  // The key that it lies in, or is; borrowed until the next call, null when there is none.
  HKEY KeyOf(const RegistryValueAddress& address) const { return keys_.Key(address); }

  // Writes the data over `before`, which must still stand there. False when it did not arrive without an
  // error.
  bool Write(const RegistryValueAddress& address, const RegistryData& data, const KeptEntry& before) const;
  // Deletes `kept`, which must still stand there, as `arrived` must hold; of what is gone nothing. False when
  // some of it is still there without an error. What cannot be deleted whole is not begun; `isBegun` is set
  // before the first call that deletes.
  bool Delete(const RegistryValueAddress& address, const KeptEntry& kept, const LastLook& arrived,
              bool& isBegun) const;
  // Makes what is missing of `kept`, all of it, whatever fails on the way, and leaves what others have
  // written there; whether nothing of it is missing then. Of what was begun to be deleted, theirs is not it.
  bool PutBack(const KeptEntry& kept, bool isBegun) const noexcept;
  // Takes written data back when they still stand there; whether `before` stands there then.
  bool TakeBack(const RegistryValueAddress& address, const RegistryData& data,
                const KeptEntry& before) const noexcept;

 protected:
  ValueKeys& Keys() const noexcept { return keys_; }
  // The value that data are written to, and what stands there when nothing but that has been made.
  virtual RegistryValueAddress ValueOf(const RegistryValueAddress& address) const = 0;
  virtual bool IsBare(const KeptEntry& kept) const noexcept = 0;

 private:
  bool StandsOrBare(const RegistryValueAddress& address, const KeptEntry& before) const;
  // Whether every deletion was answered as done.
  bool DeletePieces(const RegistryWriter& writer, const KeptEntry& kept, const LastLook& arrived,
                    bool& isBegun) const;

  mutable ValueKeys keys_;
  const RegistryWriter writer_;
};

// Entries that are values.
class ValueStore final : public EntryStore {
 public:
  using EntryStore::EntryStore;
  KeptEntry Keep(const RegistryValueAddress& address) const override { return KeepValue(address, Keys()); }

 protected:
  RegistryValueAddress ValueOf(const RegistryValueAddress& address) const override { return address; }
  bool IsBare(const KeptEntry& kept) const noexcept override { return kept.empty(); }
};

// Entries that are subkeys; their data is the default value. The address
// names the subkey itself as its key. Deleting takes the subkey with everything below it.
class SubkeyStore final : public EntryStore {
 public:
  using EntryStore::EntryStore;
  KeptEntry Keep(const RegistryValueAddress& address) const override { return KeepSubkey(address); }

 protected:
  RegistryValueAddress ValueOf(const RegistryValueAddress& address) const override;
  // A key is made before its default value is set.
  bool IsBare(const KeptEntry& kept) const noexcept override {
    return kept.empty() || (kept.size() == 1 && !kept.front().data);
  }
};

}  // namespace smh
