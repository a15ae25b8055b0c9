// How the changes of a registry location write, delete and move its entries: as a whole or not at all, and
// never a source deleted before its target is confirmed.
//
// The changes are for a thread that has the location's gate, the item-list lock and, for recorded changes,
// its checkpoint; the questions are for any. What may not be read raises EOSError.
#pragma once

#include "locations/registry/entry_store.h"
#include "model/uStartupItem.h"

#include <string>

namespace smh {

// Where an item's entry lies; a copy, taken under the item's lock.
RegistryValueAddress AddressOf(const TStartupItem& item);

// Whether the key can be opened with all rights; false for a missing one. `root` may be an open key.
bool IsKeyWritable(HKEY root, const std::wstring& path, REGSAM view) noexcept;

// The entry that a change starts from. Raises EOSError for a missing one.
RegistryData ReadSource(const EntryStore& store, const RegistryValueAddress& address);
// The same for a text: raises ERegistryException for one that is neither REG_SZ nor REG_EXPAND_SZ.
RegistryData ReadTextSource(const EntryStore& store, const RegistryValueAddress& address);

// "name", else "name (1)", "name (2)", ...: the first that `key` does not hold in the view, nor in the plain
// view too when `bothViews`. Raises EOSError for a key that may not be read.
std::wstring UniqueValueName(const RegistryValueAddress& wanted, bool bothViews);

// An entry of the 64-bit view is kept in step with the plain view, unless the plain view holds another entry
// under that name. False for an entry of the plain view itself.
bool IsPlainTwin(const EntryStore& store, const RegistryValueAddress& source, const RegistryData& data);

// One entry's way to another place, in one view or both.
struct EntryMove {
  RegistryValueAddress from;
  RegistryValueAddress to;
  // What is written at `to`.
  std::wstring text;
  // The plain view goes along.
  bool twin = false;
};

// All answer whether it is done. When not, or when they raise, what stood at every place stands there again,
// as far as the registry takes it; a source that cannot be put back keeps what was written at the target, and
// that counts as done: no entry may be lost.
bool MoveEntry(const EntryStore& store, const EntryMove& move);
bool WriteEntry(const EntryStore& store, const RegistryValueAddress& address, const std::wstring& text);
// One view; or both, when the plain view holds its twin.
bool DeleteEntry(const EntryStore& store, const RegistryValueAddress& address);
bool DeleteEntryAndTwin(const EntryStore& store, const RegistryValueAddress& address);

}  // namespace smh
