#include "siblings/guardkit/journal_folder.h"

#include "infra/files/file_facts.h"
#include "infra/files/folder_access.h"
#include "infra/runtime/exceptions.h"
#include "siblings/common/product.h"

#include <sddl.h>
#include <shlobj.h>

#include <cstddef>

namespace smh {

namespace {

bool IsMember(WELL_KNOWN_SID_TYPE group) noexcept {
  alignas(SID) std::byte sid[SECURITY_MAX_SID_SIZE];
  DWORD size = sizeof(sid);
  BOOL member = FALSE;
  return CreateWellKnownSid(group, nullptr, &sid, &size) != FALSE &&
         CheckTokenMembership(nullptr, &sid, &member) != FALSE && member != FALSE;
}

// Where owners and DACLs are not kept, there is nothing to decide by.
void RequirePrivate(HANDLE folder) {
  try {
    RequireTrusted(folder, kAnyRight);
  } catch (const EOSError&) {
    static const bool keepsAccess = KeepsAccess(ShellFolder(CSIDL_COMMON_APPDATA));
    if (keepsAccess) throw;
  }
}

struct LocalTextTraits {
  using Type = wchar_t*;
  static constexpr Type kNone = nullptr;
  static bool IsValid(Type value) noexcept { return value != nullptr; }
  static void Close(Type value) noexcept { LocalFree(value); }
};

// Milliseconds between two tries for the lock.
constexpr DWORD kLockPause = 15;

}  // namespace

TokenFacts ReadTokenFacts() noexcept {
  return {
      .isSystem = IsMember(WinLocalSystemSid),
      .isService = IsMember(WinServiceSid) || IsMember(WinLocalServiceSid) || IsMember(WinNetworkServiceSid),
      .isAdministrator = IsMember(WinBuiltinAdministratorsSid)};
}

JournalKind JournalKindOf(const TokenFacts& token) noexcept {
  return token.isSystem || token.isService || token.isAdministrator ? JournalKind::kMachine
                                                                    : JournalKind::kUser;
}

std::wstring JournalPath(JournalKind kind) {
  const int base = kind == JournalKind::kMachine ? CSIDL_COMMON_APPDATA : CSIDL_APPDATA;
  std::wstring path = ProductFolder(base);
  if (path.empty()) RaiseOSError(ERROR_PATH_NOT_FOUND);
  return path.append(kJournalFolderName);
}

std::wstring CurrentUserSid() {
  ScopedHandle token;
  if (OpenThreadToken(GetCurrentThread(), TOKEN_QUERY, TRUE, token.Put()) == FALSE &&
      OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, token.Put()) == FALSE) {
    RaiseLastOSError();
  }
  alignas(TOKEN_USER) std::byte buffer[sizeof(TOKEN_USER) + SECURITY_MAX_SID_SIZE];
  DWORD size = 0;
  if (GetTokenInformation(token.Get(), TokenUser, buffer, sizeof(buffer), &size) == FALSE) RaiseLastOSError();
  ScopedResource<LocalTextTraits> text;
  if (ConvertSidToStringSidW(reinterpret_cast<const TOKEN_USER*>(buffer)->User.Sid, text.Put()) == FALSE) {
    RaiseLastOSError();
  }
  return text.Get();
}

JournalFolder::JournalFolder(JournalKind kind, std::wstring path) : path_(std::move(path)) {
  if (kind != JournalKind::kMachine) return;
  held_.emplace(path_);
  // By the handle that keeps it in its place: what is checked is what is used.
  RequirePrivate(held_->Folder());
}

JournalFolder JournalFolder::Open() {
  const JournalKind kind = JournalKindOf(ReadTokenFacts());
  std::wstring path = JournalPath(kind);
  if (kind == JournalKind::kMachine) {
    MakePrivateFolder(path);
  } else {
    MakeFolders(path);
  }
  return JournalFolder(kind, std::move(path));
}

std::optional<JournalFolder> JournalFolder::OpenExisting() {
  const JournalKind kind = JournalKindOf(ReadTokenFacts());
  std::wstring path = JournalPath(kind);
  if (!IsFolder(path)) return std::nullopt;
  return JournalFolder(kind, std::move(path));
}

JournalLock::JournalLock(const JournalFolder& folder, DWORD patience)
    : file_(CreateFileW(folder.File(L"journal.lock").c_str(), GENERIC_READ | GENERIC_WRITE,
                        FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_ALWAYS,
                        FILE_ATTRIBUTE_NORMAL, nullptr)) {
  if (!file_) RaiseLastOSError();
  const ULONGLONG start = GetTickCount64();
  for (;;) {
    OVERLAPPED place = {};
    if (LockFileEx(file_.Get(), LOCKFILE_EXCLUSIVE_LOCK | LOCKFILE_FAIL_IMMEDIATELY, 0, 1, 0, &place) !=
        FALSE) {
      return;
    }
    if (GetLastError() != ERROR_LOCK_VIOLATION && GetLastError() != ERROR_IO_PENDING) RaiseLastOSError();
    if (GetTickCount64() - start >= patience) RaiseOSError(ERROR_LOCK_VIOLATION);
    Sleep(kLockPause);
  }
}

}  // namespace smh
