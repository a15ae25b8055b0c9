// Folders made with what is missing of the way to them, and the access to them: some only SYSTEM and
// Administrators may change. No state; any thread.
//
// Those lie in the common application data, where ordinary users may create folders: what such a user has put
// there must neither be carried into the folder that starts programs for everyone nor be undone from.
#pragma once

#include <windows.h>

#include <string>

namespace smh {

// Makes every missing folder of a path before its last backslash, from the root down. What is behind that
// backslash is not looked at: a file's name or nothing. Failures show in the first use of the folder.
// Allocates nothing and calls kernel32 only, because it also serves a process that is ending; for that the
// text is changed, and is as it was when this returns.
void MakeFolders(std::wstring& path) noexcept;

// Makes one folder, without a trailing backslash; false with the thread's last error. May raise EOSError.
using FolderMaker = bool (*)(const std::wstring& path);

// Makes a folder (a trailing backslash does not matter) and every missing one above it, but for a root. Looks
// first, and touches nothing of what is there. Raises EOSError when a folder cannot be made; a file of that
// name counts as the folder and shows in its first use.
void MakeFolderPath(const std::wstring& folder);
// The same, with who makes the folder itself and who makes those above it.
void MakeFolderPath(const std::wstring& folder, FolderMaker own, FolderMaker above);

// Rights to change an object; of a folder, those to put something else in the place of what lies in it or of
// the folder itself; and any right at all.
inline constexpr ACCESS_MASK kChangeRights = FILE_WRITE_DATA | FILE_APPEND_DATA | FILE_WRITE_EA |
                                             FILE_WRITE_ATTRIBUTES | FILE_DELETE_CHILD | DELETE | WRITE_DAC |
                                             WRITE_OWNER | GENERIC_WRITE | GENERIC_ALL | MAXIMUM_ALLOWED;
inline constexpr ACCESS_MASK kReplaceRights =
    FILE_DELETE_CHILD | DELETE | WRITE_DAC | WRITE_OWNER | GENERIC_ALL | MAXIMUM_ALLOWED;
inline constexpr ACCESS_MASK kAnyRight = ~ACCESS_MASK{0};

// Whether it is SYSTEM, Administrators, or the system's own installer, to which the drive of Windows belongs.
bool IsTrustedSid(PSID sid) noexcept;
// The access decision: whether nobody but those owns the object or has one of `rights`. A null DACL lets
// everyone in; a DACL that cannot be walked to its end counts as one. `owner` may be null: nobody known.
bool IsTrusted(PSID owner, PACL dacl, ACCESS_MASK rights = kChangeRights) noexcept;

// Makes a folder (trailing backslash) with its parents; each that is made lets SYSTEM and Administrators do
// everything, Users read, and inherits nothing. Raises EOSError.
void MakeProtectedFolder(const std::wstring& folder);
// The same for a folder in which Users may not even read; its parents are as above.
void MakePrivateFolder(const std::wstring& folder);

// Whether a folder made protected in `dataFolder` reads back so. Where it does not, owners and DACLs are not
// kept and there is nothing to decide by. `dataFolder` is one in which nobody can touch what others have
// made. Raises EOSError when no folder can be made there.
bool KeepsAccess(const std::wstring& dataFolder);

// Raises EOSError (access denied) when someone else owns the file or folder or has one of `rights`, or when
// it is a reparse point. A handle needs GENERIC_READ.
void RequireTrusted(const std::wstring& path, ACCESS_MASK rights = kChangeRights);
void RequireTrusted(HANDLE file, ACCESS_MASK rights = kChangeRights);
// The same for every folder above a full path, up to the drive, with kReplaceRights.
void RequireTrustedAbove(const std::wstring& path);

// Has a folder belong to Administrators, with the list of MakeProtectedFolder, when it is not trusted with
// `rights`. What lies in it keeps its owners. Raises as RequireTrusted when it is not trusted then.
void ProtectFolder(const std::wstring& folder, ACCESS_MASK rights = kChangeRights);

// Has a file belong to Administrators, with the rights that its folder hands down instead of those it brought
// along. Raises EOSError, also when it belongs to somebody else then.
void TakeOverFile(const std::wstring& file);

}  // namespace smh
