#include "model/reading.h"

#include "core/contracts/uDllGlobals.h"
#include "infra/runtime/assertion.h"
#include "infra/runtime/critical_section.h"
#include "model/image_lists.h"
#include "model/location_reader.h"
#include "model/parkable_thread.h"
#include "model/uLocationStartup.h"

#include <atomic>
#include <utility>

namespace smh {

namespace {

constexpr wchar_t kUnit[] = L"uLocationStartup";

// Everything of the reader that outlives one thread.
struct ReaderState {
  // The control lock, outermost of the module: serialises start and stop.
  CriticalSection control;
  ReaderThread thread;
  std::atomic<ReadState> readState{kReadStateReading};
};

ReaderState* g_reader = nullptr;

// Makes what the reader would make on first use.
void PrepareForReader() {
  Locations();
  FetchReaderServices();
  DLLGlobals::FileRater();
  LargeImageList();
}

}  // namespace

void StartReading() {
  SMH_ASSERT(kUnit, !Items().Lock().IsHeldByCaller());
  PrepareForReader();
  ScopedLock lock(g_reader->control);
  g_reader->thread.Stop();
  g_reader->readState.store(kReadStateReading);
  g_reader->thread.Start([showAll = ShowAllLocations()] {
    TReadThread(showAll, g_reader->thread, g_reader->readState).Execute();
  });
}

void StopReading() {
  SMH_ASSERT(kUnit, !Items().Lock().IsHeldByCaller());
  ScopedLock lock(g_reader->control);
  g_reader->thread.Stop();
}

ReadState CurrentReadState() noexcept {
  return g_reader->readState.load();
}

void CheckTerminated() {
  g_reader->thread.CheckTerminated();
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
  g_reader->thread.AskToPark();
  if (!g_reader->thread.EndParked(GetTickCount())) mode = StopMode::kUnloadBroken;
  g_reader->control.Leave();
  if (mode == StopMode::kUnload) delete std::exchange(g_reader, nullptr);
}

}  // namespace smh
