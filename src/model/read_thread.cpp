#include "model/read_thread.h"

#include "infra/uStatisticsLog.h"
#include "model/reader_control.h"
#include "model/uLocationStartup.h"

namespace smh {

namespace {

constexpr DWORD kPollIntervalMs = 1000;

}  // namespace

template <typename Step>
bool TReadThread::RunStep(Step&& step) noexcept {
  try {
    step();
    return true;
  } catch (const EAbort&) {
    return false;
  } catch (...) {
    LogCurrentException();
    // A lasting failure must not become a busy loop.
    WaitForSingleObject(wake_, kPollIntervalMs);
    return true;
  }
}

void TReadThread::Execute() noexcept {
  bool goOn = RunStep([this] { ReadLocations(); });
  if (goOn) state_.exchange(kReadStateListed);
  while (goOn) {
    goOn = RunStep([this] {
      ReadExtendedInfo();
      if (state_.load() != kReadStateComplete) state_.exchange(kReadStateComplete);
      CheckTerminated();
      SaveLog();
    });
    goOn = goOn && RunStep([this] { WaitForChange(); });
  }
  SaveLog();
}

bool TReadThread::TakesPart(const TLocationStartup& location) const noexcept {
  return showAll_ || IsReadByDefault(location.LocationType());
}

void TReadThread::ReadLocations() {
  for (const auto& location : Locations()) {
    CheckTerminated();
    if (TakesPart(*location)) location->ReadItems();
  }
}

void TReadThread::ReadExtendedInfo() {
  std::vector<ItemRef> items;
  {
    ScopedLock lock(Items().Lock());
    items = Items().Snapshot();
  }
  for (ItemRef& item : items) {
    CheckTerminated();
    if (item->IsListed() && item->NeedsExtendedInfo()) item->ReadExtendedInfo();
    item.reset();
  }
}

void TReadThread::WaitForChange() {
  ResetEvent(wake_);
  // A request to end that came before the reset must not be waited away.
  CheckTerminated();
  for (;;) {
    for (const auto& location : Locations()) {
      if (!TakesPart(*location)) continue;
      CheckTerminated();
      if (!location->IsChanged()) continue;
      location->ReadItems();
      return;
    }
    if (WaitForSingleObject(wake_, kPollIntervalMs) == WAIT_OBJECT_0) return;
    CheckTerminated();
  }
}

}  // namespace smh
