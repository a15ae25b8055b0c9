// The Startup folders: every shortcut and program file in such a folder is an entry. A disabled entry is a
// file moved into a folder of disabled entries; see folder_set.h.
#pragma once

#include "locations/folders/folder_set.h"
#include "locations/folders/folder_watch.h"
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

  bool Owns(const TStartupItem& item) const noexcept { return item.Location() == LocationType(); }

  void LoadItems();
  // False when a change has overtaken the load.
  bool ReadFolder(const std::wstring& folder, const Load& load);

  // What the operations above do between the start of the change and its log line.
  void SwitchItem(const ItemRef& item, bool enable);
  void MoveToFolder(const ItemRef& item, TLocationFolderStd& target);
  int AddShortcut(const std::wstring& name, const std::wstring& command);
  void RewriteShortcut(const ItemRef& item, const std::wstring& command);

  const FolderSet folders_;
  FolderWatch watch_;
  std::optional<Extracted> extracted_;
};

}  // namespace smh
