#include "model/uLocationStartup.h"

#include "core/contracts/uDllGlobals.h"
#include "infra/runtime/assertion.h"
#include "infra/runtime/critical_section.h"
#include "infra/runtime/lazy.h"
#include "infra/runtime/text.h"
#include "model/checkpoint.h"
#include "model/reader_state.h"

namespace smh {

namespace {

constexpr wchar_t kUnit[] = L"uLocationStartup";

}  // namespace

int TLocationStartup::ExtractItem(bool, const ItemRef&) {
  SMH_ASSERT(kUnit, canModify_);
  return -1;
}

void TLocationStartup::InsertItem(bool, int, bool, const std::wstring&, const std::wstring&) {
  SMH_ASSERT(kUnit, canModify_);
}

void TLocationStartup::PutBackItem(bool) {
  SMH_ASSERT(kUnit, canModify_);
}

bool TLocationStartup::CanAcceptItem(const TStartupItem& item) {
  if (!canModify_) return false;
  const SharedText entryName = item.Get([](const ItemState& state) { return state.details.EntryName; });
  ScopedLock lock(Items().Lock());
  for (int i = 0; i < Items().Count(); ++i) {
    const ItemRef other = Items().At(i);
    if (other->Location() != LocationType()) continue;
    const bool same = other->Get(
        [&](const ItemState& state) { return SameLocaleText(state.details.EntryName, entryName); });
    if (same) return false;
  }
  return true;
}

int TLocationStartup::AddItem(const std::wstring&, const std::wstring&) {
  SMH_ASSERT(kUnit, canModify_);
  return -1;
}

void TLocationStartup::DeleteItem(const ItemRef&) {
  SMH_ASSERT(kUnit, canDelete_);
}

void TLocationStartup::EnableItem(const ItemRef&) {
  SMH_ASSERT(kUnit, canEnable_);
}

void TLocationStartup::DisableItem(const ItemRef&) {
  SMH_ASSERT(kUnit, canEnable_);
}

void TLocationStartup::ChangeItemCommand(const ItemRef&, const std::wstring&) {
  SMH_ASSERT(kUnit, canModify_);
}

void TLocationStartup::ShowItemLocation(const TStartupItem&) {}

void TLocationStartup::MoveItem(const ItemRef& item, TTypeStartupLocation target) {
  SMH_ASSERT(kUnit, canModify_);
  const std::wstring name = item->Name();
  const auto message = [&] {
    return Format(L"Error move item \"%s\" from \"%s\" to \"%s\".", name, MemberName(),
                  LocationMemberName(target));
  };
  RunLogged(
      [&] {
        ScopedLock lock(Items().Lock());
        if (!item->IsListed()) return;
        if (!ItemExists(*item)) {
          Items().Remove(*item);
          // It may only have been out of sight.
          gate_.MarkLoadDue();
          return;
        }
        TLocationStartup* const destination = FindLocation(target);
        SMH_ASSERT(kUnit, destination != nullptr && destination->CanAcceptItem(*item));
        const ItemState state = item->State();
        const bool checkpoint = DLLGlobals::UseBackupCheckpoints();
        const ScopedCheckpoint scope(checkpoint, ChangeKind::kMoving, item->GivenText());
        const int extracted = ExtractItem(checkpoint, item);
        const SharedText& entryName =
            state.details.EntryName.empty() ? item->GivenText() : state.details.EntryName;
        try {
          destination->InsertItem(checkpoint, extracted, state.isEnabled, std::wstring(state.details.Command),
                                  std::wstring(entryName));
        } catch (...) {
          PutBackItem(checkpoint);
          throw;
        }
      },
      message);
}

std::optional<TLocationStartup::Load> TLocationStartup::BeginLoad() {
  ScopedLock lock(Items().Lock());
  const unsigned generation = gate_.Generation();
  if (!gate_.IsBusy()) return Load{generation, ++loads_};
  gate_.MarkLoadDue();
  return std::nullopt;
}

bool TLocationStartup::IsCurrent(const Load& load) const noexcept {
  return gate_.Generation() == load.generation;
}

bool TLocationStartup::AddOrUpdateItem(FoundEntry entry, const Load& load) {
  const ItemRef known = FindItem(LocationType(), entry.name);
  return known != nullptr ? UpdateItem(*known, entry.command, load) : ListEntry(std::move(entry), load);
}

bool TLocationStartup::UpdateItem(TStartupItem& item, std::wstring_view command, const Load& load) {
  item.MarkFound(load.number);
  item.UpdateCommand(command, Items().Lock(), [&] { return IsCurrent(load); });
  return IsCurrent(load);
}

bool TLocationStartup::ListEntry(FoundEntry entry, const Load& load) {
  CheckTerminated();
  const auto item = std::make_shared<TStartupItem>(LocationType(), std::move(entry));
  item->MarkFound(load.number);
  const auto log = [&](std::wstring_view format) {
    item->Get([&](const ItemState& state) { LogFormat(format, state.name, MemberName()); });
  };
  const auto append = [&] {
    item->FillBasicInfo();
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

bool TLocationStartup::RemoveMissingItems(const Load& load) {
  ScopedLock lock(Items().Lock());
  if (!IsCurrent(load)) return false;
  Items().RemoveIf([&](const TStartupItem& item) {
    if (item.Location() != LocationType() || item.WasFoundIn(load.number)) return false;
    item.Get([&](const ItemState& state) {
      LogFormat(L"Delete item \"%s\" in location \"%s\".", state.name, MemberName());
    });
    return true;
  });
  return true;
}

using LocationList = std::vector<std::unique_ptr<TLocationStartup>>;

struct ModuleLocations {
  // The location-list lock: guards nothing but the making of the list. A leaf, except that the constructors
  // of the locations open registry keys and folders under it.
  CriticalSection lock;
  LocationMaker make = nullptr;
  Lazy<const LocationList> list{lock};
};

constinit ModuleGlobal<ModuleLocations> g_locations(L"uLocationStartup");

void SetLocationMaker(LocationMaker maker) {
  g_locations->make = maker;
}

const LocationList& Locations() {
  ModuleLocations& locations = *g_locations;
  return locations.list.Get([&locations] {
    LocationList list;
    for (const TTypeStartupLocation type : kLocationListOrder) {
      list.push_back(locations.make(LocationRowOf(type)));
    }
    return list;
  });
}

TLocationStartup* FindLocation(TTypeStartupLocation type) {
  for (const auto& location : Locations()) {
    if (location->LocationType() == type) return location.get();
  }
  return nullptr;
}

}  // namespace smh
