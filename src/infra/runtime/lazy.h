// A value that is made on first use and then never changes.
#pragma once

#include "infra/runtime/critical_section.h"

#include <atomic>

namespace smh {

// Double-checked: a read of a value that is there takes no lock, so that it may come under any other one. The
// lock belongs to the owner, who may share it between several values, and is held while the value is made:
// the owner's comment on it says what a maker enters. It is recursive, so one maker may ask for another value
// of the same lock.
//
// Get may be called from any thread. Reset and the destructor may not run while another thread calls Get or
// uses what it answered.
template <typename T>
class Lazy {
 public:
  // `lock` must outlive the object.
  explicit Lazy(CriticalSection& lock) noexcept : lock_(lock) {}
  ~Lazy() { Reset(); }
  Lazy(const Lazy&) = delete;
  Lazy& operator=(const Lazy&) = delete;

  // The value, borrowed until Reset; made by `make()` when it is not there. What `make` throws goes on, and
  // the next call tries again.
  template <typename Make>
  T& Get(Make&& make) {
    if (T* const value = value_.load(std::memory_order_acquire)) return *value;
    const ScopedLock lock(lock_);
    if (T* const value = value_.load(std::memory_order_relaxed)) return *value;
    T* const value = new T(make());
    value_.store(value, std::memory_order_release);
    return *value;
  }

  // Destroys the value; the next Get makes a new one.
  void Reset() noexcept { delete value_.exchange(nullptr); }

 private:
  CriticalSection& lock_;
  std::atomic<T*> value_{nullptr};
};

}  // namespace smh
