// Watches folders for changes, and for being removed, made and replaced.
//
// A folder's own notification does not reliably tell that the folder is gone, and none can be had for one
// that is missing. So the folders above each are watched too, up to the root and shared ones once, for the
// folders in them that come and go: when one of them is signalled, all below it are opened anew. Each is
// opened before those in it, so what comes after a folder was looked for is signalled by the one above.
// Without a signal nothing is looked at.
#pragma once

#include "infra/runtime/handle.h"

#include <string>
#include <vector>

namespace smh {

// How ScopedResource owns a change notification.
struct ChangeNotificationTraits {
  using Type = HANDLE;
  static constexpr Type kNone = nullptr;
  static bool IsValid(Type value) noexcept { return value != nullptr && value != INVALID_HANDLE_VALUE; }
  static void Close(Type value) noexcept { FindCloseChangeNotification(value); }
};

// For at most MAXIMUM_WAIT_OBJECTS folders; of those above them the nearest that are within the limit too.
// Not shared between threads at the same time.
class FolderWatch {
 public:
  // Folders with a trailing backslash; an empty one is unknown and watches nothing. Starts watching.
  explicit FolderWatch(const std::vector<std::wstring>& folders);

  // Whether something in the folders changed since the last Accept, or one came, went or was replaced; stays
  // so until Accept. Also true when a folder came or went beside an existing one or beside a folder above it:
  // it may be that one. One call of the system as long as nothing happens, unless a folder is there and
  // cannot be opened, or it and all above it cannot be watched, as on a network that is not there: then that
  // is tried again every time.
  bool IsDue();
  // Takes every change up to now; what comes after is due again.
  void Accept();

 private:
  struct Place {
    std::wstring path;
    // One of those that were asked for.
    bool isOwn;
    const Place* above = nullptr;
    ScopedResource<ChangeNotificationTraits> notification{};
    // Neither this nor any above is watched, or it seems to be there and cannot be opened: nobody would tell
    // that it came, or when it can.
    bool isLost = true;
    // In the last look it or one above was signalled, came or went: those in it may be others.
    bool isTouched = false;
  };

  void Add(std::wstring path, bool isOwn);
  const Place* Find(std::wstring_view path) const noexcept;
  // Takes every signal and opens what has to be opened; whether the folders asked for may have changed.
  bool Look();

  // Each folder before those in it. Not changed in number or order after construction.
  std::vector<Place> places_;
  // The handles of those watched, for waiting.
  std::vector<HANDLE> handles_;
  // One of the folders asked for is lost.
  bool isAnyLost_ = false;
  bool isDue_ = false;
};

}  // namespace smh
