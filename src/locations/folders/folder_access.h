// Who may write into the common Startup folder's places.
//
// The folder of disabled common entries lies where ordinary users may create folders. What such a user has
// put there must not be carried into the folder that starts programs for everyone.
#pragma once

#include <windows.h>

#include <string>

namespace smh {

// The access decision: whether nobody but SYSTEM and Administrators owns the object or may change it. A null
// DACL lets everyone in; a DACL that cannot be walked to its end counts as one. `owner` may be null: nobody
// known.
bool IsTrusted(PSID owner, PACL dacl) noexcept;

// Makes a folder (trailing backslash) with its parents; each that is made lets SYSTEM and Administrators do
// everything, Users read, and inherits nothing. Raises EOSError.
void MakeProtectedFolder(const std::wstring& folder);

// Whether a folder made protected in `dataFolder` reads back so. Where it does not, owners and DACLs are not
// kept and there is nothing to decide by. `dataFolder` is one in which nobody can touch what others have
// made. Raises EOSError when no folder can be made there.
bool KeepsAccess(const std::wstring& dataFolder);

// Raises EOSError (access denied) when someone else owns or may change the file or folder, or when it is a
// reparse point.
void RequireTrusted(const std::wstring& path);

// Gives a file what its folder hands down, instead of what it brought along. Raises EOSError.
void TakeInheritedAccess(const std::wstring& file);

}  // namespace smh
