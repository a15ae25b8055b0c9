// Task Manager's switches as they stand in the registry, and whose they are; docs/windows.md describes their
// lists. Any thread; no lock.
#pragma once

#include "hosts/common/field.h"
#include "hosts/common/item_record.h"
#include "infra/registry/registry_values.h"

#include <windows.h>

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace smh {

// One value of a list. Texts of the entry are empty for an orphan: a switch that no entry of its name in the
// list's location has, enabled or disabled.
struct SwitchRecord {
  std::int32_t location = sulNone;  // whose entries the list switches
  HKEY root = nullptr;
  std::wstring list;        // "Run", "Run32", "StartupFolder"
  std::wstring name;        // may hold NULs
  RegistryData data;        // as it stood
  std::optional<bool> off;  // none for data in no known form
  FILETIME since = {};      // UTC; 0 when it is on, or does not say
  bool isOrphan = true;
  std::wstring id;
  std::wstring caption;
};

// All switches, each with its entry of `items`, which are those of all locations. Raises HostError for a list
// that cannot be read.
std::vector<SwitchRecord> ReadSwitches(std::span<const ItemRecord> items);
// All columns in the order of output; valid for ever.
std::span<const Field<SwitchRecord>> SwitchFields() noexcept;
// "Inkwell" in the list Run of HKEY_CURRENT_USER. Not yet printable.
std::wstring Describe(const SwitchRecord& record);

// Deletes a switch that still stands as it was read and still belongs to nobody; recorded for undo with
// `recorded`, as a part of the action that is open. Answers why it was not deleted, the end of a sentence;
// empty when it was. Raises HostError when guardkit cannot be loaded.
std::wstring DeleteSwitch(const SwitchRecord& record, bool recorded);

}  // namespace smh
