// Files that are made for the time of one change. Each object is for the thread that made it.
#pragma once

#include "locations/folders/folder_set.h"
#include "locations/folders/shortcut_writer.h"

#include <string>
#include <string_view>
#include <utility>

namespace smh {

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
// file until that has moved away. For a thread that has the location's gate and the item-list lock.
class [[nodiscard]] TemporaryShortcut {
 public:
  // Under the name, or the next free one, with the extension of a shortcut. Raises as
  // FolderSet::TemporaryFolder and WriteShortcut, and then leaves no file.
  TemporaryShortcut(const FolderSet& folders, std::wstring_view name, const ShortcutFields& fields);

  const std::wstring& Path() const noexcept { return file_.Path(); }

 private:
  const ScopedFile file_;
};

}  // namespace smh
