#include "locations/folders/entry_file_changes.h"

#include "infra/runtime/exceptions.h"
#include "infra/runtime/text.h"
#include "locations/folders/folder_files.h"
#include "locations/folders/shortcut_writer.h"
#include "sysutil/uFileUtils.h"

namespace smh {

void MoveEntryFile(const FileChanger& changer, const std::wstring& from, const std::wstring& to,
                   const FolderSet& folders) {
  changer.Move(from, to);
  try {
    folders.TakeOver(to);
  } catch (...) {
    changer.Move(to, from);
    throw;
  }
}

std::wstring InsertEntryFile(const FileChanger& changer, const std::wstring& made, const std::wstring& name,
                             bool enabled, const FolderSet& folders) {
  const std::string bytes = ReadShortcutBytes(made);
  std::wstring file = MakeUniqueFileName(folders.PlaceFor(enabled) + name);
  MoveEntryFile(changer, made, file, folders);
  try {
    if (ReadShortcutBytes(file) != bytes) RaiseOSError(ERROR_WRITE_FAULT);
  } catch (...) {
    changer.Discard(file);
    throw;
  }
  return file;
}

void ReplaceEntryFile(const FileChanger& changer, const std::wstring& made, const std::wstring& file,
                      bool enabled, const FolderSet& folders) {
  const std::string bytes = ReadShortcutBytes(made);
  // Whatever stands there after a failure, the old file comes back from a copy made before.
  const ScopedFile kept(MakeUniqueFileName(made));
  WriteNewFile(kept.Path(), ReadShortcutBytes(file));
  try {
    changer.Replace(made, file);
    if (ReadShortcutBytes(file) != bytes) RaiseOSError(ERROR_WRITE_FAULT);
    if (enabled) folders.TakeOver(file);
  } catch (...) {
    try {
      changer.Replace(kept.Path(), file);
    } catch (const EOSError&) {
      // What the service refuses is done all the same: no entry may be lost.
      FileChanger(false).Replace(kept.Path(), file);
    }
    throw;
  }
}

void PutBackEntryFile(bool recorded, const std::wstring& path, const std::string& bytes,
                      const FolderSet& folders) {
  if (recorded) {
    try {
      const std::wstring made =
          MakeUniqueFileName(folders.TemporaryFolder() + std::wstring(FileNamePart(path)));
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

}  // namespace smh
