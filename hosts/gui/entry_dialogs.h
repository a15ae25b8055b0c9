// The dialogs that ask for what a change needs.
#pragma once

#include "hosts/gui/entry_rows.h"

#include <windows.h>

#include <optional>
#include <string>

namespace smh {

struct NewEntry {
  std::int32_t location = sulRegistryUserRun;
  std::wstring name;
  std::wstring command;
};

// Each is modal; none when the user cancels.
std::optional<NewEntry> AskNewEntry(HWND owner, std::int32_t location);
std::optional<std::int32_t> AskTarget(HWND owner, const LocationSet& targets, const std::wstring& prompt);
std::optional<std::wstring> AskCommand(HWND owner, const std::wstring& name, const std::wstring& command);
// A file to export to; the second type is JSON.
struct ExportTarget {
  std::wstring file;
  bool json;
};
std::optional<ExportTarget> AskExportTarget(HWND owner);

// Whether entries can be added there.
bool TakesNewEntries(std::int32_t location);

}  // namespace smh
