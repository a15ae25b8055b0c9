// A background reader: one thread at a time that ends only when asked, and that can be left behind when the
// module is unloaded.
#pragma once

#include "infra/log/uStatisticsLog.h"
#include "infra/runtime/exceptions.h"
#include "infra/runtime/handle.h"

#include <atomic>
#include <functional>

namespace smh {

// How long a stop waits before it cancels the reader's file access, and again between two tries; a wait for a
// reader that is not waited for endlessly goes in such steps.
inline constexpr DWORD kThreadStopStepMs = 100;
inline constexpr DWORD kThreadUnloadLimitMs = 5000;

// The owner serialises Start, Stop and the unload; the rest may be called from any thread. Stop, or
// EndParked, before destroying it.
class ParkableThread {
 public:
  // Raises EOSError.
  ParkableThread();
  ParkableThread(const ParkableThread&) = delete;
  ParkableThread& operator=(const ParkableThread&) = delete;

  // Runs `read`, which must not throw, on a new thread with COM initialised; returns when that thread runs.
  // No other may be running. Raises EOSError.
  void Start(std::function<void()> read);
  // Asks the reader to end and waits for it as patient_wait.h says: the reader may be waiting for an object
  // that lives in the caller's apartment. A blocked file access of its is cancelled where Windows can do
  // that. Nothing when none runs.
  void Stop() noexcept;

  // At unload, with the loader's lock held, a reader cannot exit: its last act is to signal that it has
  // finished and to park, and it is ended parked. Askers may ask several readers before they end the first.
  void AskToPark() noexcept;
  // Waits until `limit` milliseconds after `since` (GetTickCount) for the reader to park and ends it, parked
  // or not; whether it was parked or none ran.
  bool EndParked(DWORD since, DWORD limit = kThreadUnloadLimitMs) noexcept;

  // Whether the thread was asked to end, and has not begun anew since.
  bool IsAskedToEnd() const noexcept { return end_.load() != EndMode::kRun; }
  // Raises EAbort, which unwinds to the reader's loop, when a reader was asked to end.
  void CheckTerminated() const;
  // Manual-reset; signalled when the reader is asked to end, and by whoever has work for it. After a reset
  // the reader looks for both again before it waits.
  HANDLE Wake() const noexcept { return wake_.Get(); }

  // Runs one step of the reader, on its thread: false when the reader was asked to end. Any other failure is
  // logged, waited upon, lest a lasting one become a busy loop, and survived.
  template <typename Step>
  bool RunStep(Step&& step) const noexcept {
    try {
      step();
      return true;
    } catch (const EAbort&) {
      return false;
    } catch (...) {
      LogCurrentException();
      PauseAfterFailure();
      return true;
    }
  }

 private:
  enum class EndMode { kRun, kExit, kPark };

  static DWORD WINAPI Procedure(void* self) noexcept;
  void Run() noexcept;
  void AskToEnd(EndMode mode) noexcept;
  void PauseAfterFailure() const noexcept;

  ScopedHandle wake_;
  ScopedHandle running_;
  ScopedHandle finished_;
  ScopedHandle never_;
  ScopedHandle thread_;
  std::function<void()> read_;
  std::atomic<EndMode> end_{EndMode::kRun};
};

// Fetches the services that a reader would fetch on first use: at unload it could not load a library, with
// the loader's lock held. Ends the process when one is missing, see CheckInterface.
void FetchReaderServices();

}  // namespace smh
