// What the reader does: the first pass over the locations, the pass over the items' extended information, and
// the wait for a change.
#pragma once

#include "core/contracts/StartupManagerHelper.h"

#include <atomic>

namespace smh {

class ParkableThread;
class TLocationStartup;

// One run of the reader, on its thread from beginning to end; takes no lock but what the locations and items
// take.
class TReadThread {
 public:
  // Lives on `thread`; `state` is exchanged for 1 and 2 as the passes finish.
  TReadThread(bool showAll, const ParkableThread& thread, std::atomic<ReadState>& state) noexcept
      : showAll_(showAll), thread_(thread), state_(state) {}

  // Returns when the reader was asked to end. A failure that nothing below has caught is logged and survived.
  void Execute() noexcept;

 private:
  bool TakesPart(const TLocationStartup& location) const noexcept;
  void ReadLocations();
  void ReadExtendedInfo();
  void WaitForChange();

  const bool showAll_;
  const ParkableThread& thread_;
  std::atomic<ReadState>& state_;
};

}  // namespace smh
