#include "model/location_loading.h"

#include "infra/log/uStatisticsLog.h"
#include "infra/runtime/catch_failure.h"
#include "infra/runtime/text.h"
#include "model/reader_state.h"

#include <algorithm>
#include <set>
#include <string>

namespace smh {

namespace {

struct NameOrder {
  bool operator()(const std::wstring& a, const std::wstring& b) const noexcept {
    return CompareText(a, b) < 0;
  }
};

bool IsAscii(std::wstring_view text) noexcept {
  return std::ranges::all_of(text, [](wchar_t unit) { return unit < 0x80; });
}

}  // namespace

std::optional<LocationLoading::Load> LocationLoading::BeginLoad(Look look) {
  ScopedLock lock(Items().Lock());
  owesLook_ = owesLook_ || look == Look::kAgain;
  const unsigned generation = gate_.Generation();
  if (!gate_.IsBusy()) return Load{generation, ++loads_, owesLook_ ? Look::kAgain : Look::kForChanges};
  gate_.MarkLoadDue();
  return std::nullopt;
}

bool LocationLoading::IsCurrent(const Load& load) const noexcept {
  return gate_.Generation() == load.generation;
}

bool LocationLoading::AddOrUpdateItem(FoundEntry entry, const Load& load) {
  const ItemRef known = FindItem(LocationType(), entry.name);
  return known != nullptr ? UpdateItem(*known, entry.command, entry.isProtected, load)
                          : ListEntry(std::move(entry), load);
}

bool LocationLoading::UpdateItem(TStartupItem& item, std::wstring_view command, bool isProtected,
                                 const Load& load) {
  item.MarkFound(load.number);
  const auto isCurrent = [&] { return IsCurrent(load); };
  if (load.look == Look::kForChanges) {
    item.UpdateCommand(command, Items().Lock(), isCurrent);
  } else {
    item.LookAgain(command, isProtected, Items().Lock(), isCurrent);
  }
  if (item.IsLinkHeld()) MarkIncomplete();
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
    MarkIncomplete();
    return IsCurrent(load);
  });
  if (item->IsLinkHeld()) MarkIncomplete();
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
                                         const std::function<bool(TStartupItem&)>& lookFor) {
  for (const ItemRef& item : ItemsToLookFor(load)) {
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
  owesLook_ = owesLook_ && isIncomplete_;
  return true;
}

void LocationLoading::EndTwins(const Load& load) {
  ScopedLock lock(Items().Lock());
  for (int index = 0; index < Items().Count(); ++index) {
    const ItemRef item = Items().At(index);
    if (item->Location() == LocationType()) item->EndTwin(load.number);
  }
}

std::vector<ItemRef> LocationLoading::ItemsToLookFor(const Load& load) const {
  std::vector<ItemRef> missing;
  std::vector<ItemRef> found;
  {
    ScopedLock lock(Items().Lock());
    for (ItemRef& item : Items().Snapshot()) {
      if (item->Location() != LocationType()) continue;
      (item->WasFoundIn(load.number) ? found : missing).push_back(std::move(item));
    }
  }
  const auto isPlain = [](const ItemRef& item) { return IsAscii(item->Name()); };
  if (std::ranges::all_of(missing, isPlain)) return missing;
  // To the system they are the same, though not to the list.
  std::set<std::wstring, NameOrder> names;
  for (const ItemRef& item : found) names.insert(item->Name());
  std::erase_if(missing, [&](const ItemRef& item) { return names.contains(item->Name()); });
  return missing;
}

void LocationLoading::LogRemoval(const TStartupItem& item) const {
  item.Get([&](const ItemState& state) {
    LogFormat(L"Delete item \"%s\" in location \"%s\".", state.name, MemberName());
  });
}

}  // namespace smh
