// Entries of snapshots and of the list for tests that need no registry.
#pragma once

#include "hosts/common/snapshot.h"
#include "tests/hosts/common/test_items.h"

namespace smh::test {

inline const std::wstring kRunPath = L"Software\\Microsoft\\Windows\\CurrentVersion\\Run";
inline const std::wstring kOwnSide = kRunPath + L"\\Disabled (Startup Manager)";

inline SnapshotEntry User(const std::wstring& name, const std::wstring& command, bool enabled = true) {
  return {.location = sulRegistryUserRun,
          .root = L"HKEY_CURRENT_USER",
          .view = 64,
          .key = enabled ? kRunPath : kOwnSide,
          .valueName = name,
          .file = {},
          .command = command,
          .enabled = enabled,
          .disabledBy = enabled ? L"" : L"own"};
}

inline SnapshotEntry Shortcut(const std::wstring& file, const std::wstring& command) {
  SnapshotEntry entry;
  entry.location = sulFolderUser;
  entry.file = file;
  entry.command = command;
  entry.enabled = true;
  return entry;
}

inline ItemRecord Item(const SnapshotEntry& entry, std::uint32_t can = ~0u) {
  ItemRecord item =
      MakeItem(entry.location, entry.key, std::wstring(entry.Name()), entry.command, entry.enabled);
  item.root = entry.root;
  item.view = entry.view;
  item.key = entry.key;
  item.value = entry.valueName;
  item.disabledBy = entry.disabledBy;
  item.can = can;
  return item;
}

}  // namespace smh::test
