// Where the journal of this process lies, and the lock that a checkpoint takes on it.
//
// What an elevated process undoes must not have been written by anybody else, so such processes keep a
// journal of their own, which only SYSTEM and Administrators may touch. Every process reads and writes the
// journal of its own kind only.
#pragma once

#include "infra/runtime/handle.h"
#include "siblings/guardkit/held_path.h"

#include <windows.h>

#include <optional>
#include <string>
#include <string_view>

namespace smh {

// Whose journal it is.
enum class JournalKind {
  kMachine,  // "Quillmark\Startup Manager\Journal" below the common application data
  kUser,     // the same below the user's own
};

// In the product's data folder.
inline constexpr std::wstring_view kJournalFolderName = L"Journal\\";

// What decides about the journal: what the calling thread's token, or the process's, is a member of.
struct TokenFacts {
  bool isSystem = false;
  bool isService = false;
  bool isAdministrator = false;  // enabled, not only a member
};

// What cannot be told counts as not being a member.
TokenFacts ReadTokenFacts() noexcept;
// The machine's journal for SYSTEM, services and elevated administrators, else the user's.
JournalKind JournalKindOf(const TokenFacts& token) noexcept;
// With a trailing backslash, whether it exists or not. Raises EOSError when the shell gives no folder.
std::wstring JournalPath(JournalKind kind);

// The SID of the user whose token the calling thread or else the process has, as text ("S-1-5-21-...").
// Raises EOSError.
std::wstring CurrentUserSid();

// The journal's folder. The machine's is checked, and held in place as long as the object lives, see
// HeldPath; the user's is neither.
class JournalFolder {
 public:
  // Makes the folder when it is missing. Raises EOSError, access denied among others: the folder of the
  // machine's journal is refused when somebody else owns it or has any right to it, or when a folder of its
  // path is a reparse point.
  static JournalFolder Open();
  // None when there is no journal yet; refused like above.
  static std::optional<JournalFolder> OpenExisting();

  // With a trailing backslash.
  const std::wstring& Path() const noexcept { return path_; }
  // The full path of a file in it.
  std::wstring File(const std::wstring& name) const { return path_ + name; }

 private:
  JournalFolder(JournalKind kind, std::wstring path);

  std::wstring path_;
  std::optional<HeldPath> held_;
};

// One checkpoint at a time, of all processes that share a journal. Has the lock from making to destruction,
// which may be on different threads.
//
// The innermost lock of the system: it is taken after every other lock that the calling thread holds, the
// library's item list and item locks among them. Nothing waits under it but, a second in all, the changes of
// files that others have open. It is the kernel's, so a process that dies gives it back.
class JournalLock {
 public:
  // How long a change waits for another one before it is refused, in milliseconds.
  static constexpr DWORD kPatience = 10'000;

  // Waits up to `patience` milliseconds, asking every 15. Raises EOSError: ERROR_LOCK_VIOLATION when another
  // checkpoint is open all the while, another code when the lock's file cannot be opened. Not recursive: a
  // thread that has it waits for itself in vain.
  JournalLock(const JournalFolder& folder, DWORD patience);

 private:
  // Closing it unlocks.
  ScopedHandle file_;
};

}  // namespace smh
