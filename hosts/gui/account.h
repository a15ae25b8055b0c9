// Whose entries this process shows, and what it may do.
#pragma once

#include <windows.h>

#include <string>

namespace smh {

// The account of this process and the one of its session.
struct Account {
  std::wstring name;         // "MACHINE\user"
  std::wstring sessionUser;  // who is logged on to the session; empty when that is unknown
  bool elevated = false;

  // An administrator who runs the program in somebody else's session sees his own entries, not theirs. False
  // when either name is unknown; without a domain on both sides only the users are compared.
  bool IsForeign() const noexcept;
};

// Asks basekit.dll, which has to be loaded by now, and the session. Raises HostError when basekit.dll lacks
// its service; a name that cannot be found out is empty.
Account CurrentAccount();

// Starts this program again with the rights of an administrator, in the same language; false when the user
// declines or it cannot be started. Blocks until the system's question is answered. This process goes on: the
// caller ends it.
bool RestartElevated(HWND window);

}  // namespace smh
