#include "infra/runtime/patient_wait.h"

#include "infra/runtime/import_function.h"

#include <objbase.h>

#include <optional>

namespace smh {

namespace {

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

DWORD WaitDispatching(HANDLE object, DWORD timeout) noexcept {
  const DWORD since = GetTickCount();
  KeptQuit quit;
  for (DWORD left = timeout; left > 0; left = TimeLeft(timeout, since)) {
    const DWORD waited = MsgWaitForMultipleObjectsEx(1, &object, left, QS_ALLINPUT, MWMO_INPUTAVAILABLE);
    if (waited != WAIT_OBJECT_0 + 1) return waited;
    MSG message;
    if (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) == FALSE) continue;
    if (message.message == WM_QUIT) {
      quit.Keep(static_cast<int>(message.wParam));
      continue;
    }
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
  return WAIT_TIMEOUT;
}

}  // namespace

DWORD WaitPatiently(HANDLE object, DWORD timeout) noexcept {
  const DWORD waited = WaitForSingleObject(object, 0);
  if (waited != WAIT_TIMEOUT || timeout == 0) return waited;
  return IsInSingleThreadedApartment() ? WaitDispatching(object, timeout)
                                       : WaitForSingleObject(object, timeout);
}

}  // namespace smh
