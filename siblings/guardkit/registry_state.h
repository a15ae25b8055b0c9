// The states of values and keys: read for the journal, written back by an undo.
#pragma once

#include "siblings/guardkit/format/journal_steps.h"

#include <windows.h>

namespace smh {

// Both raise EOSError when the state cannot be told.
ValueState ReadValueState(HKEY key, const std::wstring& name);
KeyState ReadKeyState(HKEY key);

// Win32 statuses. Names may hold zero characters.
LSTATUS WriteValue(HKEY key, const std::wstring& name, const ValueState& value) noexcept;
LSTATUS RemoveValue(HKEY key, const std::wstring& name) noexcept;

// Gives a key its old owner, group and DACL, as far as this process may: an owner that it must not name stays
// as it is. A status.
LSTATUS ApplyKeySecurity(HKEY key, const ByteVector& security) noexcept;

}  // namespace smh
