#include "locations/folders/uLocationFolderStd.h"

#include "core/contracts/uDllGlobals.h"
#include "infra/runtime/assertion.h"
#include "infra/runtime/exceptions.h"
#include "infra/runtime/text.h"
#include "locations/folders/folder_files.h"
#include "locations/folders/link_entry.h"
#include "model/checkpoint.h"
#include "sysutil/wow64_paths.h"

namespace smh {

namespace {

constexpr wchar_t kUnit[] = L"uLocationFolderStd";

}  // namespace

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
  const std::wstring to = MakeUniqueFileName(target.PlaceFor(enabled) + std::wstring(FileNamePart(from)));
  const bool recorded = DLLGlobals::UseBackupCheckpoints();
  const ScopedCheckpoint checkpoint(recorded, ChangeKind::kMoving, item->GivenText());
  MoveFile(FileChanger(recorded), from, to, target);
  Items().Insert(Items().Remove(*item), MakeFileItem(target.LocationType(), to, enabled));
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
  const std::wstring made = CreateShortcut(name, FieldsOfCommand(command));
  const ScopedFile removeIfLeft(made);
  const std::string bytes = ReadShortcutBytes(made);
  const std::wstring file = MakeUniqueFileName(PlaceFor(enabled) + name);
  const FileChanger changer(checkpoint);
  MoveFile(changer, made, file, *this);
  try {
    if (ReadShortcutBytes(file) != bytes) RaiseOSError(ERROR_WRITE_FAULT);
  } catch (...) {
    changer.Discard(file);
    throw;
  }
  Items().Insert(extracted, MakeFileItem(LocationType(), file, enabled));
}

void TLocationFolderStd::WriteBack(bool checkpoint, const std::wstring& path,
                                   const std::string& bytes) const {
  if (checkpoint) {
    try {
      const std::wstring made = MakeUniqueFileName(TempShortcutFolder() + std::wstring(FileNamePart(path)));
      WriteNewFile(made, bytes);
      const ScopedFile removeIfLeft(made);
      FileChanger(true).Move(made, path);
      return;
    } catch (const EOSError&) {
      // What the service refuses is done all the same: no entry may be lost.
    }
  }
  if (!FileUtils::FileExists(path)) WriteNewFile(path, bytes);
}

void TLocationFolderStd::PutBackItem(bool checkpoint) {
  if (!extracted_) return;
  const ChangeGate::Scope change(Gate());
  ScopedLock lock(Items().Lock());
  const Extracted entry = *std::move(extracted_);
  extracted_.reset();
  // Its old name may have been taken meanwhile.
  const std::wstring path = MakeUniqueFileName(entry.path);
  WriteBack(checkpoint, path, entry.bytes);
  if (path != entry.path) Items().Relocate(*entry.item, SharedText(path), {}, entry.item->IsEnabled());
  Items().Insert(entry.position, entry.item);
}

}  // namespace smh
