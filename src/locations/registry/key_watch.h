// Watches registry keys for changes.
#pragma once

#include "infra/runtime/handle.h"

#include <string>
#include <vector>

namespace smh {

// A predefined key and a path below it.
struct WatchedKey {
  HKEY root;
  std::wstring path;
};

// For at most MAXIMUM_WAIT_OBJECTS keys, on a 64-bit Windows half as many; not shared between threads at the
// same time.
class KeyWatch {
 public:
  // Arms the watch. Raises EOSError when an event cannot be made.
  explicit KeyWatch(const std::vector<WatchedKey>& keys);

  // Whether a key changed since the last Accept; stays so until then. One call of the system, without
  // waiting.
  bool IsDue() noexcept;
  // Takes every change up to now and watches every key anew, in the plain view and, on a 64-bit Windows, in
  // the 64-bit view. Subkeys count. A key that does not exist is not watched. What changes after its key was
  // armed is due again, whatever else is still to be armed.
  void Accept() noexcept;

 private:
  // One key in one view. Each has an event of its own: arming resets the event, and one that is shared would
  // lose the signals of keys armed before, which then never signal again.
  struct Watch {
    Watch(const WatchedKey& watched, REGSAM viewBits);
    void Arm() noexcept;

    WatchedKey key;
    REGSAM view;
    ScopedHandle event;
    // Closing it may signal the event.
    ScopedKey handle;
  };

  std::vector<Watch> watches_;
  // Their events, for waiting.
  std::vector<HANDLE> events_;
};

}  // namespace smh
