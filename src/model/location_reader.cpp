#include "model/location_reader.h"

#include "infra/log/uAxDebug.h"
#include "infra/log/uStatisticsLog.h"
#include "model/extended_info.h"
#include "model/item_list.h"
#include "model/parkable_thread.h"
#include "model/reader_state.h"
#include "model/uLocationStartup.h"

namespace smh {

namespace {

constexpr DWORD kPollIntervalMs = 1000;

void ReadTraced(TLocationStartup& location) {
  const DebugScope trace(&location, L"ReadItems", {location.Row().className.data()});
  location.ReadItems();
}

}  // namespace

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
  for (const auto& location : Locations()) {
    CheckTerminated();
    if (TakesPart(*location)) ReadTraced(*location);
  }
}

void TReadThread::ReadExtendedInfo() {
  std::vector<ItemRef> items;
  {
    ScopedLock lock(Items().Lock());
    items = Items().Snapshot();
  }
  ExtendedPass pass;
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
  for (;;) {
    for (const auto& location : Locations()) {
      if (!TakesPart(*location)) continue;
      CheckTerminated();
      if (!location->IsChanged()) continue;
      ReadTraced(*location);
      return;
    }
    if (WaitForSingleObject(thread_.Wake(), kPollIntervalMs) == WAIT_OBJECT_0) return;
    CheckTerminated();
  }
}

}  // namespace smh
