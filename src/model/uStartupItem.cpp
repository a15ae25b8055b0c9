#include "model/uStartupItem.h"

#include "infra/text.h"
#include "infra/uInterfacesRoutines.h"
#include "infra/uStatisticsLog.h"
#include "model/extended_info.h"
#include "model/image_lists.h"
#include "model/item_list.h"
#include "model/shortcut_facts.h"

namespace smh {

namespace {

TItemList* g_items = nullptr;
std::atomic<bool> g_showAllLocations{false};

// The command that an entry starts: in a folder location, of a shortcut, that of its target.
std::wstring StartedCommand(TTypeStartupLocation location, const std::wstring& command) {
  if (!IsFolderLocation(location) || TargetKindOfFile(command) != TargetKind::kShortcut) return command;
  const std::optional<ShortcutFacts> facts = ReadShortcutFacts(command);
  return facts && !facts->targetFile.empty() ? facts->command : command;
}

}  // namespace

TStartupItem::TStartupItem(TTypeStartupLocation location, FoundEntry entry)
    : location_(location), givenText_(std::move(entry.caption)), protected_(entry.isProtected) {
  state_.name = std::move(entry.name);
  state_.address = std::move(entry.address);
  state_.isEnabled = entry.isEnabled;
  state_.details = InitialDetails(location_, state_.name, givenText_, entry.command, target_);
}

void TStartupItem::FillBasicInfo() {
  ItemDetails details;
  {
    ScopedLock lock(Lock);
    details = std::move(state_.details);
  }
  FillBasicDetails(location_, std::move(target_), details);
  ScopedLock lock(Lock);
  state_.details = std::move(details);
}

bool TStartupItem::UpdateCommand(const std::wstring& command, const std::function<bool()>& isCurrent) {
  const std::wstring name = Name();
  const std::wstring started = StartedCommand(location_, command);
  const auto isSame = [&](const ItemState& state) { return SameText(state.details.Command, started); };
  if (Get(isSame)) return false;
  std::wstring target;
  ItemDetails details = InitialDetails(location_, name, givenText_, command, target);
  FillBasicDetails(location_, std::move(target), details);

  ScopedLock listLock(Items().Lock());
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
  try {
    pass.Read(details);
  } catch (const EAbort&) {
    throw;
  } catch (...) {
    LogCurrentException();
    LogFormat(L"Error read extended info for item %s (%s). Location: %s.", details.EntryName, Name(),
              LocationMemberName(location_));
    return;
  }
  ScopedLock lock(Lock);
  if (revision != revision_) return;
  state_.details = std::move(details);
  needsExtendedInfo_ = false;
  MarkChanged();
}

ItemState TStartupItem::State() const {
  return Get([](const ItemState& state) { return state; });
}

ItemDetails TStartupItem::Details() const {
  return Get([](const ItemState& state) { return state.details; });
}

std::wstring TStartupItem::Name() const {
  return Get([](const ItemState& state) { return state.name; });
}

bool TStartupItem::IsEnabled() const {
  return Get([](const ItemState& state) { return state.isEnabled; });
}

bool TStartupItem::NeedsExtendedInfo() const {
  ScopedLock lock(Lock);
  return needsExtendedInfo_;
}

TItemList& Items() noexcept {
  return *g_items;
}

bool ShowAllLocations() noexcept {
  return g_showAllLocations.load();
}

void SetShowAllLocations(bool show) noexcept {
  g_showAllLocations.store(show);
}

void StartStartupItem() {
  g_items = new TItemList();
  StartVersionTexts();
  StartImageLists();
  g_showAllLocations.store(false);
}

void StopStartupItem() noexcept {
  StopImageLists();
  delete std::exchange(g_items, nullptr);
  StopVersionTexts();
}

}  // namespace smh
