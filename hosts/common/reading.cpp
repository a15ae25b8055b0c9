#include "hosts/common/reading.h"

#include "hosts/common/host_error.h"
#include "hosts/common/texts/failure_texts.h"
#include "infra/runtime/text.h"

#include <algorithm>

namespace smh {

namespace {

constexpr DWORD kPollInterval = 10;

ReadState ReadTo(const Library& library, ReadState wanted, DWORD limit) {
  IStartupItemCollection& items = library.Items();
  CheckResult(items.Refresh(), texts::kCannotReadEntries, LibrarySlot::kReading);
  WaitForReader([&] { return items.GetReadState() >= wanted; }, limit);
  return static_cast<ReadState>(items.GetReadState());
}

void Choose(const Library& library, ReadScope scope) {
  CheckResult(library.Items().SetShowAllLocations(scope == ReadScope::kAll ? TRUE : FALSE),
              texts::kCannotChoose);
}

void RequireState(ReadState state, ReadState required) {
  if (state < required) throw HostError(texts::kReadingTooLong);
}

}  // namespace

bool WaitForReader(const std::function<bool()>& isComplete, DWORD limit) {
  const ULONGLONG start = GetTickCount64();
  while (!isComplete()) {
    if (GetTickCount64() - start > limit) return false;
    Sleep(kPollInterval);
  }
  return true;
}

ReadState ReadToEnd(const Library& library, ReadScope scope, DWORD limit) {
  Choose(library, scope);
  return ReadTo(library, kReadStateComplete, limit);
}

void RequireListed(ReadState state) {
  RequireState(state, kReadStateListed);
}

void RequireComplete(ReadState state) {
  RequireState(state, kReadStateComplete);
}

Listing TakeListing(const Library& library) {
  Listing listing;
  {
    const ListLock lock(library);
    const std::int32_t count = library.Items().GetCount();
    for (std::int32_t index = 0; index < count; ++index) {
      listing.wrappers.push_back(library.ItemAt(index));
      listing.items.push_back(ReadItemRecord(*listing.wrappers.back()));
    }
  }
  AssignShortIds(listing.items);
  return listing;
}

std::vector<ItemRecord> TakeSnapshot(const Library& library) {
  return TakeListing(library).items;
}

std::vector<ComPtr<IStartupItem>> ListedIn(const Library& library, std::int32_t location) {
  const ListLock lock(library);
  std::vector<ComPtr<IStartupItem>> items;
  const std::int32_t count = library.Items().GetCount();
  for (std::int32_t index = 0; index < count; ++index) {
    ComPtr<IStartupItem> item = library.ItemAt(index);
    if (item->GetLocation() == location) items.push_back(std::move(item));
  }
  return items;
}

void ResolveFiles(const Library& library, std::span<ItemRecord> items) {
  for (ItemRecord& item : items) {
    if (!item.command.empty()) item.file = library.ResolveCommandFile(item.command);
  }
}

void ReadAgain(const Library& library) {
  RequireListed(ReadTo(library, kReadStateListed, kReadingLimitMs));
}

void ReadForChanges(const Library& library, bool details) {
  Choose(library, ReadScope::kAll);
  RequireListed(ReadTo(library, details ? kReadStateComplete : kReadStateListed, kReadingLimitMs));
  CheckResult(library.Items().Stop(), texts::kCannotStopReading, LibrarySlot::kReading);
}

std::vector<ItemRecord> ReadAllItems(const Library& library) {
  RequireListed(ReadToEnd(library, ReadScope::kAll));
  return TakeSnapshot(library);
}

ComPtr<IStartupItem> FindListedItem(const Library& library, std::int32_t location, std::wstring_view name) {
  const ListLock lock(library);
  const std::int32_t count = library.Items().GetCount();
  for (std::int32_t index = 0; index < count; ++index) {
    ComPtr<IStartupItem> item = library.ItemAt(index);
    if (item->GetLocation() != location) continue;
    if (TakeText([&](BoundaryText* text) { return item->GetName(text); }) == name) return item;
  }
  return {};
}

}  // namespace smh
