// The states of values and keys: read for the journal, written back by an undo. Handles stay the caller's. No
// state of its own: any thread.
#pragma once

#include "siblings/guardkit/format/journal_steps.h"

#include <windows.h>

namespace smh {

// A missing value gives a state that does not exist; a key's state is its class, security and values, without
// subkeys. Both raise EOSError when the state cannot be told. Names may hold NULs, here and below.
ValueState ReadValueState(HKEY key, const std::wstring& name);
KeyState ReadKeyState(HKEY key);
std::vector<NamedValue> ReadValues(HKEY key);

// Win32 statuses; ERROR_INVALID_PARAMETER for a name beyond the system's limit of 16383 code units.
LSTATUS WriteValue(HKEY key, const std::wstring& name, const ValueState& value) noexcept;
LSTATUS RemoveValue(HKEY key, const std::wstring& name) noexcept;

// Gives a key its old owner, group and DACL, as far as this process may, see ApplySecurity. A Win32 status.
LSTATUS ApplyKeySecurity(HKEY key, const ByteVector& security) noexcept;

}  // namespace smh
