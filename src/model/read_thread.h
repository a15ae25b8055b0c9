// What the reader does: the first pass over the locations, the pass over the items' extended information, and
// the wait for a change.
#pragma once

#include "core/StartupManagerHelper.h"

#include <windows.h>

#include <atomic>

namespace smh {

class TLocationStartup;

class TReadThread {
 public:
  // Lives on the reader's thread. `wake` is signalled when the reader is asked to end; `state` is exchanged
  // for 1 and 2 as the passes finish.
  TReadThread(bool showAll, HANDLE wake, std::atomic<ReadState>& state) noexcept
      : showAll_(showAll), wake_(wake), state_(state) {}

  // Returns when the reader was asked to end. A failure that nothing below has caught is logged and survived.
  void Execute() noexcept;

 private:
  // Answers false when the reader was asked to end.
  template <typename Step>
  bool RunStep(Step&& step) noexcept;
  bool TakesPart(const TLocationStartup& location) const noexcept;
  void ReadLocations();
  void ReadExtendedInfo();
  void WaitForChange();

  const bool showAll_;
  const HANDLE wake_;
  std::atomic<ReadState>& state_;
};

}  // namespace smh
