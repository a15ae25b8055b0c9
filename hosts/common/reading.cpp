#include "hosts/common/reading.h"

#include "hosts/common/host_error.h"
#include "infra/runtime/text.h"

#include <algorithm>

namespace smh {

namespace {

constexpr DWORD kPollInterval = 10;

void RequireState(ReadState state, ReadState required) {
  if (state < required) throw HostError(L"Reading took more than a minute: this is not all that there is.");
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
  IStartupItemCollection& items = library.Items();
  CheckResult(items.SetShowAllLocations(scope == ReadScope::kAll ? TRUE : FALSE),
              L"Cannot choose the locations");
  CheckResult(items.Refresh(), L"Cannot read the entries", LibrarySlot::kReading);
  WaitForReader([&items] { return items.GetReadState() == kReadStateComplete; }, limit);
  return static_cast<ReadState>(items.GetReadState());
}

void RequireListed(ReadState state) {
  RequireState(state, kReadStateListed);
}

void RequireComplete(ReadState state) {
  RequireState(state, kReadStateComplete);
}

std::vector<ItemRecord> TakeSnapshot(const Library& library) {
  const ListLock lock(library);
  std::vector<ItemRecord> records;
  const std::int32_t count = library.Items().GetCount();
  records.reserve(static_cast<std::size_t>(count));
  for (std::int32_t index = 0; index < count; ++index) {
    records.push_back(ReadItemRecord(*library.ItemAt(index)));
  }
  return records;
}

void ResolveFiles(const Library& library, std::span<ItemRecord> items) {
  for (ItemRecord& item : items) {
    if (!item.command.empty()) item.file = library.ResolveCommandFile(item.command);
  }
}

std::vector<ItemRecord> ReadAllItems(const Library& library) {
  RequireListed(ReadToEnd(library, ReadScope::kAll));
  return TakeSnapshot(library);
}

std::optional<ItemRecord> FindAddedEntry(const Library& library, std::int32_t index, std::int32_t location,
                                         const std::wstring& name) {
  const std::wstring file = L'\\' + name + L".lnk";
  const auto isIt = [&](const ItemRecord& item) {
    return item.location == location && item.enabled &&
           (item.root.empty() ? EndsText(file, item.name) : item.value && SameText(*item.value, name));
  };
  const std::vector<ItemRecord> list = TakeSnapshot(library);
  const auto place = static_cast<std::size_t>(index);
  if (place < list.size() && isIt(list[place])) return list[place];
  const auto found = std::ranges::find_if(list, isIt);
  return found == list.end() ? std::nullopt : std::optional(*found);
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
