// Whose entries this process shows, and what it may do.
#pragma once

#include <windows.h>

#include <string>

namespace smh {

struct Account {
  std::wstring name;         // "MACHINE\user"
  std::wstring sessionUser;  // who is logged on to the session; empty when that is unknown
  bool elevated = false;

  // An administrator who runs the program in somebody else's session sees his own entries, not theirs.
  bool IsForeign() const noexcept;
};

// The libraries are loaded. Raises HostError.
Account CurrentAccount();

// Starts this program again with the rights of an administrator; false when the user declines.
bool RestartElevated(HWND window);

}  // namespace smh
