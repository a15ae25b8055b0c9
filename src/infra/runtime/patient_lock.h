// A lock for operations that may take seconds, waited for as patient_wait.h says.
//
// What a message calls that is dispatched meanwhile may want a lock of this kind again. So a thread has one
// at most, whichever it is, and asks for none while it waits for one: a lock of this kind is no link in an
// order with another one.
#pragma once

#include "infra/runtime/exceptions.h"
#include "infra/runtime/handle.h"
#include "infra/runtime/module_global.h"
#include "infra/runtime/thread_annotations.h"

#include <atomic>

namespace smh {

// A thread that has, or waits for, such a lock has asked for one again.
class EReentered : public Exception {
 public:
  EReentered() : Exception(L"A call of this thread is under way already.") {}
  const wchar_t* ClassName() const noexcept override { return L"EReentered"; }
  HRESULT Result() const noexcept override { return E_UNEXPECTED; }
};

// Any thread may call. One that ends without leaving gives the lock to the next. It holds a handle of the
// system: not for what there are many of.
class SMH_LOCKABLE PatientLock {
 public:
  // Raises EOSError.
  PatientLock();
  PatientLock(const PatientLock&) = delete;
  PatientLock& operator=(const PatientLock&) = delete;

  // Waits for the lock as long as it takes, or for at most `timeout` milliseconds: whether the caller has it
  // then. Raise EReentered, and EOSError when it cannot be waited for.
  void Enter() SMH_TAKES_LOCK() { EnterWithin(INFINITE); }
  bool EnterWithin(DWORD timeout) SMH_TRIES_LOCK(true);
  // Whether the lock could be had at once, or within `timeout` milliseconds, in which no message is
  // dispatched: not from a thread that has it already, and not from one that ended inside. For the end of the
  // module: not counted among what its thread has.
  bool TryEnter(DWORD timeout = 0) noexcept SMH_TRIES_LOCK(true);
  // Only the thread that entered may leave.
  void Leave() noexcept SMH_GIVES_LOCK();
  bool IsHeldByCaller() const noexcept {
    return owner_.load(std::memory_order_relaxed) == GetCurrentThreadId();
  }

 private:
  ScopedHandle mutex_;
  std::atomic<DWORD> owner_{0};
};

// The lock for the length of a scope, as Enter.
class [[nodiscard]] SMH_SCOPED_LOCK ScopedPatientLock {
 public:
  explicit ScopedPatientLock(PatientLock& lock) SMH_TAKES_LOCK(lock) : lock_(lock) { lock_.Enter(); }
  ~ScopedPatientLock() SMH_GIVES_LOCK() { lock_.Leave(); }
  ScopedPatientLock(const ScopedPatientLock&) = delete;
  ScopedPatientLock& operator=(const ScopedPatientLock&) = delete;

 private:
  PatientLock& lock_;
};

// The threads that have such a lock or wait for one. Started before the first lock is entered.
struct PatientThreads;
extern ModuleGlobal<PatientThreads> g_patientThreads;

}  // namespace smh
