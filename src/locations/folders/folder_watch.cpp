#include "locations/folders/folder_watch.h"

#include "sysutil/uFileUtils.h"

#include <algorithm>

namespace smh {

namespace {

constexpr DWORD kFilter = FILE_NOTIFY_CHANGE_FILE_NAME | FILE_NOTIFY_CHANGE_DIR_NAME |
                          FILE_NOTIFY_CHANGE_ATTRIBUTES | FILE_NOTIFY_CHANGE_SIZE |
                          FILE_NOTIFY_CHANGE_LAST_WRITE;

}  // namespace

FolderWatch::FolderWatch(std::vector<std::wstring> folders) {
  for (std::wstring& folder : folders) folders_.push_back({std::move(folder), Notification()});
  Refresh();
}

bool FolderWatch::Refresh() {
  handles_.clear();
  bool changed = false;
  for (Folder& folder : folders_) {
    const bool watched = static_cast<bool>(folder.notification);
    if (!FileUtils::DirectoryExists(folder.path)) {
      folder.notification.Reset();
    } else if (!watched) {
      folder.notification.Reset(FindFirstChangeNotificationW(folder.path.c_str(), TRUE, kFilter));
    }
    if (folder.notification) handles_.push_back(folder.notification.Get());
    changed = changed || static_cast<bool>(folder.notification) != watched;
  }
  return changed;
}

bool FolderWatch::TakeChange() {
  // A folder that comes or goes is not always signalled: nobody watches the one it lies in.
  const bool changed = Refresh();
  if (handles_.empty()) return changed;
  const auto count = static_cast<DWORD>(handles_.size());
  const DWORD result = WaitForMultipleObjects(count, handles_.data(), FALSE, 0);
  if (result >= WAIT_OBJECT_0 + count) return changed;
  const HANDLE signalled = handles_[result - WAIT_OBJECT_0];
  if (FindNextChangeNotification(signalled) == FALSE) {
    // The folder behind it is gone, and may be back as another one.
    const auto stale = std::ranges::find(folders_, signalled,
                                         [](const Folder& folder) { return folder.notification.Get(); });
    stale->notification.Reset();
  }
  return true;
}

}  // namespace smh
