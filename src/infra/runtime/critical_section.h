// The system's lock: recursive, and able to say whether the calling thread holds it.
#pragma once

#include <windows.h>

#include <atomic>

namespace smh {

class CriticalSection {
 public:
  // Kept on purpose: with the system's debugging record. Where it is left out Wine makes a call to its server
  // for every deletion, and there are as many of these as there are items.
  CriticalSection() noexcept { InitializeCriticalSection(&section_); }
  ~CriticalSection() { DeleteCriticalSection(&section_); }
  CriticalSection(const CriticalSection&) = delete;
  CriticalSection& operator=(const CriticalSection&) = delete;

  void Enter() noexcept {
    EnterCriticalSection(&section_);
    Entered();
  }
  bool TryEnter() noexcept {
    if (TryEnterCriticalSection(&section_) == FALSE) return false;
    Entered();
    return true;
  }
  // Only the thread that entered may leave; see IsHeldByCaller.
  void Leave() noexcept {
    if (--depth_ == 0) owner_.store(0, std::memory_order_relaxed);
    LeaveCriticalSection(&section_);
  }
  bool IsHeldByCaller() const noexcept {
    return owner_.load(std::memory_order_relaxed) == GetCurrentThreadId();
  }

 private:
  void Entered() noexcept {
    ++depth_;
    owner_.store(GetCurrentThreadId(), std::memory_order_relaxed);
  }

  CRITICAL_SECTION section_;
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
