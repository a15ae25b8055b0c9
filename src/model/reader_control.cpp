#include "model/reader_control.h"

#include "core/uDllGlobals.h"
#include "infra/assertion.h"
#include "infra/critical_section.h"
#include "infra/handle.h"
#include "infra/import_function.h"
#include "infra/uStatisticsLog.h"
#include "model/image_lists.h"
#include "model/read_thread.h"
#include "model/uLocationStartup.h"

#include <objbase.h>

#include <atomic>
#include <utility>

namespace smh {

namespace {

constexpr wchar_t kUnit[] = L"uLocationStartup";
constexpr DWORD kUnloadLimitMs = 5000;
// How long a stop waits before it cancels the reader's file access, and again between two tries.
constexpr DWORD kCancelIntervalMs = 100;

enum class EndMode { kRun, kExit, kPark };

HANDLE MakeEvent() {
  const HANDLE event = CreateEventW(nullptr, TRUE, FALSE, nullptr);
  if (event == nullptr) RaiseLastOSError();
  return event;
}

// Everything of the reader that outlives one thread.
struct ReaderState {
  // The control lock, outermost of the module: serialises start and stop.
  CriticalSection control;
  ScopedHandle wake{MakeEvent()};
  ScopedHandle running{MakeEvent()};
  ScopedHandle finished{MakeEvent()};
  ScopedHandle never{MakeEvent()};
  ScopedHandle thread;
  std::atomic<EndMode> end{EndMode::kRun};
  std::atomic<ReadState> readState{kReadStateReading};
};

ReaderState* g_reader = nullptr;

bool IsAskedToEnd() noexcept {
  return g_reader->end.load() != EndMode::kRun;
}

// One reader: COM for the thread, the passes, the waits. Ends only when asked to.
void Read(bool showAll) noexcept {
  TReadThread(showAll, g_reader->wake.Get(), g_reader->readState).Execute();
  // One that ended for a reason of its own must not let the thread exit: at unload that could not finish.
  while (!IsAskedToEnd()) WaitForSingleObject(g_reader->wake.Get(), kCancelIntervalMs);
}

DWORD WINAPI ReaderProcedure(void* showAll) noexcept {
  SetEvent(g_reader->running.Get());
  const HRESULT com = CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
  Read(showAll != nullptr);
  if (g_reader->end.load() == EndMode::kPark) {
    // The loader's lock is held until the module is gone: nothing of it may run after this call.
    SignalObjectAndWait(g_reader->finished.Get(), g_reader->never.Get(), INFINITE, FALSE);
  }
  if (SUCCEEDED(com)) CoUninitialize();
  return 0;
}

// Windows before Vista lacks it.
void CancelFileAccess(HANDLE thread) noexcept {
  using Function = BOOL(WINAPI*)(HANDLE);
  const auto cancel = ImportFunction<Function>(GetModuleHandleW(L"kernel32.dll"), "CancelSynchronousIo");
  if (cancel != nullptr) cancel(thread);
}

void AskToEnd(EndMode mode) noexcept {
  g_reader->end.store(mode);
  SetEvent(g_reader->wake.Get());
}

// The control lock is held.
void StopThread() noexcept {
  const HANDLE thread = g_reader->thread.Get();
  if (thread == nullptr) return;
  AskToEnd(EndMode::kExit);
  while (WaitForSingleObject(thread, kCancelIntervalMs) == WAIT_TIMEOUT) CancelFileAccess(thread);
  g_reader->thread.Reset();
  g_reader->end.store(EndMode::kRun);
}

// Whether the thread has parked or ended within the limit.
bool WaitUntilParked(HANDLE thread) noexcept {
  const HANDLE ends[] = {g_reader->finished.Get(), thread};
  for (DWORD waited = 0; waited < kUnloadLimitMs; waited += kCancelIntervalMs) {
    if (WaitForMultipleObjects(2, ends, FALSE, kCancelIntervalMs) <= WAIT_OBJECT_0 + 1) return true;
    CancelFileAccess(thread);
  }
  return false;
}

// Makes what the reader would make on first use. A module loaded or asked for a function by the reader while
// the host unloads this one would hold the unload up until its limit.
void PrepareForReader() {
  Locations();
  DLLGlobals::Helper();
  DLLGlobals::Globals();
  DLLGlobals::ShellHelper();
  DLLGlobals::FileRater();
  LargeImageList();
}

}  // namespace

void StartReading() {
  SMH_ASSERT(kUnit, !Items().Lock().IsHeldByCaller());
  PrepareForReader();
  ScopedLock lock(g_reader->control);
  StopThread();
  ResetEvent(g_reader->wake.Get());
  ResetEvent(g_reader->running.Get());
  g_reader->readState.store(kReadStateReading);
  g_reader->end.store(EndMode::kRun);
  void* const showAll = ShowAllLocations() ? g_reader : nullptr;
  ScopedHandle thread(CreateThread(nullptr, 0, ReaderProcedure, showAll, CREATE_SUSPENDED, nullptr));
  if (!thread) RaiseLastOSError();
  g_reader->thread = std::move(thread);
  ResumeThread(g_reader->thread.Get());
  // A thread that has not begun to run when the module is unloaded would never begin.
  WaitForSingleObject(g_reader->running.Get(), INFINITE);
}

void StopReading() {
  SMH_ASSERT(kUnit, !Items().Lock().IsHeldByCaller());
  ScopedLock lock(g_reader->control);
  StopThread();
}

ReadState CurrentReadState() noexcept {
  return g_reader->readState.load();
}

void CheckTerminated() {
  if (IsAskedToEnd()) throw EAbort();
}

bool IsReadByDefault(TTypeStartupLocation location) noexcept {
  switch (location) {
    case sulFolderUser:
    case sulFolderCommon:
    case sulRegistryUserRun:
    case sulRegistryUserRunOnce:
    case sulRegistryCommonRun:
    case sulRegistryCommonRunOnce:
      return true;
    default:
      return false;
  }
}

void StartReader() {
  g_reader = new ReaderState();
}

void StopReaderAtUnload(StopMode& mode) noexcept {
  // Held by a thread that is inside Start or Stop: it would never get to run again.
  if (!g_reader->control.TryEnter()) {
    mode = StopMode::kUnloadBroken;
    return;
  }
  if (const HANDLE thread = g_reader->thread.Get()) {
    AskToEnd(EndMode::kPark);
    if (!WaitUntilParked(thread)) mode = StopMode::kUnloadBroken;
    TerminateThread(thread, 0);
    WaitForSingleObject(thread, kCancelIntervalMs);
  }
  g_reader->control.Leave();
  if (mode == StopMode::kUnload) delete std::exchange(g_reader, nullptr);
}

}  // namespace smh
