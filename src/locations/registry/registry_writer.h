// The single calls that change a registry entry: through the backup service, which records them, or plain.
// Directly before each a last look is taken, so that nothing is overwritten or deleted that another program
// has written meanwhile.
//
// For the thread of a change, in its checkpoint when it is recorded. Recorded calls fail silently, plain ones
// raise EOSError; both are confirmed by who calls. What the last look finds changed raises EChangeRefused.
#pragma once

#include "locations/registry/kept_entry.h"
#include "model/last_look.h"

namespace smh {

class RegistryWriter {
 public:
  explicit RegistryWriter(bool recorded) noexcept : recorded_(recorded) {}

  bool IsRecorded() const noexcept { return recorded_; }

  // In a key that is made when it is missing.
  void SetValue(const RegistryValueAddress& address, const RegistryData& data, const LastLook& look) const;
  // Whether the deletion was answered as done; of what is missing nothing is deleted.
  bool DeleteValue(const RegistryValueAddress& address, const LastLook& look) const;
  // The key that the address names, which has no subkeys.
  bool DeleteKey(const RegistryValueAddress& address, const LastLook& look) const;

 private:
  const bool recorded_;
};

// Makes a piece that is missing what it was, plain and without a look: its key, with its rights where the
// system takes them, and its data. Raises EOSError.
void MakePiece(const KeptPiece& piece);

}  // namespace smh
