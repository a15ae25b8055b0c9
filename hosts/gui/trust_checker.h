// Who signed the files of entries, asked on a thread of its own, so that neither the window nor the worker
// waits for a file to be read.
#pragma once

#include "hosts/common/item_record.h"
#include "hosts/gui/worker.h"
#include "infra/runtime/critical_section.h"
#include "infra/runtime/handle.h"

#include <atomic>
#include <deque>
#include <functional>
#include <thread>
#include <vector>

namespace smh {

// Owns the thread and, on it, raterkit.dll, which the first question loads. Made and destroyed by the
// window's thread; outlives the window, and the worker, which may be in the middle of a change.
class TrustChecker {
 public:
  // Runs on the window's thread, with the first of the entries, one at least, each with its `trust`.
  using Answer = std::function<void(const std::vector<ItemRecord>& checked)>;

  // The queue outlives the checker. Raises HostError.
  explicit TrustChecker(UiQueue& queue);
  // Waits ten seconds for the file that is being read, then ends the process.
  ~TrustChecker();
  TrustChecker(const TrustChecker&) = delete;
  TrustChecker& operator=(const TrustChecker&) = delete;

  // Asks for the entries in their order, and answers with as many as are done in a fifth of a second: ask for
  // the rest again, when it is known what is seen by then. Where raterkit.dll cannot be asked nothing is
  // proved, and the answer says so. Any thread; `items` is not empty.
  void Check(std::vector<ItemRecord> items, Answer answer);
  // The same before all that waits, for one entry.
  void CheckFirst(ItemRecord item, Answer answer);

 private:
  struct Question {
    std::vector<ItemRecord> items;
    Answer answer;
  };
  void Run() noexcept;
  bool Take(Question& question);

  UiQueue& queue_;
  // No other lock is taken while it is held.
  CriticalSection lock_;
  std::deque<Question> questions_ SMH_GUARDED_BY(lock_);
  const ScopedHandle wake_;
  const ScopedHandle ended_;
  std::atomic<bool> stop_{false};
  std::thread thread_;
};

}  // namespace smh
