#include "model/reading.h"

#include "core/contracts/uDllGlobals.h"
#include "infra/runtime/assertion.h"
#include "model/image_lists.h"
#include "model/item_list.h"
#include "model/location_reader.h"
#include "model/reader_state.h"
#include "model/uLocationStartup.h"

namespace smh {

namespace {

constexpr wchar_t kUnit[] = L"reading";

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
  ReaderState& reader = *g_reader;
  ScopedLock lock(reader.control);
  reader.thread.Stop();
  reader.readState.store(kReadStateReading);
  reader.thread.Start([&reader, showAll = reader.showAllLocations.load()] {
    TReadThread(showAll, reader.thread, reader.readState).Execute();
  });
}

void StopReading() {
  SMH_ASSERT(kUnit, !Items().Lock().IsHeldByCaller());
  ScopedLock lock(g_reader->control);
  g_reader->thread.Stop();
}

ReadState CurrentReadState() {
  return g_reader->readState.load();
}

bool ShowAllLocations() {
  return g_reader->showAllLocations.load();
}

void SetShowAllLocations(bool show) {
  g_reader->showAllLocations.store(show);
}

void EndReaderAtUnload(StopMode& mode) noexcept {
  ReaderState& reader = *g_reader;
  // Held by a thread that is inside Start or Stop: it would never get to run again.
  if (!reader.control.TryEnter()) {
    mode = StopMode::kUnloadBroken;
    return;
  }
  reader.thread.AskToPark();
  if (!reader.thread.EndParked(GetTickCount())) mode = StopMode::kUnloadBroken;
  reader.control.Leave();
}

}  // namespace smh
