// Watches registry keys for changes through one event.
#pragma once

#include "infra/handle.h"

#include <string>
#include <vector>

namespace smh {

struct WatchedKey {
  HKEY root;
  std::wstring path;
};

// Not shared between threads at the same time.
class KeyWatch {
 public:
  // Arms the watch. Raises EOSError when the event cannot be made.
  explicit KeyWatch(std::vector<WatchedKey> keys);

  bool IsSignalled() const noexcept;
  // Closes every watched key, resets the event and watches every key anew, in the plain view and, on a 64-bit
  // Windows, in the 64-bit view. Subkeys count. A key that does not exist is not watched.
  void Rearm();

 private:
  void Watch(const WatchedKey& key, REGSAM view);

  const std::vector<WatchedKey> keys_;
  ScopedHandle event_;
  std::vector<ScopedKey> handles_;
};

}  // namespace smh
