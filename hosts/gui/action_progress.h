// How far an action is, and whether it is to go on: between the window and the worker.
#pragma once

#include <atomic>
#include <cstddef>

namespace smh {

// Any thread, without a lock.
class ActionProgress {
 public:
  // Whoever is at work looks before every entry, and leaves the rest as they are. Cannot be taken back.
  void Cancel() noexcept { isCancelled_ = true; }
  bool IsCancelled() const noexcept { return isCancelled_; }
  // One entry more has been seen to.
  void Advance() noexcept { ++done_; }
  std::size_t Done() const noexcept { return done_; }

 private:
  std::atomic<bool> isCancelled_{false};
  std::atomic<std::size_t> done_{0};
};

}  // namespace smh
