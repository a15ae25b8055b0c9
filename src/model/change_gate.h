// How the loads and the changes of one location stay apart.
//
// A change counts itself in before it touches the location, and out when it is done. A load that finds a
// change under way does nothing; one during which a change began stops taking entries over and does not
// prune. Either way the load is due again, which the location's change test then reports.
#pragma once

#include <atomic>

namespace smh {

// Any thread may call: the reader looks, the threads of changes count.
class ChangeGate {
 public:
  // Whether a change is under way.
  bool IsBusy() const noexcept { return busy_.load() > 0; }
  // Differs from an earlier value when a change began meanwhile.
  unsigned Generation() const noexcept { return generation_.load(); }

  // Asks for a load at the next test for changes.
  void MarkLoadDue() noexcept { loadDue_.store(true); }
  // Takes and clears the mark.
  bool TakeLoadDue() noexcept { return loadDue_.exchange(false); }

  // One change under way, of one thread. The gate outlives it.
  class [[nodiscard]] Scope {
   public:
    explicit Scope(ChangeGate& gate) noexcept : gate_(gate) {
      ++gate_.busy_;
      ++gate_.generation_;
    }
    ~Scope() { --gate_.busy_; }
    Scope(const Scope&) = delete;
    Scope& operator=(const Scope&) = delete;

   private:
    ChangeGate& gate_;
  };

 private:
  std::atomic<int> busy_{0};
  std::atomic<unsigned> generation_{0};
  std::atomic<bool> loadDue_{false};
};

}  // namespace smh
