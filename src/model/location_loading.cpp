#include "model/location_loading.h"

#include "infra/log/uStatisticsLog.h"
#include "infra/runtime/catch_failure.h"
#include "model/reader_state.h"

namespace smh {

std::optional<LocationLoading::Load> LocationLoading::BeginLoad() {
  ScopedLock lock(Items().Lock());
  const unsigned generation = gate_.Generation();
  if (!gate_.IsBusy()) return Load{generation, ++loads_};
  gate_.MarkLoadDue();
  return std::nullopt;
}

bool LocationLoading::IsCurrent(const Load& load) const noexcept {
  return gate_.Generation() == load.generation;
}

bool LocationLoading::AddOrUpdateItem(FoundEntry entry, const Load& load) {
  const ItemRef known = FindItem(LocationType(), entry.name);
  return known != nullptr ? UpdateItem(*known, entry.command, load) : ListEntry(std::move(entry), load);
}

bool LocationLoading::UpdateItem(TStartupItem& item, std::wstring_view command, const Load& load) {
  item.MarkFound(load.number);
  item.UpdateCommand(command, Items().Lock(), [&] { return IsCurrent(load); });
  return IsCurrent(load);
}

bool LocationLoading::ListEntry(FoundEntry entry, const Load& load) {
  CheckTerminated();
  const auto item = std::make_shared<TStartupItem>(LocationType(), std::move(entry));
  item->MarkFound(load.number);
  const auto log = [&](std::wstring_view format) {
    item->Get([&](const ItemState& state) { LogFormat(format, state.name, MemberName()); });
  };
  const auto append = [&] {
    item->FillBasicInfo();
    // A stop cancels what the disk is asked for, and that is no answer.
    CheckTerminated();
    ScopedLock lock(Items().Lock());
    if (!IsCurrent(load)) return false;
    Items().Append(item);
    return true;
  };
  const bool isCurrent = CatchFailure(append, [&] {
    LogCurrentException();
    log(L"Error add item \"%s\" in location \"%s\".");
    return IsCurrent(load);
  });
  if (item->IsListed()) log(L"Add item \"%s\" in location \"%s\".");
  return isCurrent;
}

bool LocationLoading::RemoveItem(TStartupItem& item, const Load& load) {
  ScopedLock lock(Items().Lock());
  if (!IsCurrent(load)) return false;
  LogRemoval(item);
  Items().Remove(item);
  return true;
}

bool LocationLoading::RemoveMissingItems(const Load& load,
                                         const std::function<bool(const TStartupItem&)>& lookFor) {
  for (const ItemRef& item : ItemsNotFound(load)) {
    CheckTerminated();
    if (!lookFor(*item)) return false;
  }
  ScopedLock lock(Items().Lock());
  if (!IsCurrent(load)) return false;
  Items().RemoveIf([&](const TStartupItem& item) {
    if (item.Location() != LocationType() || item.WasFoundIn(load.number)) return false;
    LogRemoval(item);
    return true;
  });
  return true;
}

void LocationLoading::EndTwins(const Load& load) {
  ScopedLock lock(Items().Lock());
  for (int index = 0; index < Items().Count(); ++index) {
    const ItemRef item = Items().At(index);
    if (item->Location() == LocationType()) item->EndTwin(load.number);
  }
}

std::vector<ItemRef> LocationLoading::ItemsNotFound(const Load& load) const {
  ScopedLock lock(Items().Lock());
  std::vector<ItemRef> items = Items().Snapshot();
  std::erase_if(items, [&](const ItemRef& item) {
    return item->Location() != LocationType() || item->WasFoundIn(load.number);
  });
  return items;
}

void LocationLoading::LogRemoval(const TStartupItem& item) const {
  item.Get([&](const ItemState& state) {
    LogFormat(L"Delete item \"%s\" in location \"%s\".", state.name, MemberName());
  });
}

}  // namespace smh
