// Watches registry keys for changes, and for being made, deleted and made again.
#pragma once

#include "locations/registry/keys_above.h"

#include <string>
#include <vector>

namespace smh {

// A predefined key and a path below it.
struct WatchedKey {
  HKEY root;
  std::wstring path;
};

// The keys above those that are watched are shared with every other watch (keys_above.h): only one thread at
// a time may make or ask any watch of the module.
class KeyWatch {
 public:
  // Starts watching every key and what is below it, in the plain view and, on a 64-bit Windows, in the 64-bit
  // view. Raises EOSError when an event cannot be made.
  explicit KeyWatch(const std::vector<WatchedKey>& keys);

  // Whether a key changed, came, went or was replaced since the last Accept; stays so until then. One call of
  // the system, without waiting, as long as nothing happens in the keys and directly in those above them; one
  // more for each that is there and cannot be opened: it is tried again every time.
  bool IsDue() noexcept;
  // Takes every change up to now; what comes after is due again, whatever else is still to be armed.
  void Accept() noexcept;

 private:
  // One key in one view.
  struct Watch {
    Watch(HKEY root, REGSAM view, const std::wstring& path);
    bool IsOverdue() const noexcept;
    bool IsDue() noexcept;
    void Accept() noexcept;

    NotifyingKey key;
    KeyAbove* above;
    unsigned aboveSeen = 0;
  };

  void AddAbove(KeyAbove* key);
  bool IsAnythingSignalled() const noexcept;

  std::vector<Watch> watches_;
  // Of all of them, each before those in it.
  std::vector<KeyAbove*> above_;
  // The events of both, for waiting.
  std::vector<HANDLE> events_;
  bool isDue_ = false;
};

}  // namespace smh
