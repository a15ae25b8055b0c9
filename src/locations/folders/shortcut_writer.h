// Shortcuts that a change of a Startup folder writes through the shell's own link object: what they take over
// of an older one, and how they are made complete before they get to their place.
//
// No state: any thread. Files are read and written on the calling thread.
#pragma once

#include "locations/folders/folder_set.h"
#include "locations/folders/shortcut_command.h"
#include "locations/folders/temporary_use.h"
#include "shelllink/uShellLinkInfo.h"

#include <windows.h>

#include <memory>
#include <string>
#include <string_view>
#include <utility>

namespace smh {

// What a shortcut stores, as IShellLink names it.
struct ShortcutFields : ShortcutCommand {
  ShortcutFields() = default;
  // A shortcut of nothing but that command.
  explicit ShortcutFields(ShortcutCommand command) : ShortcutCommand(std::move(command)) {}

  // As stored: a text that names a resource stays so.
  std::wstring description;
  std::wstring workingFolder;
  std::wstring iconLocation;
  int iconIndex = 0;
  int showCommand = SW_SHOWNORMAL;
  WORD hotKey = 0;
};

// Writes a shortcut, over an older file, and confirms that what is read back has the same target and
// arguments. Raises EChangeRefused when it has others, EOleSysError, EOSError or the reader's exception, and
// then leaves no file. The calling thread need not have COM.
void WriteShortcut(const ShortcutFields& fields, const std::wstring& file);

// The bytes of a new shortcut, confirmed. `folder`, with a trailing backslash, is where the shell's object
// writes meanwhile, inside a TemporaryUse; nothing is left there. Raises as WriteShortcut.
std::string LinkBytes(const ShortcutFields& fields, const std::wstring& folder);

// The bytes of a shortcut with another command, confirmed: with all that the old bytes hold, but what speaks
// of the old target (link_splice.h). `file`, the old one's path, is for texts only; `folder` as above. Raises
// as WriteShortcut and as RequireChangeableLink.
std::string ChangedLink(const std::wstring& file, std::string_view bytes, const ShortcutCommand& command,
                        const std::wstring& folder);

// A shortcut, read, whose command may be changed, or moved to a place that keeps nothing but commands. Raises
// EOSError for a program file, the reader's exception for what cannot be read, and EOSError (not supported)
// for a link without target or one that an installer resolves.
std::unique_ptr<TShellLinkInfo> RequireChangeableLink(const std::wstring& file);
// The same for its bytes, which somebody has read.
std::unique_ptr<TShellLinkInfo> RequireChangeableLink(const std::wstring& file, std::string_view bytes);

// Owns a file, made or to be made, by its full path: removes it at the end of the scope, when it is still
// there. Never fails.
class [[nodiscard]] ScopedFile {
 public:
  explicit ScopedFile(std::wstring path) noexcept : path_(std::move(path)) {}
  ~ScopedFile();
  ScopedFile(const ScopedFile&) = delete;
  ScopedFile& operator=(const ScopedFile&) = delete;

  const std::wstring& Path() const noexcept { return path_; }

 private:
  const std::wstring path_;
};

// A shortcut in a location's temporary folder, made complete there before it goes where it starts. Owns the
// file until that has moved away. For one thread, without a lock.
class [[nodiscard]] TemporaryShortcut {
 public:
  // Under the name, or the next free one, with the extension of a shortcut: a new one, and one with another
  // command, `file` and `bytes` being the old one's. Raise as FolderSet::TemporaryFolder and as LinkBytes and
  // ChangedLink, and then leave no file.
  TemporaryShortcut(const FolderSet& folders, std::wstring_view name, const ShortcutFields& fields);
  TemporaryShortcut(const FolderSet& folders, const std::wstring& file, std::string_view bytes,
                    const ShortcutCommand& command);

  const std::wstring& Path() const noexcept { return file_.Path(); }

 private:
  const std::wstring folder_;
  const TemporaryUse use_;
  const ScopedFile file_;
};

}  // namespace smh
