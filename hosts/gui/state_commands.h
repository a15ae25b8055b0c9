// Writing the state of all entries to a file, and reading one to compare with. For the window's thread; the
// worker does what takes time, and failures go the way of all tasks.
#pragma once

#include "hosts/common/snapshot.h"
#include "hosts/gui/view.h"

#include <functional>
#include <memory>
#include <string>

namespace smh {

// A saved state as it would be on this machine.
struct SavedState {
  Snapshot snapshot;
  std::wstring title;  // which one it is: its file, machine and time
};

// Asks for a file and writes the entries of all locations to it. `allLocations` are those that are read
// again afterwards. Does nothing when the user cancels.
void SaveState(const Frame& frame, bool allLocations);

// Asks for a file, reads it and all locations, and hands it to `use`. A file that is of no use is refused
// with the reason, and `use` is not called.
void LoadState(const Frame& frame, std::function<void(const std::shared_ptr<const SavedState>& state)> use);

}  // namespace smh
