// The dialogs that ask for what a change needs. For the window's thread: each is modal to `owner` and runs a
// message loop of its own; none when the user cancels. What the user typed comes without blanks at both ends;
// OK is greyed while a field is empty.
#pragma once

#include "hosts/gui/entry_rows.h"

#include <windows.h>

#include <optional>
#include <string>

namespace smh {

// What IStartupItemCollection::AddItem takes.
struct NewEntry {
  std::int32_t location = sulRegistryUserRun;
  std::wstring name;
  std::wstring command;
};

// Offers the locations that take new entries; `location` is chosen at first.
std::optional<NewEntry> AskNewEntry(HWND owner, std::int32_t location);
// Asks for one of `targets`, of which there is one at least.
std::optional<std::int32_t> AskTarget(HWND owner, const LocationSet& targets, const std::wstring& prompt);
// Asks for a command line; `name` is the prompt, `command` the text at first.
std::optional<std::wstring> AskCommand(HWND owner, const std::wstring& name, const std::wstring& command);
// A file to export to, by its full path; JSON by its extension, else CSV.
struct ExportTarget {
  std::wstring file;
  bool json;
};
// The user has agreed to replace a file that exists.
std::optional<ExportTarget> AskExportTarget(HWND owner);

// Whether entries can be added there, by the kind of location; the account may still lack the right.
bool TakesNewEntries(std::int32_t location);

}  // namespace smh
