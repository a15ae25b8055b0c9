#include "model/uLocationStartup.h"

#include "infra/log/uStatisticsLog.h"
#include "infra/runtime/assertion.h"
#include "infra/runtime/catch_failure.h"
#include "infra/runtime/critical_section.h"
#include "infra/runtime/lazy.h"
#include "infra/runtime/text.h"
#include "model/change_lock.h"
#include "model/change_refused.h"

#include <algorithm>
#include <utility>

namespace smh {

namespace {

constexpr wchar_t kUnit[] = L"uLocationStartup";

// The longest command line of the system, in code units.
constexpr std::size_t kLongestCommand = 32'766;

// The last tries of a load that fails for good are half a minute apart.
constexpr unsigned kMostFailures = 6;

constexpr wchar_t kAddLine[] = L"Error add item \"%s\" (%s) in location \"%s\".";
constexpr wchar_t kDeleteLine[] = L"Error delete item \"%s\" in location \"%s\".";
constexpr wchar_t kEnableLine[] = L"Error enable item \"%s\" in location \"%s\".";
constexpr wchar_t kDisableLine[] = L"Error disable item \"%s\" in location \"%s\".";
constexpr wchar_t kSwitchOffLine[] = L"Error switch off item \"%s\" in location \"%s\".";
constexpr wchar_t kSwitchOnLine[] = L"Error switch on item \"%s\" in location \"%s\".";
constexpr wchar_t kMoveLine[] = L"Error move item \"%s\" from \"%s\" to \"%s\".";
// Spelled so, and without a full stop, on purpose: users search their logs for it.
constexpr wchar_t kChangeLine[] = L"Error change item \"%s\" comand on \"%s\" in location \"%s\"";

// The entry is there; what it takes to show it failed.
constexpr wchar_t kNotListedYet[] = L"the entry was added and is listed with the next reading";

// Runs a change. When it fails, logs the exception and the line, by `logLine`, and raises it again; when it
// is refused without one, logs the line.
template <typename Work, typename LogLine>
ChangeAnswer RunLogged(Work&& work, LogLine&& logLine) {
  ChangeAnswer answer = CatchFailure(work, [&]() -> ChangeAnswer {
    LogCurrentException();
    logLine();
    throw;
  });
  if (answer.kind == ChangeAnswer::Kind::kRefused) logLine();
  return answer;
}

void RequireCommandText(std::wstring_view command) {
  if (command.empty()) throw EChangeRefused(ERROR_INVALID_PARAMETER, L"The command is empty.");
  if (command.size() > kLongestCommand) RaiseTooLong(L"command");
}

// As a load would list it; not listed. Touches the disk.
ItemRef CompleteItem(TTypeStartupLocation location, const FoundEntry& entry) {
  auto item = std::make_shared<TStartupItem>(location, entry);
  item->FillBasicInfo();
  return item;
}

// The item's fields while it is listed.
std::optional<ItemState> ListedState(const TStartupItem& item) {
  ScopedLock lock(Items().Lock());
  if (!item.IsListed()) return std::nullopt;
  return item.State();
}

}  // namespace

void TLocationStartup::ReadItems(Look look) {
  const auto load = [&] {
    TakeIncomplete();
    LoadItems(look);
    return !TakeIncomplete();
  };
  const bool isLoaded = CatchFailure(load, [this] {
    LogCurrentException();
    LogFormat(L"Error load item list for location \"%s\".", MemberName());
    return false;
  });
  failedLoads_ = isLoaded ? 0 : std::min(failedLoads_ + 1, kMostFailures);
  pollsToRetry_ = isLoaded ? 0 : 1u << (failedLoads_ - 1);
}

bool TLocationStartup::IsRetryDue() noexcept {
  return pollsToRetry_ != 0 && --pollsToRetry_ == 0;
}

bool TLocationStartup::CanAcceptItem(const TStartupItem& item) {
  if (!canModify_) return false;
  const SharedText entryName = item.Get([](const ItemState& state) { return state.details.EntryName; });
  std::vector<ItemRef> items;
  {
    ScopedLock lock(Items().Lock());
    items = Items().Snapshot();
  }
  // Comparing as the locale has it is slow: nobody else waits for it.
  return std::ranges::none_of(items, [&](const ItemRef& other) {
    if (other->Location() != LocationType() || !other->IsListed()) return false;
    const SharedText name = other->Get([](const ItemState& state) { return state.details.EntryName; });
    return SameLocaleText(name, entryName);
  });
}

void TLocationStartup::ShowItemLocation(const TStartupItem&) {}

const wchar_t* TLocationStartup::Unit() const noexcept {
  return kUnit;
}

std::unique_ptr<EntryTarget> TLocationStartup::PlanAdd(const std::wstring&, const std::wstring&, bool) {
  SMH_ASSERT(kUnit, canModify_);
  return nullptr;
}

std::unique_ptr<EntryTarget> TLocationStartup::PlanInsert(EntrySource&, const ItemState&, bool) {
  SMH_ASSERT(kUnit, canModify_);
  return nullptr;
}

std::unique_ptr<EntryTarget> TLocationStartup::PlanCommand(EntrySource&, const std::wstring&, bool) {
  SMH_ASSERT(kUnit, canModify_);
  return nullptr;
}

ChangeAnswer TLocationStartup::RunChange(ChangeKind kind, const ItemRef& item, const ErrorLine& line,
                                         const ChangeWork& work) {
  if (item->Location() != LocationType()) return ChangeAnswer::Nothing();
  const std::wstring name = item->Name();
  return RunLogged(
      [&] {
        const ScopedChange turn;
        const ChangeGate::Scope change(Gate());
        const std::optional<ItemState> listed = ListedState(*item);
        return listed ? ChangeEntry(kind, item, *listed, work) : ChangeAnswer::Gone();
      },
      [&] { line(name); });
}

// The entry is read when the checkpoint has the journal: another process may have changed it until then.
ChangeAnswer TLocationStartup::ChangeEntry(ChangeKind kind, const ItemRef& item, const ItemState& listed,
                                           const ChangeWork& work) {
  ChangeCheckpoint checkpoint(kind, TitleOf(listed));
  const std::unique_ptr<EntrySource> source = OpenSource(listed, checkpoint.IsRecorded());
  if (source != nullptr) return work(*source, listed, checkpoint);
  EnterRemoval(*item);
  // It may only have been out of sight.
  Gate().MarkLoadDue();
  return ChangeAnswer::Gone();
}

std::wstring TLocationStartup::TitleOf(const ItemState& listed) const {
  if (!listed.givenText.empty()) return std::wstring(listed.givenText);
  std::wstring name = NameInPlace(listed);
  return name.empty() ? std::wstring(listed.details.Caption) : name;
}

void TLocationStartup::RequireAsListed(const ItemRef& item, const ItemState& listed,
                                       const EntrySource& source) {
  const FoundEntry now = source.Found();
  const bool isSame = now.name == listed.name && now.caption == listed.givenText;
  if (isSame && source.ShownCommand() == listed.details.Command) return;
  if (isSame) {
    item->Renew(now.command, Items().Lock());
  } else {
    EnterRemoval(*item);
    Gate().MarkLoadDue();
  }
  RaiseChangedMeanwhile();
}

bool TLocationStartup::Carry(EntryTarget* target, const TLocationStartup& to, EntrySource* source,
                             ChangeCheckpoint& checkpoint) {
  std::optional<SwitchOwner> before;
  std::optional<SwitchOwner> after;
  if (source != nullptr) before = SwitchOwner{LocationType(), source->Found(), source->HasTwin()};
  if (target != nullptr) after = SwitchOwner{to.LocationType(), target->Found(), target->HasTwin()};
  EffectiveStates* const states = TheEffectiveStates();
  std::unique_ptr<SwitchSteps> switches;
  if (states != nullptr) {
    switches =
        states->PlanCarry(before ? &*before : nullptr, after ? &*after : nullptr, checkpoint.IsRecorded());
  }
  return CarryWith(target, source, switches.get(), checkpoint);
}

bool TLocationStartup::CarryWith(EntryTarget* target, EntrySource* source, SwitchSteps* switches,
                                 ChangeCheckpoint& checkpoint) {
  bool isDone = false;
  const auto finish = [&]() noexcept {
    if (!isDone) Gate().MarkLoadDue();
    if (switches != nullptr) EnterOutcome([] { TheEffectiveStates()->ReadAgain(); });
  };
  try {
    isDone = CarryEntry(target, source, switches, checkpoint);
  } catch (...) {
    finish();
    throw;
  }
  finish();
  return isDone;
}

ChangeAnswer TLocationStartup::DeleteItem(const ItemRef& item) {
  SMH_ASSERT(kUnit, canDelete_);
  return RunChange(
      ChangeKind::kDeleting, item,
      [&](const std::wstring& name) { LogFormat(kDeleteLine, name, MemberName()); },
      [&](EntrySource& source, const ItemState& listed, ChangeCheckpoint& checkpoint) {
        RequireAsListed(item, listed, source);
        if (!Carry(nullptr, *this, &source, checkpoint)) return ChangeAnswer::Refused();
        EnterRemoval(*item);
        return ChangeAnswer();
      });
}

ChangeAnswer TLocationStartup::SwitchItem(const ItemRef& item, bool enable) {
  SMH_ASSERT(kUnit, canEnable_);
  return RunChange(
      enable ? ChangeKind::kEnabling : ChangeKind::kDisabling, item,
      [&](const std::wstring& name) { LogFormat(enable ? kEnableLine : kDisableLine, name, MemberName()); },
      [&](EntrySource& source, const ItemState& listed, ChangeCheckpoint& checkpoint) {
        if (listed.isEnabled == enable) return ChangeAnswer::Nothing();
        const bool isOther = source.ShownCommand() != listed.details.Command;
        const std::unique_ptr<EntryTarget> target = PlanSwitch(source, enable, checkpoint.IsRecorded());
        if (!Carry(target.get(), *this, &source, checkpoint)) return ChangeAnswer::Refused();
        EnterSwitch(item, *target, isOther);
        return ChangeAnswer();
      });
}

ChangeAnswer TLocationStartup::ChangeItemCommand(const ItemRef& item, const std::wstring& command) {
  SMH_ASSERT(kUnit, canModify_);
  RequireCommandText(command);
  return RunChange(
      ChangeKind::kChanging, item,
      [&](const std::wstring& name) { LogFormat(kChangeLine, name, command, MemberName()); },
      [&](EntrySource& source, const ItemState& listed, ChangeCheckpoint& checkpoint) {
        RequireAsListed(item, listed, source);
        if (SameText(listed.details.Command, command)) return ChangeAnswer::Nothing();
        const std::unique_ptr<EntryTarget> target = PlanCommand(source, command, checkpoint.IsRecorded());
        if (!CarryWith(target.get(), nullptr, nullptr, checkpoint)) return ChangeAnswer::Refused();
        EnterCommand(item, target->Found());
        return ChangeAnswer();
      });
}

ChangeAnswer TLocationStartup::MoveItem(const ItemRef& item, TTypeStartupLocation target) {
  SMH_ASSERT(kUnit, canModify_);
  TLocationStartup* const destination = FindLocation(target);
  return RunChange(
      ChangeKind::kMoving, item,
      [&](const std::wstring& name) { LogFormat(kMoveLine, name, MemberName(), LocationMemberName(target)); },
      [&](EntrySource& source, const ItemState& listed, ChangeCheckpoint& checkpoint) {
        SMH_ASSERT(Unit(), destination != nullptr && destination != this);
        return MoveEntry(item, *destination, source, listed, checkpoint);
      });
}

// Accepted and named is what stands there now: an item of the first reading, not the listed one.
ChangeAnswer TLocationStartup::MoveEntry(const ItemRef& item, TLocationStartup& destination,
                                         EntrySource& source, const ItemState& listed,
                                         ChangeCheckpoint& checkpoint) {
  const ChangeGate::Scope change(destination.Gate());
  RequireAsListed(item, listed, source);
  const ItemRef entry = CompleteItem(LocationType(), source.Found());
  SMH_ASSERT(Unit(), destination.CanAcceptItem(*entry));
  const std::unique_ptr<EntryTarget> target =
      destination.PlanInsert(source, entry->State(), checkpoint.IsRecorded());
  // What may be left there after a failure is found by a load.
  destination.Gate().MarkLoadDue();
  if (!Carry(target.get(), destination, &source, checkpoint)) return ChangeAnswer::Refused();
  destination.EnterNew(target->Found(), item.get());
  return ChangeAnswer();
}

ChangeAnswer TLocationStartup::SetItemSwitchedOff(const ItemRef& item, bool off) {
  return RunChange(
      off ? ChangeKind::kDisabling : ChangeKind::kEnabling, item,
      [&](const std::wstring& name) { LogFormat(off ? kSwitchOffLine : kSwitchOnLine, name, MemberName()); },
      [&](EntrySource& source, const ItemState& listed, ChangeCheckpoint& checkpoint) {
        RequireAsListed(item, listed, source);
        const SwitchOwner owner{LocationType(), source.Found(), source.HasTwin()};
        EffectiveStates* const states = TheEffectiveStates();
        SMH_ASSERT(kUnit, states != nullptr);
        const auto switches = states->PlanSwitch(owner, off, checkpoint.IsRecorded());
        if (switches == nullptr) {
          states->ReadAgain();
          return ChangeAnswer::Nothing();
        }
        return CarryWith(nullptr, nullptr, switches.get(), checkpoint) ? ChangeAnswer()
                                                                       : ChangeAnswer::Refused();
      });
}

ChangeAnswer TLocationStartup::AddItem(const std::wstring& name, const std::wstring& command) {
  SMH_ASSERT(kUnit, canModify_);
  RequireCommandText(command);
  return RunLogged(
      [&] {
        const ScopedChange turn;
        const ChangeGate::Scope change(Gate());
        return AddEntry(name, command);
      },
      [&] { LogFormat(kAddLine, name, command, MemberName()); });
}

ChangeAnswer TLocationStartup::AddEntry(const std::wstring& name, const std::wstring& command) {
  ChangeCheckpoint checkpoint(ChangeKind::kAdding, name);
  const std::unique_ptr<EntryTarget> target = PlanAdd(name, command, checkpoint.IsRecorded());
  const FoundEntry found = target->Found();
  const bool standsAlready = target->StandsAlready();
  if (standsAlready) {
    if (const ItemRef known = FindItem(LocationType(), found.name)) {
      return {.kind = ChangeAnswer::Kind::kNothing, .position = known->Position()};
    }
  } else if (!Carry(target.get(), *this, nullptr, checkpoint)) {
    return ChangeAnswer::Refused();
  }
  const int position = EnterNew(found, nullptr);
  if (position < 0) return {.kind = ChangeAnswer::Kind::kRefused, .text = kNotListedYet};
  return {.position = position};
}

template <typename Enter>
void TLocationStartup::EnterOutcome(Enter&& enter) noexcept {
  try {
    enter();
  } catch (...) {
    LogCurrentException();
    Gate().MarkLoadDue();
  }
}

void TLocationStartup::EnterRemoval(TStartupItem& item) noexcept {
  EnterOutcome([&] {
    ScopedLock lock(Items().Lock());
    Items().Remove(item);
  });
}

void TLocationStartup::EnterSwitch(const ItemRef& item, const EntryTarget& target, bool isOther) noexcept {
  if (target.StandsAlready()) {
    EnterRemoval(*item);
    Gate().MarkLoadDue();
    return;
  }
  EnterOutcome([&] {
    const FoundEntry now = target.Found();
    bool isRenamed = false;
    {
      ScopedLock lock(Items().Lock());
      if (!item->IsListed()) return;
      isRenamed = item->GivenText() != now.caption;
      Items().Relocate(*item, now);
    }
    if (isRenamed || isOther) item->Renew(now.command, Items().Lock());
  });
}

void TLocationStartup::EnterCommand(const ItemRef& item, const FoundEntry& now) noexcept {
  if (IsFolderLocation(LocationType())) {
    EnterOutcome([&] { item->Renew(now.command, Items().Lock()); });
  } else {
    // A new item, whose holders look for it anew: the value is another one.
    EnterNew(now, item.get());
  }
}

int TLocationStartup::EnterNew(const FoundEntry& entry, TStartupItem* replaced) noexcept {
  int position = -1;
  EnterOutcome([&] {
    ItemRef item;
    try {
      item = CompleteItem(LocationType(), entry);
    } catch (...) {
      if (replaced != nullptr) EnterRemoval(*replaced);
      throw;
    }
    ScopedLock lock(Items().Lock());
    const int old = replaced == nullptr ? -1 : Items().Remove(*replaced);
    position = old < 0 ? Items().Append(std::move(item)) : Items().Insert(old, std::move(item));
  });
  return position;
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
