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

void FolderWatch::Refresh() {
  handles_.clear();
  for (Folder& folder : folders_) {
    const bool exists = FileUtils::DirectoryExists(folder.path);
    if (!exists) {
      folder.notification.Reset();
    } else if (!folder.notification) {
      folder.notification.Reset(FindFirstChangeNotificationW(folder.path.c_str(), TRUE, kFilter));
    }
    if (folder.notification) handles_.push_back(folder.notification.Get());
  }
}

bool FolderWatch::TakeChange() {
  if (handles_.empty()) return false;
  const auto count = static_cast<DWORD>(handles_.size());
  const DWORD result = WaitForMultipleObjects(count, handles_.data(), FALSE, 0);
  if (result >= WAIT_OBJECT_0 + count) return false;
  const HANDLE signalled = handles_[result - WAIT_OBJECT_0];
  if (FindNextChangeNotification(signalled) == FALSE) {
    // The folder behind it is gone, and may be back as another one.
    const auto stale = std::ranges::find(folders_, signalled,
                                         [](const Folder& folder) { return folder.notification.Get(); });
    stale->notification.Reset();
  }
  Refresh();
  return true;
}

}  // namespace smh
