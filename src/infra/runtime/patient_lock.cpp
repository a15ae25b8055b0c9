#include "infra/runtime/patient_lock.h"

#include "infra/runtime/patient_wait.h"
#include "infra/runtime/thread_slot.h"

namespace smh {

// A mark on every thread that has such a lock or waits for one.
struct PatientThreads {
  bool IsCallerMarked() const noexcept { return mark.Get() != nullptr; }
  void MarkCaller() { mark.Set(this); }
  void UnmarkCaller() const noexcept { mark.Clear(); }

  const ThreadSlot<PatientThreads> mark;
};

constinit ModuleGlobal<PatientThreads> g_patientThreads(L"patient_lock");

namespace {

// Marks the calling thread, for the length of the scope or until Leave.
class ScopedMark {
 public:
  ScopedMark() {
    if (g_patientThreads->IsCallerMarked()) throw EReentered();
    g_patientThreads->MarkCaller();
  }
  ~ScopedMark() {
    if (!isKept_) g_patientThreads->UnmarkCaller();
  }
  ScopedMark(const ScopedMark&) = delete;
  ScopedMark& operator=(const ScopedMark&) = delete;

  void Keep() noexcept { isKept_ = true; }

 private:
  bool isKept_ = false;
};

bool IsTaken(DWORD waited) {
  if (waited == WAIT_FAILED) RaiseLastOSError();
  // Its last owner has ended inside: whoever has the lock looks at what it guards afresh.
  return waited == WAIT_OBJECT_0 || waited == WAIT_ABANDONED_0;
}

}  // namespace

PatientLock::PatientLock() : mutex_(CreateMutexW(nullptr, FALSE, nullptr)) {
  if (!mutex_) RaiseLastOSError();
}

bool PatientLock::EnterWithin(DWORD timeout) {
  ScopedMark mark;
  if (!IsTaken(WaitPatiently(mutex_.Get(), timeout))) return false;
  mark.Keep();
  owner_.store(GetCurrentThreadId(), std::memory_order_relaxed);
  return true;
}

bool PatientLock::TryEnter(DWORD timeout) noexcept {
  // The system's object would let its owner in again.
  if (IsHeldByCaller()) return false;
  const DWORD waited = WaitForSingleObject(mutex_.Get(), timeout);
  if (waited == WAIT_ABANDONED_0) ReleaseMutex(mutex_.Get());
  if (waited != WAIT_OBJECT_0) return false;
  owner_.store(GetCurrentThreadId(), std::memory_order_relaxed);
  return true;
}

void PatientLock::Leave() noexcept {
  owner_.store(0, std::memory_order_relaxed);
  ReleaseMutex(mutex_.Get());
  g_patientThreads->UnmarkCaller();
}

}  // namespace smh
