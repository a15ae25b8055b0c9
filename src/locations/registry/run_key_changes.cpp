#include "locations/registry/uLocationRegistryStd.h"

#include "core/uDllGlobals.h"
#include "infra/text.h"
#include "model/checkpoint.h"

namespace smh {

namespace {

constexpr wchar_t kDeleteLine[] = L"Error delete item \"%s\" in location \"%s\".";
constexpr wchar_t kEnableLine[] = L"Error enable item \"%s\" in location \"%s\".";
constexpr wchar_t kDisableLine[] = L"Error disable item \"%s\" in location \"%s\".";
constexpr wchar_t kAddLine[] = L"Error add item \"%s\" (%s) in location \"%s\".";
// Spelled so, and without a full stop, on purpose: users search their logs for it.
constexpr wchar_t kChangeLine[] = L"Error change item \"%s\" comand on \"%s\" in location \"%s\"";

}  // namespace

std::wstring TLocationRegistryStd::ItemLine(std::wstring_view format, const std::wstring& itemName) const {
  return Format(format, itemName, MemberName());
}

void TLocationRegistryStd::EnableItem(const ItemRef& item) {
  TLocationStartup::EnableItem(item);
  SwitchItem(item, true);
}

void TLocationRegistryStd::DisableItem(const ItemRef& item) {
  TLocationStartup::DisableItem(item);
  SwitchItem(item, false);
}

void TLocationRegistryStd::SwitchItem(const ItemRef& item, bool enable) {
  if (!Owns(*item)) return;
  const ChangeGate::Scope change(Gate());
  const std::wstring name = item->Name();
  const auto line = [&] { return ItemLine(enable ? kEnableLine : kDisableLine, name); };
  RunLogged(
      [&] {
        ScopedLock listLock(Items().Lock());
        ScopedLock itemLock(item->Lock);
        if (!item->IsListed() || item->IsEnabled() == enable) return;
        const RegistryValueAddress from = AddressOf(*item);
        const bool twin = IsPlainTwin(from, ReadSource(from));
        RegistryValueAddress to = from;
        to.key = KeyPath(enable);
        to.valueName = UniqueValueName(to, from.viewBits == KEY_WOW64_64KEY);

        const bool recorded = DLLGlobals::UseBackupCheckpoints();
        const ScopedCheckpoint checkpoint(recorded, enable ? ChangeKind::kEnabling : ChangeKind::kDisabling,
                                          item->GivenText());
        if (MoveValue(ValueWriter(recorded), from, to, twin)) {
          Items().Relocate(*item, to.FullPath(), to, enable);
        } else {
          LogLine(line());
        }
      },
      line);
}

void TLocationRegistryStd::DeleteItem(const ItemRef& item) {
  TLocationStartup::DeleteItem(item);
  if (!Owns(*item)) return;
  const ChangeGate::Scope change(Gate());
  const std::wstring name = item->Name();
  const auto line = [&] { return ItemLine(kDeleteLine, name); };
  RunLogged(
      [&] {
        ScopedLock lock(Items().Lock());
        if (!item->IsListed()) return;
        const bool recorded = DLLGlobals::UseBackupCheckpoints();
        const ScopedCheckpoint checkpoint(recorded, ChangeKind::kDeleting, item->GivenText());
        const ValueWriter writer(recorded);
        RegistryValueAddress address = AddressOf(*item);
        const std::optional<RegistryData> data = ReadValue(address);
        const bool twin = data.has_value() && IsPlainTwin(address, *data);
        if (!writer.DeleteConfirmed(address)) {
          LogLine(line());
          return;
        }
        Items().Remove(*item);
        if (!twin) return;
        address.viewBits = 0;
        // A twin that stays is an entry of its own from now on; the next load lists it.
        if (!writer.DeleteConfirmed(address)) LogLine(line());
      },
      line);
}

int TLocationRegistryStd::AddItem(const std::wstring& name, const std::wstring& command) {
  TLocationStartup::AddItem(name, command);
  const ChangeGate::Scope change(Gate());
  return RunLogged([&] { return AddValue(name, command); },
                   [&] { return Format(kAddLine, name, command, MemberName()); });
}

int TLocationRegistryStd::AddValue(const std::wstring& name, const std::wstring& command) {
  ScopedLock lock(Items().Lock());
  FoundEntry entry;
  entry.address = {OwnView(), root_, row_.keyPath, name};
  entry.name = entry.address.FullPath();
  entry.caption = name;
  entry.command = command;
  if (const ItemRef known = Items().Find(LocationType(), entry.name)) return known->Position();

  // An entry that is not listed yet is found, not overwritten.
  const std::optional<RegistryData> present = ReadValue(entry.address);
  const RegistryValueAddress address = entry.address;
  if (present) {
    entry.command = present->Text();
    entry.isProtected = !IsKeyWritable(root_, row_.keyPath, OwnView());
  }
  const auto item = std::make_shared<TStartupItem>(LocationType(), std::move(entry));
  if (!present) {
    const bool recorded = DLLGlobals::UseBackupCheckpoints();
    const ScopedCheckpoint checkpoint(recorded, ChangeKind::kAdding, name);
    if (!ValueWriter(recorded).WriteConfirmed(address, command)) {
      LogLine(Format(kAddLine, name, command, MemberName()));
      return -1;
    }
  }
  item->FillBasicInfo();
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
  entry.command = command;
  entry.isEnabled = state.isEnabled;
  entry.address = state.address;
  const auto changed = std::make_shared<TStartupItem>(LocationType(), std::move(entry));

  const bool recorded = DLLGlobals::UseBackupCheckpoints();
  const ScopedCheckpoint checkpoint(recorded, ChangeKind::kChanging, item->GivenText());
  if (!ValueWriter(recorded).WriteConfirmed(state.address, command)) {
    LogLine(Format(kChangeLine, state.name, command, MemberName()));
    return;
  }
  changed->FillBasicInfo();
  Items().Insert(Items().Remove(*item), changed);
}

int TLocationRegistryStd::ExtractItem(bool checkpoint, const ItemRef& item) {
  TLocationStartup::ExtractItem(checkpoint, item);
  const ChangeGate::Scope change(Gate());
  ScopedLock lock(Items().Lock());
  const RegistryValueAddress address = AddressOf(*item);
  Extracted entry{item, item->Position(), address, ReadSource(address)};
  if (!ValueWriter(checkpoint).DeleteConfirmed(address)) {
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
  FoundEntry entry;
  entry.address = {OwnView(), root_, KeyPath(enabled), entryName};
  entry.address.valueName = UniqueValueName(entry.address, false);
  entry.name = entry.address.FullPath();
  entry.caption = entry.address.valueName;
  entry.command = command;
  entry.isEnabled = enabled;
  const RegistryValueAddress address = entry.address;
  const auto item = std::make_shared<TStartupItem>(LocationType(), std::move(entry));
  const ValueWriter writer(checkpoint);
  if (!writer.WriteConfirmed(address, command)) {
    writer.Delete(address);
    throw ERegistryException(Format(L"Failed to set data for '%s'", address.valueName));
  }
  item->FillBasicInfo();
  Items().Insert(extracted, item);
}

void TLocationRegistryStd::PutBackItem(bool checkpoint) {
  if (!extracted_) return;
  const ChangeGate::Scope change(Gate());
  ScopedLock lock(Items().Lock());
  const Extracted entry = *std::move(extracted_);
  extracted_.reset();
  if (!ValueWriter(checkpoint).RestoreConfirmed(entry.address, entry.data)) {
    throw ERegistryException(Format(L"Failed to set data for '%s'", entry.address.valueName));
  }
  Items().Insert(entry.position, entry.item);
}

}  // namespace smh
