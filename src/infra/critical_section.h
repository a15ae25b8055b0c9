// A recursive lock that can say whether the calling thread holds it.
#pragma once

#include <windows.h>

#include <atomic>

namespace smh {

// Made of the system's slim lock: it needs no call to be made or freed and 12 bytes, and there are as many as
// there are items. Constant-initialised, so that it may be part of module state of any kind.
class CriticalSection {
 public:
  constexpr CriticalSection() noexcept = default;
  CriticalSection(const CriticalSection&) = delete;
  CriticalSection& operator=(const CriticalSection&) = delete;

  void Enter() noexcept {
    if (!IsHeldByCaller()) AcquireSRWLockExclusive(&slim_);
    Entered();
  }
  bool TryEnter() noexcept {
    if (!IsHeldByCaller() && TryAcquireSRWLockExclusive(&slim_) == FALSE) return false;
    Entered();
    return true;
  }
  // Only the thread that entered may leave; see IsHeldByCaller.
  void Leave() noexcept {
    if (--depth_ != 0) return;
    owner_.store(0, std::memory_order_relaxed);
    ReleaseSRWLockExclusive(&slim_);
  }
  // Only the holder ever finds its own number here, whatever the order of other threads' writes.
  bool IsHeldByCaller() const noexcept {
    return owner_.load(std::memory_order_relaxed) == GetCurrentThreadId();
  }

 private:
  void Entered() noexcept {
    ++depth_;
    owner_.store(GetCurrentThreadId(), std::memory_order_relaxed);
  }

  SRWLOCK slim_ = SRWLOCK_INIT;
  std::atomic<DWORD> owner_{0};
  unsigned depth_ = 0;
};

class [[nodiscard]] ScopedLock {
 public:
  explicit ScopedLock(CriticalSection& section) noexcept : section_(section) { section_.Enter(); }
  ~ScopedLock() { section_.Leave(); }
  ScopedLock(const ScopedLock&) = delete;
  ScopedLock& operator=(const ScopedLock&) = delete;

 private:
  CriticalSection& section_;
};

}  // namespace smh
