#include "locations/folders/uLocationFolderStd.h"

#include "core/contracts/uDllGlobals.h"
#include "infra/runtime/exceptions.h"
#include "infra/runtime/text.h"
#include "infra/files/folder_access.h"
#include "infra/files/folder_making.h"
#include "infra/files/paths.h"
#include "locations/folders/folder_files.h"
#include "locations/folders/link_entry.h"
#include "model/checkpoint.h"
#include "sysutil/wow64_paths.h"

namespace smh {

namespace {

constexpr wchar_t kDeleteLine[] = L"Error delete item \"%s\" in location \"%s\".";
constexpr wchar_t kEnableLine[] = L"Error enable item \"%s\" in location \"%s\".";
constexpr wchar_t kDisableLine[] = L"Error disable item \"%s\" in location \"%s\".";
constexpr wchar_t kAddLine[] = L"Error add item \"%s\" (%s) in location \"%s\".";
// Spelled so, and without a full stop, on purpose: users search their logs for it.
constexpr wchar_t kChangeLine[] = L"Error change item \"%s\" comand on \"%s\" in location \"%s\"";

void RequireFolder(const std::wstring& folder) {
  if (folder.empty()) RaiseOSError(ERROR_PATH_NOT_FOUND);
}

}  // namespace

std::wstring TLocationFolderStd::ItemLine(std::wstring_view format, const std::wstring& itemName) const {
  return Format(format, itemName, MemberName());
}

void TLocationFolderStd::MakeOwnFolder(const std::wstring& folder) const {
  if (FileUtils::DirectoryExists(folder)) return;
  if (IsCommon()) {
    MakeProtectedFolder(folder);
  } else {
    MakeFolderPath(folder);
  }
}

const std::wstring& TLocationFolderStd::StartupFolder() {
  RequireFolder(startupFolder_);
  MakeFolderPath(startupFolder_);
  return startupFolder_;
}

const std::wstring& TLocationFolderStd::DisabledFolder() {
  RequireFolder(dataFolder_);
  MakeOwnFolder(disabledFolders_.front());
  return disabledFolders_.front();
}

std::wstring TLocationFolderStd::TempShortcutFolder() const {
  RequireFolder(ownFolder_);
  std::wstring folder = TempShortcutsIn(ownFolder_);
  MakeOwnFolder(folder);
  // What somebody else may change between its making and its move would start for everyone.
  if (IsCommon() && KeepsAccess(dataFolder_)) RequireTrusted(folder);
  return folder;
}

std::wstring TLocationFolderStd::CreateShortcut(const std::wstring& name,
                                                const ShortcutFields& fields) const {
  std::wstring file = MakeUniqueFileName(TempShortcutFolder() + WithLinkExtension(name));
  WriteShortcut(fields, file);
  return file;
}

void TLocationFolderStd::RequireTrustedSource(const std::wstring& file) const {
  if (!IsCommon()) return;
  RequireFolder(dataFolder_);
  if (!KeepsAccess(dataFolder_)) return;
  RequireTrusted(std::wstring(FolderPart(file)));
  RequireTrusted(file);
}

void TLocationFolderStd::TakeOver(const std::wstring& file) const {
  if (!IsCommon()) return;
  RequireFolder(dataFolder_);
  if (KeepsAccess(dataFolder_)) TakeInheritedAccess(file);
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
        if (enable) RequireTrustedSource(from);
        const std::wstring to = MakeUniqueFileName(PlaceFor(enable) + std::wstring(FileNamePart(from)));
        const bool recorded = DLLGlobals::UseBackupCheckpoints();
        const ScopedCheckpoint checkpoint(recorded, enable ? ChangeKind::kEnabling : ChangeKind::kDisabling,
                                          item->GivenText());
        MoveFile(FileChanger(recorded), from, to, *this);
        Items().Relocate(*item, SharedText(to), {}, enable);
      },
      [&] { return ItemLine(enable ? kEnableLine : kDisableLine, from); });
}

void TLocationFolderStd::MoveFile(const FileChanger& changer, const std::wstring& from,
                                  const std::wstring& to, const TLocationFolderStd& target) const {
  changer.Move(from, to);
  try {
    target.TakeOver(to);
  } catch (...) {
    changer.Move(to, from);
    throw;
  }
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
      [&] { return ItemLine(kDeleteLine, file); });
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
  const std::wstring file = StartupFolder() + WithLinkExtension(name);
  if (FileUtils::FileExists(file)) RaiseOSError(ERROR_ALREADY_EXISTS);
  const std::wstring made = CreateShortcut(name, FieldsOfCommand(command));
  const ScopedFile removeIfLeft(made);
  {
    const bool recorded = DLLGlobals::UseBackupCheckpoints();
    const ScopedCheckpoint checkpoint(recorded, ChangeKind::kAdding, name);
    MoveFile(FileChanger(recorded), made, file, *this);
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

void TLocationFolderStd::ReplaceShortcut(const FileChanger& changer, const std::wstring& made,
                                         const std::wstring& file, bool enabled) const {
  const std::string bytes = ReadShortcutBytes(made);
  // Whatever stands there after a failure, the old file comes back from a copy made before.
  const std::wstring kept = MakeUniqueFileName(made);
  const ScopedFile removeKept(kept);
  WriteNewFile(kept, ReadShortcutBytes(file));
  try {
    changer.Replace(made, file);
    if (ReadShortcutBytes(file) != bytes) RaiseOSError(ERROR_WRITE_FAULT);
    if (enabled) TakeOver(file);
  } catch (...) {
    try {
      changer.Replace(kept, file);
    } catch (const EOSError&) {
      // What the service refuses is done all the same: no entry may be lost.
      FileChanger(false).Replace(kept, file);
    }
    throw;
  }
}

void TLocationFolderStd::RewriteShortcut(const ItemRef& item, const std::wstring& command) {
  ScopedLock lock(Items().Lock());
  const ItemState state = item->State();
  if (!item->IsListed() || SameText(state.details.Command, command)) return;
  const std::wstring file(state.name);
  ShortcutFields fields = FieldsOfCommand(command);
  KeepFieldsOfLink(RequireChangeableLink(file), fields);
  const std::wstring made = CreateShortcut(std::wstring(FileNamePart(file)), fields);
  const ScopedFile removeIfLeft(made);
  {
    const bool recorded = DLLGlobals::UseBackupCheckpoints();
    const ScopedCheckpoint checkpoint(recorded, ChangeKind::kChanging, item->GivenText());
    ReplaceShortcut(FileChanger(recorded), made, file, state.isEnabled);
  }
  item->UpdateCommand(file, [] { return true; });
}

}  // namespace smh
