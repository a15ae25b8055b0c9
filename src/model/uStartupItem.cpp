#include "model/uStartupItem.h"

#include "infra/log/uStatisticsLog.h"
#include "infra/runtime/catch_failure.h"
#include "infra/runtime/text.h"
#include "model/basic_info.h"
#include "model/extended_info.h"

namespace smh {

namespace {

// What a shortcut in a folder location starts instead of itself.
std::optional<SharedText> TargetCommand(TTypeStartupLocation location, std::wstring_view command) {
  if (!IsFolderLocation(location) || TargetKindOfFile(command) != TargetKind::kShortcut) return std::nullopt;
  std::optional<ShortcutFacts> facts = ReadShortcutFacts(std::wstring(command));
  if (!facts || facts->targetFile.empty()) return std::nullopt;
  return std::move(facts->command);
}

}  // namespace

TStartupItem::TStartupItem(TTypeStartupLocation location, FoundEntry entry) noexcept
    : location_(location), givenText_(std::move(entry.caption)), protected_(entry.isProtected) {
  state_.name = std::move(entry.name);
  state_.address = std::move(entry.address);
  state_.isEnabled = entry.isEnabled;
  state_.details.Command = std::move(entry.command);
}

void TStartupItem::FillBasicInfo() {
  state_.details.Caption = givenText_;
  FillBasicDetails(location_, state_.name, state_.details);
}

bool TStartupItem::UpdateCommand(std::wstring_view command, CriticalSection& listLock,
                                 const std::function<bool()>& isCurrent) {
  const std::optional<SharedText> target = TargetCommand(location_, command);
  const std::wstring_view started = target ? std::wstring_view(*target) : command;
  const auto isSame = [&](const ItemState& state) { return SameText(state.details.Command, started); };
  if (Get(isSame)) return false;
  ItemDetails details;
  details.Caption = givenText_;
  details.Command = SharedText(command);
  FillBasicDetails(location_, Get([](const ItemState& state) { return state.name; }), details);

  ScopedLock list(listLock);
  ScopedLock lock(Lock);
  if (!isCurrent() || !IsListed() || isSame(state_)) return false;
  const ItemDetails& old = state_.details;
  LogFormat(L"Detect change item %s (%s). Target command change from \"%s\" to \"%s\".", old.EntryName,
            old.Caption, old.Command, details.Command);
  state_.details = std::move(details);
  needsExtendedInfo_ = true;
  ++revision_;
  return true;
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

bool TStartupItem::IsEnabled() const {
  return Get([](const ItemState& state) { return state.isEnabled; });
}

bool TStartupItem::NeedsExtendedInfo() const {
  ScopedLock lock(Lock);
  return needsExtendedInfo_;
}

}  // namespace smh
