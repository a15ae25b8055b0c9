#include "model/uStartupItem.h"

#include "infra/log/uStatisticsLog.h"
#include "infra/runtime/catch_failure.h"
#include "infra/runtime/text.h"
#include "model/basic_info.h"
#include "model/extended_info.h"
#include "model/reader_state.h"

namespace smh {

namespace {

// What an entry starts: of a shortcut in a folder location what that starts, else the command itself. None
// for a shortcut that is held.
std::optional<SharedText> StartedCommand(TTypeStartupLocation location, std::wstring_view command) {
  if (IsFolderLocation(location) && TargetKindOfFile(command) == TargetKind::kShortcut) {
    ShortcutReading link = ReadShortcut(std::wstring(command));
    if (link.isHeld) return std::nullopt;
    if (link.facts && !link.facts->targetFile.empty()) return std::move(link.facts->command);
  }
  return SharedText(command);
}

}  // namespace

TStartupItem::TStartupItem(TTypeStartupLocation location, FoundEntry entry) noexcept
    : location_(location), protected_(entry.isProtected) {
  state_.name = std::move(entry.name);
  state_.givenText = std::move(entry.caption);
  state_.address = std::move(entry.address);
  state_.isEnabled = entry.isEnabled;
  state_.details.Command = std::move(entry.command);
}

void TStartupItem::FillBasicInfo() {
  state_.details.Caption = state_.givenText;
  FillBasicDetails(location_, state_.name, state_.details);
  isLinkHeld_ = IsFolderLocation(location_) && state_.details.IsLinkHeld;
}

ItemDetails TStartupItem::DetailsOf(std::wstring_view command) const {
  ItemDetails details;
  const SharedText name = Get([&](const ItemState& state) {
    details.Caption = state.givenText;
    return state.name;
  });
  details.Command = SharedText(command);
  FillBasicDetails(location_, name, details);
  return details;
}

std::optional<ItemDetails> TStartupItem::DetailsUnlessHeld(std::wstring_view command) {
  ItemDetails details = DetailsOf(command);
  isLinkHeld_ = IsFolderLocation(location_) && details.IsLinkHeld;
  return isLinkHeld_ ? std::nullopt : std::optional(std::move(details));
}

void TStartupItem::TakeOver(ItemDetails details) {
  state_.details = std::move(details);
  needsExtendedInfo_ = true;
  ++revision_;
}

bool TStartupItem::UpdateCommand(std::wstring_view command, CriticalSection& listLock,
                                 const std::function<bool()>& isCurrent) {
  const std::optional<SharedText> started = StartedCommand(location_, command);
  isLinkHeld_ = !started;
  if (isLinkHeld_) return false;
  const auto isSame = [&](const ItemState& state) { return SameText(state.details.Command, *started); };
  if (Get(isSame)) return false;
  std::optional<ItemDetails> details = DetailsUnlessHeld(command);
  CheckTerminated();
  if (!details) return false;

  ScopedLock list(listLock);
  ScopedLock lock(Lock);
  if (!isCurrent() || !IsListed() || isSame(state_)) return false;
  const ItemDetails& old = state_.details;
  LogFormat(L"Detect change item %s (%s). Target command change from \"%s\" to \"%s\".", old.EntryName,
            old.Caption, old.Command, details->Command);
  TakeOver(std::move(*details));
  return true;
}

void TStartupItem::LookAgain(std::wstring_view command, bool isProtected, CriticalSection& listLock,
                             const std::function<bool()>& isCurrent) {
  const bool isUpdated = UpdateCommand(command, listLock, isCurrent);
  const ItemDetails old = Get([](const ItemState& state) { return state.details; });
  std::optional<ItemDetails> details;
  if (!isUpdated && !isLinkHeld_ && !StandsAsSeen(old)) details = DetailsUnlessHeld(command);
  CheckTerminated();

  ScopedLock list(listLock);
  ScopedLock lock(Lock);
  if (!isCurrent() || !IsListed()) return;
  if (protected_.exchange(isProtected) != isProtected) MarkChanged();
  if (details && !IsSeenAlike(*details, old)) {
    TakeOver(std::move(*details));
  } else if (state_.details.IsIconOwed) {
    needsExtendedInfo_ = true;
  }
}

void TStartupItem::Renew(std::wstring_view command, CriticalSection& listLock) {
  ItemDetails details = DetailsOf(command);
  ScopedLock list(listLock);
  ScopedLock lock(Lock);
  if (!IsListed()) return;
  TakeOver(std::move(details));
  MarkChanged();
}

void TStartupItem::SetTwin(ItemTwin twin, std::wstring_view text, std::int32_t file) {
  bool isAnother = twin_.exchange(twin) != twin;
  isAnother = twinFile_.exchange(file) != file || isAnother;
  if (isAnother || twin == kTwinOther) {
    ScopedLock lock(Lock);
    isAnother = isAnother || twinText_ != text;
    if (twinText_ != text) twinText_ = SharedText(text);
  }
  if (isAnother && !NeedsExtendedInfo()) MarkChanged();
}

SharedText TStartupItem::TwinText() const {
  ScopedLock lock(Lock);
  return twinText_;
}

void TStartupItem::MarkTwin(unsigned load, ItemTwin twin, std::wstring_view text, std::int32_t file) {
  twinIn_ = load;
  SetTwin(twin, text, file);
}

void TStartupItem::EndTwin(unsigned load) {
  if (twinIn_ != load) SetTwin(kTwinNone, {}, kTwinsFileIsSame);
}

void TStartupItem::ReadExtendedInfo() {
  ExtendedPass pass;
  ReadExtendedInfo(pass);
}

void TStartupItem::ReadExtendedInfo(ExtendedPass& pass) {
  ItemDetails details;
  unsigned revision = 0;
  {
    ScopedLock lock(Lock);
    details = state_.details;
    revision = revision_;
  }
  const auto read = [&] {
    pass.Read(details);
    return true;
  };
  const bool isRead = CatchFailure(read, [&] {
    LogCurrentException();
    LogFormat(L"Error read extended info for item %s (%s). Location: %s.", details.EntryName, Name(),
              LocationMemberName(location_));
    return false;
  });
  if (!isRead) return;
  CheckTerminated();
  ScopedLock lock(Lock);
  if (revision != revision_) return;
  state_.details = std::move(details);
  needsExtendedInfo_ = false;
  MarkChanged();
}

ItemState TStartupItem::State() const {
  return Get([](const ItemState& state) { return state; });
}

std::wstring TStartupItem::Name() const {
  return Get([](const ItemState& state) { return std::wstring(state.name); });
}

SharedText TStartupItem::GivenText() const {
  return Get([](const ItemState& state) { return state.givenText; });
}

bool TStartupItem::IsEnabled() const {
  return Get([](const ItemState& state) { return state.isEnabled; });
}

FileReachability TStartupItem::Reachability() const {
  return Get([](const ItemState& state) { return state.details.Reachability; });
}

std::function<std::optional<ItemDetails>()> UpcomingDetails(std::span<const ItemRef> items) {
  return [items]() mutable -> std::optional<ItemDetails> {
    while (!items.empty()) {
      const ItemRef& item = items.front();
      items = items.subspan(1);
      if (item == nullptr || !item->IsListed() || !item->NeedsExtendedInfo()) continue;
      return item->Get([](const ItemState& state) { return state.details; });
    }
    return std::nullopt;
  };
}

bool TStartupItem::NeedsExtendedInfo() const {
  ScopedLock lock(Lock);
  return needsExtendedInfo_;
}

}  // namespace smh
