// What a registry entry holds, read once to be compared and put back later: a value, or a subkey with
// everything below it.
//
// Addresses name a view, a predefined key, a path below it and a value. For any thread; reading raises
// EOSError when it cannot be told what stands there.
#pragma once

#include "infra/registry/full_value_path.h"
#include "infra/registry/registry_values.h"
#include "locations/registry/value_keys.h"

#include <optional>
#include <string>
#include <vector>

namespace smh {

// False, too, for a value whose key may not be read.
bool ValueExists(const RegistryValueAddress& address);

// One value of an entry, or one key with its default value, if it has one.
struct KeptPiece {
  RegistryValueAddress address;
  bool isKey = false;
  std::optional<RegistryData> data;
  // Of a key, where it can be read: its self-relative DACL. Not compared: rights are no part of an entry.
  std::vector<std::byte> rights{};

  bool operator==(const KeptPiece& other) const {
    return isKey == other.isKey && address == other.address && data == other.data;
  }
};
// All that an entry holds, keys before what is below them; empty for one that is not there.
using KeptEntry = std::vector<KeptPiece>;

// The entry's own data: the value's, or the default value's, of type REG_NONE when the key has none. None for
// an entry that is not there.
std::optional<RegistryData> DataOf(const KeptEntry& kept);

// Raises EOSError (ERROR_NOT_SUPPORTED) for a name that the system's calls cannot carry.
KeptEntry KeepValue(const RegistryValueAddress& address, ValueKeys& keys);
// Links below it are left out: what they lead to is somebody else's. Raises EOSError (ERROR_NOT_SUPPORTED)
// for a key that is one: nothing may be read or written through it.
KeptEntry KeepSubkey(const RegistryValueAddress& address);

// Whether the piece is there, whatever it holds.
bool Exists(const KeptPiece& piece, ValueKeys& keys);
// Whether the piece is what it was.
bool Stands(const KeptPiece& piece, ValueKeys& keys);
// The same, and, of a key, nothing else is in it.
bool StandsAlone(const KeptPiece& piece, ValueKeys& keys);

// Whether every piece of a key could be deleted now, one after the other: by its rights, its name and what it
// is; a single value is asked for by deleting it. ERROR_NOT_SUPPORTED for a link or a name that the system's
// calls cannot carry, else what opening answers.
LSTATUS CheckDeletable(const KeptEntry& kept);

}  // namespace smh
