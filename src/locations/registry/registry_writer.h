// The single calls that change a registry entry: through the backup service, which records them, or plain.
// Directly before each a last look is taken, so that nothing is overwritten or deleted that another program
// has written meanwhile.
//
// For the thread of a change, in its checkpoint when it is recorded. Recorded calls fail silently, plain ones
// raise EOSError; both are confirmed by who calls. What the last look finds changed raises EChangeRefused.
#pragma once

#include "locations/registry/kept_entry.h"
#include "locations/registry/value_keys.h"
#include "model/last_look.h"

namespace smh {

class RegistryWriter {
 public:
  // What the looks read the values through is, from a call on, the key that it writes through. Outlives the
  // object.
  RegistryWriter(bool recorded, ValueKeys& keys) noexcept : recorded_(recorded), keys_(keys) {}

  bool IsRecorded() const noexcept { return recorded_; }

  // In a key that is made when it is missing.
  void SetValue(const RegistryValueAddress& address, const RegistryData& data, const LastLook& look) const;
  // Whether the deletion was answered as done; of what is missing nothing is deleted.
  bool DeleteValue(const RegistryValueAddress& address, const LastLook& look) const;
  // The key that the address names, which has no subkeys.
  bool DeleteKey(const RegistryValueAddress& address, const LastLook& look) const;

 private:
  // Through the service.
  void Put(const RegistryValueAddress& address, const RegistryData& data, const LastLook& look) const;
  bool Remove(const RegistryValueAddress& address, const LastLook& look) const;

  const bool recorded_;
  ValueKeys& keys_;
};

// Makes a piece that is missing what it was, plain and without a look: its key, with its rights where the
// system takes them, and its data. Raises EOSError.
void MakePiece(const KeptPiece& piece);

}  // namespace smh
