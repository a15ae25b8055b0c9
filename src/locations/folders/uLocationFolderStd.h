// The Startup folders: every shortcut and program file in such a folder is an entry. A disabled entry is a
// file moved into a folder of disabled entries; the first of these is this system's own, the others are where
// two other tools keep what they have disabled.
#pragma once

#include "locations/folders/file_changes.h"
#include "locations/folders/folder_watch.h"
#include "locations/folders/shortcut_writer.h"
#include "model/uLocationStartup.h"

#include <optional>
#include <string>
#include <vector>

namespace smh {

// Threads and failures of its operations are those of TLocationStartup.
class TLocationFolderStd final : public TLocationStartup {
 public:
  // For a row of the Startup-folder family: its root says whose folders. Finds them and starts watching them;
  // a Startup folder that the shell does not know is an empty location.
  explicit TLocationFolderStd(const LocationRow& row);

  bool ItemExists(const TStartupItem& item) override;
  void ReadItems() override;
  bool IsChanged() override;
  int ExtractItem(bool checkpoint, const ItemRef& item) override;
  void InsertItem(bool checkpoint, int extracted, bool enabled, const std::wstring& command,
                  const std::wstring& entryName) override;
  void PutBackItem(bool checkpoint) override;
  // Writes a shortcut. Raises EOSError when the folder has a file of that name already, listed or not, and
  // for a name that is no plain file name.
  int AddItem(const std::wstring& name, const std::wstring& command) override;
  void DeleteItem(const ItemRef& item) override;
  void EnableItem(const ItemRef& item) override;
  void DisableItem(const ItemRef& item) override;
  // Between the two Startup folders the file itself moves; to any other location the base's move.
  void MoveItem(const ItemRef& item, TTypeStartupLocation target) override;
  void ChangeItemCommand(const ItemRef& item, const std::wstring& command) override;
  // Raises EOSError when the file browser cannot be started.
  void ShowItemLocation(const TStartupItem& item) override;

 private:
  // What an extracted shortcut was.
  struct Extracted {
    ItemRef item;
    int position;
    std::wstring path;
    std::string bytes;
  };

  // Starts programs for everyone: what goes in there must be trusted.
  bool IsCommon() const noexcept { return Row().root == LocationRoot::kMachine; }
  bool Owns(const TStartupItem& item) const noexcept { return item.Location() == LocationType(); }
  std::vector<std::wstring> AllFolders() const;

  void LoadItems();
  bool ReadFolder(const std::wstring& folder, const Load& load);

  void SwitchItem(const ItemRef& item, bool enable);
  void MoveToFolder(const ItemRef& item, TLocationFolderStd& target);
  void MoveFile(const FileChanger& changer, const std::wstring& from, const std::wstring& to,
                const TLocationFolderStd& target) const;
  // An extracted file, so that the journal knows of it when `checkpoint` is set.
  void WriteBack(bool checkpoint, const std::wstring& path, const std::string& bytes) const;
  int AddShortcut(const std::wstring& name, const std::wstring& command);
  void ReplaceShortcut(const FileChanger& changer, const std::wstring& made, const std::wstring& file,
                       bool enabled) const;
  void RewriteShortcut(const ItemRef& item, const std::wstring& command);
  void TakeOver(const std::wstring& file) const;
  void RequireTrustedSource(const std::wstring& file) const;

  // Raise EOSError when the folder is unknown; make it when it does not exist.
  const std::wstring& StartupFolder();
  const std::wstring& DisabledFolder();
  const std::wstring& PlaceFor(bool enabled) { return enabled ? StartupFolder() : DisabledFolder(); }
  std::wstring TempShortcutFolder() const;
  void MakeOwnFolder(const std::wstring& folder) const;
  // A shortcut in the temporary folder; its path.
  std::wstring CreateShortcut(const std::wstring& name, const ShortcutFields& fields) const;
  std::wstring ItemLine(std::wstring_view format, const std::wstring& itemName) const;

  // With trailing backslashes; empty when unknown.
  const std::wstring startupFolder_;
  const std::wstring dataFolder_;
  const std::wstring ownFolder_;
  const std::vector<std::wstring> disabledFolders_;
  FolderWatch watch_;
  std::optional<Extracted> extracted_;
};

}  // namespace smh
