#include "locations/folders/uLocationFolderStd.h"

#include "core/contracts/uDllGlobals.h"
#include "infra/runtime/assertion.h"
#include "infra/runtime/exceptions.h"
#include "infra/runtime/text.h"
#include "locations/folders/entry_file_changes.h"
#include "locations/folders/folder_files.h"
#include "locations/folders/shortcut_writer.h"
#include "model/checkpoint.h"
#include "model/reader_state.h"
#include "model/uLocationStartup.h"
#include "sysutil/command_line.h"
#include "sysutil/uFileUtils.h"

#include <algorithm>
#include <utility>

namespace smh {

namespace {

constexpr wchar_t kUnit[] = L"uLocationFolderStd";
constexpr wchar_t kShortcutExtension[] = L".lnk";

constexpr wchar_t kDeleteLine[] = L"Error delete item \"%s\" in location \"%s\".";
constexpr wchar_t kEnableLine[] = L"Error enable item \"%s\" in location \"%s\".";
constexpr wchar_t kDisableLine[] = L"Error disable item \"%s\" in location \"%s\".";
constexpr wchar_t kAddLine[] = L"Error add item \"%s\" (%s) in location \"%s\".";
// Spelled so, and without a full stop, on purpose: users search their logs for it.
constexpr wchar_t kChangeLine[] = L"Error change item \"%s\" comand on \"%s\" in location \"%s\"";

bool IsEntryFile(std::wstring_view name) {
  const std::wstring_view extension = ExtensionPart(name);
  if (extension.empty()) return false;
  const auto isExtension = [&](const std::wstring& other) { return SameText(extension, other); };
  return SameText(extension, kShortcutExtension) ||
         std::ranges::any_of(FileUtils::ExecutableExtensions(), isExtension);
}

// An item of a file that lies in a Startup folder or in a folder of disabled entries, with its basic
// information; not listed. Reads the file. Raises what FillBasicInfo raises.
ItemRef MakeFileItem(TTypeStartupLocation location, const std::wstring& file, bool enabled) {
  FoundEntry entry;
  entry.name = SharedText(file);
  entry.command = SharedText(file);
  const std::wstring_view name = FileNamePart(file);
  entry.caption = SharedText(name.substr(0, name.size() - ExtensionPart(name).size()));
  entry.isEnabled = enabled;
  auto item = std::make_shared<TStartupItem>(location, std::move(entry));
  item->FillBasicInfo();
  return item;
}

}  // namespace

TLocationFolderStd::TLocationFolderStd(const LocationRow& row)
    : TLocationStartup(row, Abilities{.canModify = FamilyOf(row).canModify}),
      folders_(row.root == LocationRoot::kMachine),
      watch_(folders_.All()) {}

bool TLocationFolderStd::ItemExists(const TStartupItem& item) {
  return FileUtils::FileExists(item.Name());
}

void TLocationFolderStd::ShowItemLocation(const TStartupItem& item) {
  const DWORD code = OpenWithShell(nullptr, L"explorer.exe", Format(L"/select,\"%s\"", item.Name()));
  if (code != ERROR_SUCCESS) RaiseOSError(code);
}

bool TLocationFolderStd::IsChanged() {
  // A signal that comes while a change runs is kept for later.
  if (Gate().IsBusy()) return false;
  if (watch_.TakeChange()) {
    Gate().TakeLoadDue();
    return true;
  }
  return Gate().TakeLoadDue();
}

void TLocationFolderStd::ReadItems() {
  CatchFailure([this] { LoadItems(); },
               [this] {
                 LogCurrentException();
                 LogFormat(L"Error load item list for location \"%s\".", MemberName());
               });
}

void TLocationFolderStd::LoadItems() {
  const std::optional<Load> load = BeginLoad();
  if (!load) return;
  bool current = true;
  for (const std::wstring& folder : folders_.All()) current = current && ReadFolder(folder, *load);
  if (!current || !RemoveMissingItems(*load)) Gate().MarkLoadDue();
}

bool TLocationFolderStd::ReadFolder(const std::wstring& folder, const Load& load) {
  for (const std::wstring& name : FileNamesIn(folder)) {
    CheckTerminated();
    if (!IsEntryFile(name)) continue;
    FoundEntry entry;
    entry.name = SharedText(folder, name);
    entry.command = entry.name;
    entry.caption = SharedText(std::wstring_view(name).substr(0, name.size() - ExtensionPart(name).size()));
    entry.isEnabled = folders_.IsStartupFolder(folder);
    entry.isProtected = !CanDeleteFile(entry.name.c_str());
    if (!AddOrUpdateItem(std::move(entry), load)) return false;
  }
  return true;
}

void TLocationFolderStd::EnableItem(const ItemRef& item) {
  TLocationStartup::EnableItem(item);
  SwitchItem(item, true);
}

void TLocationFolderStd::DisableItem(const ItemRef& item) {
  TLocationStartup::DisableItem(item);
  SwitchItem(item, false);
}

void TLocationFolderStd::SwitchItem(const ItemRef& item, bool enable) {
  if (!Owns(*item)) return;
  const ChangeGate::Scope change(Gate());
  const std::wstring from = item->Name();
  RunLogged(
      [&] {
        ScopedLock listLock(Items().Lock());
        ScopedLock itemLock(item->Lock);
        if (!item->IsListed() || item->IsEnabled() == enable) return;
        if (enable) folders_.RequireTrustedSource(from);
        const std::wstring to =
            MakeUniqueFileName(folders_.PlaceFor(enable) + std::wstring(FileNamePart(from)));
        const bool recorded = DLLGlobals::UseBackupCheckpoints();
        const ScopedCheckpoint checkpoint(recorded, enable ? ChangeKind::kEnabling : ChangeKind::kDisabling,
                                          item->GivenText());
        MoveEntryFile(FileChanger(recorded), from, to, folders_);
        Items().Relocate(*item, SharedText(to), {}, enable);
      },
      [&] { return Format(enable ? kEnableLine : kDisableLine, from, MemberName()); });
}

void TLocationFolderStd::DeleteItem(const ItemRef& item) {
  TLocationStartup::DeleteItem(item);
  if (!Owns(*item)) return;
  const ChangeGate::Scope change(Gate());
  const std::wstring file = item->Name();
  RunLogged(
      [&] {
        ScopedLock lock(Items().Lock());
        if (!item->IsListed()) return;
        const bool recorded = DLLGlobals::UseBackupCheckpoints();
        const ScopedCheckpoint checkpoint(recorded, ChangeKind::kDeleting, item->GivenText());
        FileChanger(recorded).Delete(file);
        Items().Remove(*item);
      },
      [&] { return Format(kDeleteLine, file, MemberName()); });
}

int TLocationFolderStd::AddItem(const std::wstring& name, const std::wstring& command) {
  TLocationStartup::AddItem(name, command);
  const ChangeGate::Scope change(Gate());
  return RunLogged([&] { return AddShortcut(name, command); },
                   [&] { return Format(kAddLine, name, command, MemberName()); });
}

int TLocationFolderStd::AddShortcut(const std::wstring& name, const std::wstring& command) {
  if (!IsPlainFileName(name)) RaiseOSError(ERROR_INVALID_NAME);
  ScopedLock lock(Items().Lock());
  const std::wstring file = folders_.PlaceFor(true) + WithLinkExtension(name);
  if (FileUtils::FileExists(file)) RaiseOSError(ERROR_ALREADY_EXISTS);
  const TemporaryShortcut made(folders_, name, ShortcutFields(CommandForShortcut(command)));
  {
    const bool recorded = DLLGlobals::UseBackupCheckpoints();
    const ScopedCheckpoint checkpoint(recorded, ChangeKind::kAdding, name);
    MoveEntryFile(FileChanger(recorded), made.Path(), file, folders_);
  }
  return Items().Append(MakeFileItem(LocationType(), file, true));
}

void TLocationFolderStd::ChangeItemCommand(const ItemRef& item, const std::wstring& command) {
  TLocationStartup::ChangeItemCommand(item, command);
  if (!Owns(*item)) return;
  const ChangeGate::Scope change(Gate());
  const std::wstring file = item->Name();
  RunLogged([&] { RewriteShortcut(item, command); },
            [&] { return Format(kChangeLine, file, command, MemberName()); });
}

void TLocationFolderStd::RewriteShortcut(const ItemRef& item, const std::wstring& command) {
  ScopedLock lock(Items().Lock());
  const ItemState state = item->State();
  if (!item->IsListed() || SameText(state.details.Command, command)) return;
  const std::wstring file(state.name);
  if (!SameText(ExtensionPart(file), kShortcutExtension)) RaiseOSError(ERROR_NOT_SUPPORTED);
  const TemporaryShortcut made(folders_, file, ReadShortcutBytes(file), CommandForShortcut(command));
  {
    const bool recorded = DLLGlobals::UseBackupCheckpoints();
    const ScopedCheckpoint checkpoint(recorded, ChangeKind::kChanging, item->GivenText());
    ReplaceEntryFile(FileChanger(recorded), made.Path(), file, state.isEnabled, folders_);
  }
  item->UpdateCommand(file, Items().Lock(), [] { return true; });
}

void TLocationFolderStd::MoveItem(const ItemRef& item, TTypeStartupLocation target) {
  SMH_ASSERT(kUnit, CanModify());
  const std::wstring name = item->Name();
  TLocationStartup* const destination = FindLocation(target);
  const auto message = [&] {
    return Format(L"Error move item \"%s\" from \"%s\" to \"%s\".", name, MemberName(),
                  LocationMemberName(target));
  };
  auto* const folder = dynamic_cast<TLocationFolderStd*>(destination);
  if (folder != nullptr) {
    RunLogged([&] { MoveToFolder(item, *folder); }, message);
    return;
  }
  // Only a command goes to the registry: what has none, or more than one, is refused before it is touched.
  if (ItemExists(*item)) RunLogged([&] { RequireChangeableLink(name); }, message);
  TLocationStartup::MoveItem(item, target);
}

void TLocationFolderStd::MoveToFolder(const ItemRef& item, TLocationFolderStd& target) {
  const ChangeGate::Scope change(Gate());
  const ChangeGate::Scope targetChange(target.Gate());
  ScopedLock lock(Items().Lock());
  if (!item->IsListed()) return;
  if (!ItemExists(*item)) {
    Items().Remove(*item);
    Gate().MarkLoadDue();
    return;
  }
  SMH_ASSERT(kUnit, &target != this && target.CanAcceptItem(*item));
  const std::wstring from = item->Name();
  const bool enabled = item->IsEnabled();
  const std::wstring to =
      MakeUniqueFileName(target.folders_.PlaceFor(enabled) + std::wstring(FileNamePart(from)));
  const bool recorded = DLLGlobals::UseBackupCheckpoints();
  const ScopedCheckpoint checkpoint(recorded, ChangeKind::kMoving, item->GivenText());
  MoveEntryFile(FileChanger(recorded), from, to, target.folders_);
  // Made before the list changes: it reads the file, and may fail.
  ItemRef moved = MakeFileItem(target.LocationType(), to, enabled);
  const int position = Items().Remove(*item);
  Items().Insert(position, std::move(moved));
}

int TLocationFolderStd::ExtractItem(bool checkpoint, const ItemRef& item) {
  TLocationStartup::ExtractItem(checkpoint, item);
  const ChangeGate::Scope change(Gate());
  ScopedLock lock(Items().Lock());
  const std::wstring path = item->Name();
  Extracted entry{item, item->Position(), path, ReadShortcutBytes(path)};
  FileChanger(checkpoint).Delete(path);
  extracted_ = std::move(entry);
  return Items().Remove(*item);
}

void TLocationFolderStd::InsertItem(bool checkpoint, int extracted, bool enabled, const std::wstring& command,
                                    const std::wstring& entryName) {
  TLocationStartup::InsertItem(checkpoint, extracted, enabled, command, entryName);
  const ChangeGate::Scope change(Gate());
  ScopedLock lock(Items().Lock());
  const std::wstring name = PlainFileName(WithLinkExtension(entryName));
  const TemporaryShortcut made(folders_, name, ShortcutFields(CommandForShortcut(command)));
  const std::wstring file = InsertEntryFile(FileChanger(checkpoint), made.Path(), name, enabled, folders_);
  Items().Insert(extracted, MakeFileItem(LocationType(), file, enabled));
}

void TLocationFolderStd::PutBackItem(bool checkpoint) {
  if (!extracted_) return;
  const ChangeGate::Scope change(Gate());
  ScopedLock lock(Items().Lock());
  const Extracted entry = *std::move(extracted_);
  extracted_.reset();
  // Its old name may have been taken meanwhile.
  const std::wstring path = MakeUniqueFileName(entry.path);
  PutBackEntryFile(checkpoint, path, entry.bytes, folders_);
  if (path != entry.path) Items().Relocate(*entry.item, SharedText(path), {}, entry.item->IsEnabled());
  Items().Insert(entry.position, entry.item);
}

}  // namespace smh
