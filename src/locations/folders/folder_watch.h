// Watches folders for changes.
#pragma once

#include "infra/handle.h"

#include <string>
#include <vector>

namespace smh {

struct ChangeNotificationTraits {
  using Type = HANDLE;
  static constexpr Type kNone = nullptr;
  static bool IsValid(Type value) noexcept { return value != nullptr && value != INVALID_HANDLE_VALUE; }
  static void Close(Type value) noexcept { FindCloseChangeNotification(value); }
};

// For at most MAXIMUM_WAIT_OBJECTS folders; not shared between threads at the same time.
class FolderWatch {
 public:
  // Folders with a trailing backslash. Starts watching those that exist.
  explicit FolderWatch(std::vector<std::wstring> folders);

  // Whether something changed since the last call, a folder that came or went included; watches on.
  bool TakeChange();

 private:
  using Notification = ScopedResource<ChangeNotificationTraits>;
  struct Folder {
    std::wstring path;
    Notification notification;
  };

  // Starts watching folders that exist now and forgets those that are gone; whether there were any.
  bool Refresh();

  std::vector<Folder> folders_;
  // The handles of the watched folders, for waiting.
  std::vector<HANDLE> handles_;
};

}  // namespace smh
