#include "model/reading.h"

#include "core/contracts/StartupManagerHelper.h"
#include "core/contracts/uDllGlobals.h"
#include "infra/log/uAxDebug.h"
#include "infra/log/uStatisticsLog.h"
#include "infra/runtime/assertion.h"
#include "infra/runtime/catch_failure.h"
#include "model/effective_states.h"
#include "model/extended_info.h"
#include "model/image_lists.h"
#include "model/item_list.h"
#include "model/parkable_thread.h"
#include "model/reader_state.h"
#include "model/uLocationStartup.h"
#include "sysutil/network_roots.h"

#include <atomic>

namespace smh {

namespace {

constexpr wchar_t kUnit[] = L"reading";
constexpr DWORD kPollIntervalMs = 1000;

void ReadTraced(TLocationStartup& location, Look look) {
  const DebugScope trace(&location, L"ReadItems", {location.Row().className.data()});
  location.ReadItems(look);
}

// One run of the reader, on its thread from beginning to end; takes no lock but what the locations and items
// take.
class TReadThread {
 public:
  // Lives on `thread`; `state` is exchanged for 1 and 2 as the passes finish.
  TReadThread(bool showAll, const ParkableThread& thread, std::atomic<ReadState>& state)
      : showAll_(showAll), thread_(thread), state_(state) {}

  // Returns when the reader was asked to end. A failure that nothing below has caught is logged and survived.
  void Execute() noexcept;

 private:
  bool TakesPart(const TLocationStartup& location) const noexcept;
  void ReadLocations();
  void DropOthers();
  void ReadEffectiveStates();
  void ReadExtendedInfo();
  void WaitForChange();

  const bool showAll_;
  const ParkableThread& thread_;
  std::atomic<ReadState>& state_;
  // Begins anew with every poll.
  ReadingPass pass_{[this] { return thread_.IsAskedToEnd(); }};
};

void TReadThread::Execute() noexcept {
  bool goOn = thread_.RunStep([this] { ReadLocations(); });
  if (goOn) state_.exchange(kReadStateListed);
  while (goOn) {
    goOn = thread_.RunStep([this] {
      ReadExtendedInfo();
      if (state_.load() != kReadStateComplete) state_.exchange(kReadStateComplete);
      CheckTerminated();
      SaveLog();
    });
    goOn = goOn && thread_.RunStep([this] { WaitForChange(); });
  }
  SaveLog();
}

bool TReadThread::TakesPart(const TLocationStartup& location) const noexcept {
  return showAll_ || IsReadByDefault(location.LocationType());
}

void TReadThread::ReadLocations() {
  DropOthers();
  ReadEffectiveStates();
  for (const auto& location : Locations()) {
    CheckTerminated();
    if (TakesPart(*location)) ReadTraced(*location, Look::kAgain);
  }
}

// Before the entries: each has its answer when it is listed.
void TReadThread::ReadEffectiveStates() {
  EffectiveStates* const states = TheEffectiveStates();
  if (states == nullptr) return;
  const auto read = [&] { states->Read(showAll_); };
  CatchFailure(read, [] { LogCurrentException(); });
}

// What the locations listed that do not take part any more.
void TReadThread::DropOthers() {
  ScopedLock lock(Items().Lock());
  Items().RemoveIf(
      [this](const TStartupItem& item) { return !showAll_ && !IsReadByDefault(item.Location()); });
}

void TReadThread::ReadExtendedInfo() {
  std::vector<ItemRef> items;
  {
    ScopedLock lock(Items().Lock());
    items = Items().Snapshot();
  }
  ExtendedPass pass(UpcomingDetails(items));
  for (ItemRef& item : items) {
    CheckTerminated();
    if (item->IsListed() && item->NeedsExtendedInfo()) item->ReadExtendedInfo(pass);
    item.reset();
  }
}

void TReadThread::WaitForChange() {
  ResetEvent(thread_.Wake());
  // A request to end that came before the reset must not be waited away.
  CheckTerminated();
  bool isAnyRead = false;
  while (!isAnyRead) {
    if (WaitForSingleObject(thread_.Wake(), kPollIntervalMs) == WAIT_OBJECT_0) return;
    pass_.Begin();
    if (EffectiveStates* const states = TheEffectiveStates(); states != nullptr && states->IsChanged()) {
      ReadEffectiveStates();
    }
    // All of them, once: one that changes without end holds up neither the others nor what follows a poll.
    for (const auto& location : Locations()) {
      CheckTerminated();
      if (!TakesPart(*location)) continue;
      const bool isRetryDue = location->IsRetryDue();
      if (!location->IsChanged() && !isRetryDue) continue;
      ReadTraced(*location, Look::kForChanges);
      isAnyRead = true;
    }
  }
}

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
  const ScopedPatientLock lock(reader.control);
  reader.thread.Stop();
  reader.readState.store(kReadStateReading);
  reader.thread.Start([&reader, showAll = reader.showAllLocations.load()] {
    TReadThread(showAll, reader.thread, reader.readState).Execute();
  });
}

void StopReading() {
  SMH_ASSERT(kUnit, !Items().Lock().IsHeldByCaller());
  const ScopedPatientLock lock(g_reader->control);
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
  const DWORD since = GetTickCount();
  // The reader may be waiting for it, and the caller cannot come back to leave it.
  while (Items().Lock().IsHeldByCaller()) UnlockItems();
  const auto isEndedParked = [&] {
    reader.thread.AskToPark();
    return reader.thread.EndParked(since);
  };
  reader.thread.AskToPark();
  if (!reader.control.TryEnter(kThreadUnloadLimitMs)) {
    // Whoever has it waits for the reader, or for a new one to run, which cannot be before this ends. The
    // reader must not outlive the module all the same.
    isEndedParked();
    mode = StopMode::kUnloadBroken;
    return;
  }
  if (!isEndedParked()) mode = StopMode::kUnloadBroken;
  reader.control.Leave();
}

}  // namespace smh
