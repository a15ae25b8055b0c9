#include "infra/runtime/patient_lock.h"

#include "infra/runtime/import_function.h"

#include <objbase.h>

#include <optional>

namespace smh {

// A mark on every thread that has such a lock or waits for one. The system's own storage: it is gone with its
// thread, however that ends.
struct PatientThreads {
  PatientThreads() : slot(TlsAlloc()) {
    if (slot == TLS_OUT_OF_INDEXES) RaiseLastOSError();
  }
  ~PatientThreads() { TlsFree(slot); }
  PatientThreads(const PatientThreads&) = delete;
  PatientThreads& operator=(const PatientThreads&) = delete;

  bool IsCallerMarked() const noexcept { return TlsGetValue(slot) != nullptr; }
  void MarkCaller(bool marked) noexcept { TlsSetValue(slot, marked ? this : nullptr); }

  const DWORD slot;
};

constinit ModuleGlobal<PatientThreads> g_patientThreads(L"patient_lock");

namespace {

// Marks the calling thread, for the length of the scope or until Leave.
class ScopedMark {
 public:
  ScopedMark() {
    if (g_patientThreads->IsCallerMarked()) throw EReentered();
    g_patientThreads->MarkCaller(true);
  }
  ~ScopedMark() {
    if (!isKept_) g_patientThreads->MarkCaller(false);
  }
  ScopedMark(const ScopedMark&) = delete;
  ScopedMark& operator=(const ScopedMark&) = delete;

  void Keep() noexcept { isKept_ = true; }

 private:
  bool isKept_ = false;
};

bool IsInSingleThreadedApartment() noexcept {
  using Function = HRESULT(WINAPI*)(APTTYPE*, APTTYPEQUALIFIER*);
  const auto ask = ImportFunction<Function>(GetModuleHandleW(L"ole32.dll"), "CoGetApartmentType");
  if (ask != nullptr) {
    APTTYPE type = APTTYPE_MTA;
    APTTYPEQUALIFIER qualifier = APTTYPEQUALIFIER_NONE;
    return SUCCEEDED(ask(&type, &qualifier)) && (type == APTTYPE_STA || type == APTTYPE_MAINSTA);
  }
  // Windows before 7: only such a thread refuses the other model.
  const HRESULT result = CoInitializeEx(nullptr, COINIT_MULTITHREADED);
  if (SUCCEEDED(result)) CoUninitialize();
  return result == RPC_E_CHANGED_MODE;
}

bool IsTaken(DWORD waited) {
  if (waited == WAIT_FAILED) RaiseLastOSError();
  // Its last owner has ended inside: whoever has the lock looks at what it guards afresh.
  return waited == WAIT_OBJECT_0 || waited == WAIT_ABANDONED_0;
}

DWORD TimeLeft(DWORD timeout, DWORD since) noexcept {
  if (timeout == INFINITE) return INFINITE;
  const DWORD passed = GetTickCount() - since;
  return passed < timeout ? timeout - passed : 0;
}

// A request to quit, which ends the host's loop and not the wait: kept until the object's end.
class KeptQuit {
 public:
  KeptQuit() = default;
  ~KeptQuit() {
    if (code_) PostQuitMessage(*code_);
  }
  KeptQuit(const KeptQuit&) = delete;
  KeptQuit& operator=(const KeptQuit&) = delete;

  void Keep(int code) noexcept { code_ = code; }

 private:
  std::optional<int> code_;
};

bool WaitDispatching(HANDLE mutex, DWORD timeout) {
  const DWORD since = GetTickCount();
  KeptQuit quit;
  for (DWORD left = timeout; left > 0; left = TimeLeft(timeout, since)) {
    const DWORD waited = MsgWaitForMultipleObjectsEx(1, &mutex, left, QS_ALLINPUT, MWMO_INPUTAVAILABLE);
    if (waited != WAIT_OBJECT_0 + 1) return IsTaken(waited);
    MSG message;
    if (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) == FALSE) continue;
    if (message.message == WM_QUIT) {
      quit.Keep(static_cast<int>(message.wParam));
      continue;
    }
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
  return false;
}

}  // namespace

PatientLock::PatientLock() : mutex_(CreateMutexW(nullptr, FALSE, nullptr)) {
  if (!mutex_) RaiseLastOSError();
}

bool PatientLock::EnterWithin(DWORD timeout) {
  ScopedMark mark;
  bool taken = IsTaken(WaitForSingleObject(mutex_.Get(), 0));
  if (!taken && timeout != 0) {
    taken = IsInSingleThreadedApartment() ? WaitDispatching(mutex_.Get(), timeout)
                                          : IsTaken(WaitForSingleObject(mutex_.Get(), timeout));
  }
  if (!taken) return false;
  mark.Keep();
  owner_.store(GetCurrentThreadId(), std::memory_order_relaxed);
  return true;
}

bool PatientLock::TryEnter() noexcept {
  // The system's object would let its owner in again.
  if (IsHeldByCaller()) return false;
  const DWORD waited = WaitForSingleObject(mutex_.Get(), 0);
  if (waited == WAIT_ABANDONED_0) ReleaseMutex(mutex_.Get());
  if (waited != WAIT_OBJECT_0) return false;
  owner_.store(GetCurrentThreadId(), std::memory_order_relaxed);
  return true;
}

void PatientLock::Leave() noexcept {
  owner_.store(0, std::memory_order_relaxed);
  ReleaseMutex(mutex_.Get());
  g_patientThreads->MarkCaller(false);
}

}  // namespace smh
