// The system's lock: recursive, and able to say whether the calling thread holds it.
#pragma once

#include "infra/runtime/thread_annotations.h"

#include <windows.h>

#include <atomic>

namespace smh {

class SMH_LOCKABLE CriticalSection {
 public:
  // Kept on purpose: with the system's debugging record. Where it is left out Wine makes a call to its server
  // for every deletion, and there are as many of these as there are items.
  CriticalSection() noexcept { InitializeCriticalSection(&section_); }
  ~CriticalSection() { DeleteCriticalSection(&section_); }
  CriticalSection(const CriticalSection&) = delete;
  CriticalSection& operator=(const CriticalSection&) = delete;

  void Enter() noexcept SMH_TAKES_LOCK() {
    EnterCriticalSection(&section_);
    Entered();
  }
  bool TryEnter() noexcept SMH_TRIES_LOCK(true) {
    if (TryEnterCriticalSection(&section_) == FALSE) return false;
    Entered();
    return true;
  }
  // Only the thread that entered may leave; see IsHeldByCaller.
  void Leave() noexcept SMH_GIVES_LOCK() {
    if (--depth_ == 0) owner_.store(0, std::memory_order_relaxed);
    LeaveCriticalSection(&section_);
  }
  bool IsHeldByCaller() const noexcept {
    return owner_.load(std::memory_order_relaxed) == GetCurrentThreadId();
  }
  // How often the calling thread has entered and not left.
  unsigned DepthOfCaller() const noexcept { return IsHeldByCaller() ? depth_ : 0; }

 private:
  void Entered() noexcept {
    ++depth_;
    owner_.store(GetCurrentThreadId(), std::memory_order_relaxed);
  }

  CRITICAL_SECTION section_;
  std::atomic<DWORD> owner_{0};
  unsigned depth_ = 0;
};

class [[nodiscard]] SMH_SCOPED_LOCK ScopedLock {
 public:
  explicit ScopedLock(CriticalSection& section) noexcept SMH_TAKES_LOCK(section) : section_(section) {
    section_.Enter();
  }
  ~ScopedLock() SMH_GIVES_LOCK() { section_.Leave(); }
  ScopedLock(const ScopedLock&) = delete;
  ScopedLock& operator=(const ScopedLock&) = delete;

 private:
  CriticalSection& section_;
};

// Leaves a section for the length of a scope, however often the calling thread has entered it; nothing when
// it has not. For who must wait for something that others hold while they want the section.
class [[nodiscard]] ScopedRelease {
 public:
  explicit ScopedRelease(CriticalSection& section) noexcept SMH_UNCHECKED_LOCKS  // as often as it was entered
      : section_(section),
        depth_(section.DepthOfCaller()) {
    for (unsigned i = 0; i < depth_; ++i) section_.Leave();
  }
  ~ScopedRelease() SMH_UNCHECKED_LOCKS {  // as the constructor
    for (unsigned i = 0; i < depth_; ++i) section_.Enter();
  }
  ScopedRelease(const ScopedRelease&) = delete;
  ScopedRelease& operator=(const ScopedRelease&) = delete;

 private:
  CriticalSection& section_;
  const unsigned depth_;
};

}  // namespace smh
