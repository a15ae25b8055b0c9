// Writes and deletes of registry values as the changes of a location make them: recorded by the backup
// service or plain, always confirmed by reading back, and never a source deleted before its target is
// confirmed.
#pragma once

#include "infra/registry_values.h"
#include "infra/uRegistryUtils.h"
#include "model/uStartupItem.h"

#include <optional>
#include <string>

namespace smh {

// Where an item's value lies.
RegistryValueAddress AddressOf(const TStartupItem& item);

// Empty for a value, or a key, that is not there. Raises EOSError when that cannot be told: what may stand in
// a key without read rights must not be taken for nothing.
std::optional<RegistryData> ReadValue(const RegistryValueAddress& address);
bool IsKeyWritable(HKEY root, const std::wstring& path, REGSAM view) noexcept;
// The value that a change starts from. Raises EOSError for a missing one and ERegistryException for
// one that is neither REG_SZ nor REG_EXPAND_SZ.
RegistryData ReadSource(const RegistryValueAddress& address);

// Recorded calls fail silently; plain ones raise EOSError. Both write text as REG_SZ: the type is not kept,
// on purpose.
class ValueWriter {
 public:
  explicit ValueWriter(bool recorded) noexcept : recorded_(recorded) {}

  // A missing key or value is no error.
  void Delete(const RegistryValueAddress& address) const;

  // Write and read back; false when something else stands there afterwards.
  bool WriteConfirmed(const RegistryValueAddress& address, const std::wstring& text) const;
  // Delete and look again; false when the value is still there.
  bool DeleteConfirmed(const RegistryValueAddress& address) const;
  // Puts back a value that was deleted, to the byte; REG_SZ and REG_EXPAND_SZ only. A recorded write that
  // does not arrive is followed by a plain one: no entry may be lost.
  bool RestoreConfirmed(const RegistryValueAddress& address, const RegistryData& data) const;

 private:
  bool WriteData(const RegistryValueAddress& address, const RegistryData& data) const;

  const bool recorded_;
};

// "name", else "name (1)", "name (2)", ...: the first that `key` does not hold in the view, nor in the plain
// view too when `bothViews`. Raises EOSError for a key that may not be read.
std::wstring UniqueValueName(const RegistryValueAddress& wanted, bool bothViews);

// A value of the 64-bit view is kept in step with the plain view, unless the plain view holds another entry
// under that name.
bool IsPlainTwin(const RegistryValueAddress& source, const RegistryData& data);

// Moves the value `from` to `to` in its view, and in the plain view too when `twin`. Answers whether it
// moved; when not (or when it raises) the targets are gone and the sources are back.
bool MoveValue(const ValueWriter& writer, const RegistryValueAddress& from, const RegistryValueAddress& to,
               bool twin);

}  // namespace smh
