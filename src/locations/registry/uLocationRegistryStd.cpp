#include "locations/registry/uLocationRegistryStd.h"

#include "core/contracts/uDllGlobals.h"
#include "infra/log/uStatisticsLog.h"
#include "infra/runtime/embedded_nul.h"
#include "infra/runtime/text.h"
#include "model/checkpoint.h"
#include "model/reader_state.h"

#include <algorithm>

namespace smh {

namespace {

constexpr wchar_t kAddLine[] = L"Error add item \"%s\" (%s) in location \"%s\".";
// Spelled so, and without a full stop, on purpose: users search their logs for it.
constexpr wchar_t kChangeLine[] = L"Error change item \"%s\" comand on \"%s\" in location \"%s\"";

// A NUL inside a name would end it everywhere: it is shown as its symbol.
std::wstring WithSymbolsForNuls(std::wstring_view name) {
  std::wstring shown(name);
  std::ranges::replace(shown, L'\0', L'\x2400');
  return shown;
}

}  // namespace

bool TLocationRegistryStd::ItemExists(const TStartupItem& item) {
  return ValueExists(AddressOf(item));
}

bool TLocationRegistryStd::CanAcceptItem(const TStartupItem& item) {
  if (!TLocationStartup::CanAcceptItem(item)) return false;
  if (item.Get([](const ItemState& state) { return state.details.FileFound; })) return true;
  switch (item.Location()) {
    case sulRegistryUserRun:
    case sulRegistryUserRunOnce:
    case sulRegistryCommonRun:
    case sulRegistryCommonRunOnce:
      return true;
    default:
      return false;
  }
}

bool TLocationRegistryStd::ReadKey(RegistryLoad& load, const Place& place) {
  const ScopedKey key = OpenRegistryKey(place.root, place.path, place.view | KEY_READ);
  if (!key) return true;
  const bool isProtected = !IsKeyWritable(place.root, place.path, place.view);
  RegistryValueReader values(key.Get());
  while (values.Next()) {
    CheckTerminated();
    const std::wstring_view name = values.Name();
    const bool hasNul = HoldsNul(name);
    const std::wstring symbols = hasNul ? WithSymbolsForNuls(name) : std::wstring();
    const std::wstring_view shown = hasNul ? std::wstring_view(symbols) : name;
    const SeenEntry seen{place.path, name, shown, shown, values.Text(), hasNul || isProtected};
    if (!TakeEntry(load, place, seen)) return false;
  }
  return true;
}

std::unique_ptr<EntryStore> TLocationRegistryStd::Store(bool recorded) const {
  return std::make_unique<ValueStore>(recorded);
}

TLocationRegistry::Switch TLocationRegistryStd::PlanSwitch(const TStartupItem& item,
                                                           const RegistryData& source, bool enable) {
  RegistryValueAddress to = AddressOf(item);
  if (!source.IsText()) RaiseInvalidDataType(to.valueName);
  to.key = KeyPath(enable);
  to.valueName = UniqueValueName(to, to.viewBits == KEY_WOW64_64KEY);
  return {std::move(to), source.Text()};
}

// Complete before anything is written: what can fail fails while nothing has changed.
ItemRef TLocationRegistryStd::MakeItem(FoundEntry entry) const {
  auto item = std::make_shared<TStartupItem>(LocationType(), std::move(entry));
  item->FillBasicInfo();
  return item;
}

int TLocationRegistryStd::AddItem(const std::wstring& name, const std::wstring& command) {
  TLocationStartup::AddItem(name, command);
  const ChangeGate::Scope change(Gate());
  return RunLogged([&] { return AddValue(name, command); },
                   [&] { return Format(kAddLine, name, command, MemberName()); });
}

int TLocationRegistryStd::AddValue(const std::wstring& name, const std::wstring& command) {
  ScopedLock lock(Items().Lock());
  const RegistryValueAddress address{OwnView(), FirstRoot(), KeyPath(true), name};
  FoundEntry entry;
  entry.address = SharedValueAddress(address);
  entry.name = SharedText(address.FullPath());
  entry.caption = SharedText(name);
  entry.command = SharedText(command);
  if (const ItemRef known = Items().Find(LocationType(), entry.name)) return known->Position();

  // An entry that is not listed yet is found, not overwritten.
  const std::optional<RegistryData> present = ValueStore(false).Read(address);
  if (present) {
    entry.command = SharedText(present->Text());
    entry.isProtected = !IsKeyWritable(FirstRoot(), KeyPath(true), OwnView());
  }
  const ItemRef item = MakeItem(std::move(entry));
  if (!present) {
    const bool recorded = DLLGlobals::UseBackupCheckpoints();
    const ScopedCheckpoint checkpoint(recorded, ChangeKind::kAdding, name);
    if (!WriteEntry(ValueStore(recorded), address, command)) {
      LogLine(Format(kAddLine, name, command, MemberName()));
      return -1;
    }
  }
  return Items().Append(item);
}

void TLocationRegistryStd::ChangeItemCommand(const ItemRef& item, const std::wstring& command) {
  TLocationStartup::ChangeItemCommand(item, command);
  if (!Owns(*item)) return;
  const ChangeGate::Scope change(Gate());
  const std::wstring name = item->Name();
  RunLogged([&] { RewriteValue(item, command); },
            [&] { return Format(kChangeLine, name, command, MemberName()); });
}

void TLocationRegistryStd::RewriteValue(const ItemRef& item, const std::wstring& command) {
  ScopedLock lock(Items().Lock());
  const ItemState state = item->State();
  if (!item->IsListed() || SameText(state.details.Command, command)) return;
  FoundEntry entry;
  entry.name = state.name;
  entry.caption = item->GivenText();
  entry.command = SharedText(command);
  entry.isEnabled = state.isEnabled;
  entry.address = state.address;
  const ItemRef changed = MakeItem(std::move(entry));

  const bool recorded = DLLGlobals::UseBackupCheckpoints();
  const ScopedCheckpoint checkpoint(recorded, ChangeKind::kChanging, item->GivenText());
  if (!WriteEntry(ValueStore(recorded), RegistryValueAddress(state.address), command)) {
    LogLine(Format(kChangeLine, state.name, command, MemberName()));
    return;
  }
  Items().Insert(Items().Remove(*item), changed);
}

int TLocationRegistryStd::ExtractItem(bool checkpoint, const ItemRef& item) {
  TLocationStartup::ExtractItem(checkpoint, item);
  const ChangeGate::Scope change(Gate());
  ScopedLock lock(Items().Lock());
  const RegistryValueAddress address = AddressOf(*item);
  const ValueStore store(checkpoint);
  ReadTextSource(store, address);
  Extracted entry{item, item->Position(), address, store.Keep(address)};
  if (!DeleteEntry(store, address)) {
    throw ERegistryException(Format(L"Failed to delete '%s'", address.valueName));
  }
  extracted_ = std::move(entry);
  return Items().Remove(*item);
}

void TLocationRegistryStd::InsertItem(bool checkpoint, int extracted, bool enabled,
                                      const std::wstring& command, const std::wstring& entryName) {
  TLocationStartup::InsertItem(checkpoint, extracted, enabled, command, entryName);
  const ChangeGate::Scope change(Gate());
  ScopedLock lock(Items().Lock());
  RegistryValueAddress address{OwnView(), FirstRoot(), KeyPath(enabled), entryName};
  address.valueName = UniqueValueName(address, false);
  FoundEntry entry;
  entry.address = SharedValueAddress(address);
  entry.name = SharedText(address.FullPath());
  entry.caption = SharedText(address.valueName);
  entry.command = SharedText(command);
  entry.isEnabled = enabled;
  const ItemRef item = MakeItem(std::move(entry));
  if (!WriteEntry(ValueStore(checkpoint), address, command)) {
    throw ERegistryException(Format(L"Failed to set data for '%s'", address.valueName));
  }
  Items().Insert(extracted, item);
}

void TLocationRegistryStd::PutBackItem(bool checkpoint) {
  if (!extracted_) return;
  const ChangeGate::Scope change(Gate());
  ScopedLock lock(Items().Lock());
  const Extracted entry = *std::move(extracted_);
  extracted_.reset();
  if (!ValueStore(checkpoint).RestoreConfirmed(entry.address, entry.kept)) {
    throw ERegistryException(Format(L"Failed to set data for '%s'", entry.address.valueName));
  }
  Items().Insert(entry.position, entry.item);
}

}  // namespace smh
