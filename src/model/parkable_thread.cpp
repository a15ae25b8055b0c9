#include "model/parkable_thread.h"

#include "core/contracts/uDllGlobals.h"
#include "infra/log/uAxDebug.h"
#include "infra/runtime/import_function.h"
#include "infra/runtime/patient_wait.h"
#include "infra/runtime/scoped_com.h"

#include <utility>

namespace smh {

namespace {

constexpr DWORD kPauseAfterFailureMs = 1000;

HANDLE MakeEvent() {
  const HANDLE event = CreateEventW(nullptr, TRUE, FALSE, nullptr);
  if (event == nullptr) RaiseLastOSError();
  return event;
}

// Windows before Vista lacks it.
void CancelFileAccess(HANDLE thread) noexcept {
  using Function = BOOL(WINAPI*)(HANDLE);
  const auto cancel = ImportFunction<Function>(GetModuleHandleW(L"kernel32.dll"), "CancelSynchronousIo");
  if (cancel != nullptr) cancel(thread);
}

}  // namespace

ParkableThread::ParkableThread()
    : wake_(MakeEvent()), running_(MakeEvent()), finished_(MakeEvent()), never_(MakeEvent()) {}

void ParkableThread::Start(std::function<void()> read) {
  ResetEvent(wake_.Get());
  ResetEvent(running_.Get());
  end_.store(EndMode::kRun);
  read_ = std::move(read);
  ScopedHandle thread(CreateThread(nullptr, 0, Procedure, this, CREATE_SUSPENDED, nullptr));
  if (!thread) RaiseLastOSError();
  thread_ = std::move(thread);
  ResumeThread(thread_.Get());
  // A thread that has not begun to run when the module is unloaded would never begin.
  WaitForSingleObject(running_.Get(), INFINITE);
}

DWORD ParkableThread::Procedure(void* self) noexcept {
  auto& reader = *static_cast<ParkableThread*>(self);
  SetEvent(reader.running_.Get());
  const ScopedCom com(COINIT_APARTMENTTHREADED);
  reader.Run();
  if (reader.end_.load() == EndMode::kPark) {
    // The loader's lock is held until the module is gone: nothing of it may run after this call.
    SignalObjectAndWait(reader.finished_.Get(), reader.never_.Get(), INFINITE, FALSE);
  }
  return 0;
}

void ParkableThread::Run() noexcept {
  read_();
  // One that ended for a reason of its own must not let the thread exit: at unload that could not finish.
  while (!IsAskedToEnd()) Sleep(kThreadStopStepMs);
}

void ParkableThread::AskToEnd(EndMode mode) noexcept {
  end_.store(mode);
  SetEvent(wake_.Get());
}

void ParkableThread::Stop() noexcept {
  const HANDLE thread = thread_.Get();
  if (thread == nullptr) return;
  AskToEnd(EndMode::kExit);
  while (WaitPatiently(thread, kThreadStopStepMs) == WAIT_TIMEOUT) CancelFileAccess(thread);
  thread_.Reset();
  read_ = nullptr;
  end_.store(EndMode::kRun);
}

void ParkableThread::AskToPark() noexcept {
  if (thread_) AskToEnd(EndMode::kPark);
}

bool ParkableThread::EndParked(DWORD since, DWORD limit) noexcept {
  const HANDLE thread = thread_.Get();
  if (thread == nullptr) return true;
  const HANDLE ends[] = {finished_.Get(), thread};
  const auto isParked = [&](DWORD wait) {
    return WaitForMultipleObjects(2, ends, FALSE, wait) <= WAIT_OBJECT_0 + 1;
  };
  bool parked = isParked(0);
  while (!parked && GetTickCount() - since < limit) {
    parked = isParked(kThreadStopStepMs);
    if (!parked) CancelFileAccess(thread);
  }
  TerminateThread(thread, 0);
  WaitForSingleObject(thread, kThreadStopStepMs);
  // Closed by the destructor: a thread that is inside Start or Stop may be using the handle.
  return parked;
}

void ParkableThread::CheckTerminated() const {
  if (IsAskedToEnd()) throw EAbort();
}

void ParkableThread::PauseAfterFailure() const noexcept {
  WaitForSingleObject(wake_.Get(), kPauseAfterFailureMs);
}

void FetchReaderServices() {
  DLLGlobals::Helper();
  DLLGlobals::Globals();
  DLLGlobals::ShellHelper();
  DebugLog();
}

}  // namespace smh
