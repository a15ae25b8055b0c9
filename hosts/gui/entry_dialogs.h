// The dialogs that ask for what a change needs. For the window's thread: each is modal to `owner` and runs a
// message loop of its own. What the user typed comes without blanks at both ends; OK is greyed while a field
// is empty.
#pragma once

#include "hosts/gui/entry_rows.h"

#include <windows.h>

#include <functional>
#include <optional>
#include <string>

namespace smh {

// What IStartupItemCollection::AddItem takes.
struct NewEntry {
  std::int32_t location = sulRegistryUserRun;
  std::wstring name;
  std::wstring command;
};

// How a try ended, told on the window's thread, once, at any later time. None when it is done: the dialog
// closes. Else the dialog stays with what was typed, and shows the text, which is empty when the user thought
// better of it. False when the user has closed the dialog meanwhile and nobody was told.
using TryEnd = std::function<bool(const std::optional<std::wstring>& fault)>;
// Begins a try with what the dialog holds. The fields are locked until it has ended; the user may still close
// the dialog.
template <typename Input>
using TryWith = std::function<void(const Input& input, const TryEnd& end)>;

// Offers the locations that take new entries; `location` is chosen at first. Returns when the dialog is
// closed.
void AskNewEntry(HWND owner, std::int32_t location, const TryWith<NewEntry>& add);
// Asks for a command line; `name` is the prompt, `command` the text at first. Returns when the dialog is
// closed.
void AskCommand(HWND owner, const std::wstring& name, const std::wstring& command,
                const TryWith<std::wstring>& change);
// Asks for one of `targets`, of which there is one at least; none when the user cancels.
std::optional<std::int32_t> AskTarget(HWND owner, const LocationSet& targets, const std::wstring& prompt);
// A file to export to, by its full path; JSON by its extension, else CSV.
struct ExportTarget {
  std::wstring file;
  bool json;
};
// `title` says what goes there. The user has agreed to replace a file that exists; none when the user
// cancels.
std::optional<ExportTarget> AskExportTarget(HWND owner, const std::wstring& title);

// Whether entries can be added there, by the kind of location; the account may still lack the right.
bool TakesNewEntries(std::int32_t location);

}  // namespace smh
