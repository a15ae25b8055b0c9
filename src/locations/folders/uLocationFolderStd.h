// The Startup folders: every shortcut and program file in such a folder is an entry. A disabled entry is a
// file moved into a folder of disabled entries; see folder_set.h.
#pragma once

#include "locations/folders/folder_set.h"
#include "locations/folders/folder_watch.h"
#include "model/uLocationStartup.h"

#include <memory>
#include <string>

namespace smh {

// Threads and failures of its operations are those of TLocationStartup.
class TLocationFolderStd final : public TLocationStartup {
 public:
  // For a row of the Startup-folder family: its root says whose folders. Finds them and starts watching them;
  // a Startup folder that the shell does not know is an empty location.
  explicit TLocationFolderStd(const LocationRow& row);

  bool ItemExists(const TStartupItem& item) override;
  bool IsChanged() override;
  std::wstring_view OwnSide() const noexcept override { return folders_.OwnDisabledFolder(); }
  // Raises EOSError when the file browser cannot be started.
  void ShowItemLocation(const TStartupItem& item) override;

 protected:
  std::unique_ptr<EntrySource> OpenSource(const ItemState& listed, bool recorded) override;
  std::unique_ptr<EntryTarget> PlanSwitch(EntrySource& source, bool enable, bool recorded) override;
  // A shortcut. Raises EOSError when the folder has a file of that name already, listed or not, and for a
  // name that is no plain file name.
  std::unique_ptr<EntryTarget> PlanAdd(const std::wstring& name, const std::wstring& command,
                                       bool recorded) override;
  // A file of the other Startup folder comes itself; of any other entry a shortcut is made.
  std::unique_ptr<EntryTarget> PlanInsert(EntrySource& source, const ItemState& entry,
                                          bool recorded) override;
  std::unique_ptr<EntryTarget> PlanCommand(EntrySource& source, const std::wstring& command,
                                           bool recorded) override;
  const wchar_t* Unit() const noexcept override;
  std::wstring NameInPlace(const ItemState& listed) const override;

 private:
  void LoadItems(Look look) override;
  // These answer false when a change has overtaken the load. A folder that cannot be read is logged.
  bool ReadFolder(const std::wstring& folder, const Load& load);
  bool TakeFile(const std::wstring& file, bool isEnabled, const Load& load);
  // One that is not seen because its folder cannot be read may stand there still.
  bool LookFor(TStartupItem& item, const Load& load);
  // The nearest free path where enabled or disabled entries go.
  std::wstring FreePath(bool enabled, const std::wstring& name) const;

  const FolderSet folders_;
  FolderWatch watch_;
};

}  // namespace smh
