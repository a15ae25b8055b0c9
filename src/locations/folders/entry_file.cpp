#include "locations/folders/entry_file.h"

#include "core/contracts/uDllGlobals.h"
#include "infra/files/file_facts.h"
#include "infra/files/file_moves.h"
#include "infra/files/file_reading.h"
#include "infra/runtime/exceptions.h"
#include "infra/runtime/text.h"
#include "locations/folders/folder_files.h"
#include "model/change_refused.h"
#include "model/last_look.h"

namespace smh {

namespace {

// What the service answers for what its own last look has found changed.
void CheckRecorded(LSTATUS status) {
  if (status == ERROR_REVISION_MISMATCH) RaiseChangedMeanwhile();
  CheckStatus(status);
}

// At once or not at all. To another volume by way of a copy beside it, whose name no load takes for an
// entry's.
LSTATUS PutInPlace(const std::wstring& from, const std::wstring& to) {
  const LSTATUS status = RenameFile(from, to, true);
  if (status != ERROR_NOT_SAME_DEVICE) return status;
  const ScopedFile beside(MakeUniqueFileName(to + L".new"));
  if (CopyFileW(from.c_str(), beside.Path().c_str(), TRUE) == FALSE) {
    return static_cast<LSTATUS>(GetLastError());
  }
  return RenameFile(beside.Path(), to, true);
}

// As long as `isStill` holds what stands there may go; raises as that, and EChangeRefused when it does not.
LSTATUS PutPatiently(const std::wstring& from, const std::wstring& to, const LastLook& isStill) {
  OpenPatience patience;
  for (;;) {
    LSTATUS status = ERROR_SHARING_VIOLATION;
    try {
      RequireStill(isStill);
      status = PutInPlace(from, to);
    } catch (const EOSError& error) {
      if (error.Code() != ERROR_SHARING_VIOLATION) throw;
    }
    if (status != ERROR_SHARING_VIOLATION || !patience.Wait()) return status;
  }
}

// Times and what people set of the attributes. A read-only file cannot be replaced anyway.
void SetBasicInfo(const std::wstring& path, FILE_BASIC_INFO info) {
  constexpr DWORD kKept = FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM | FILE_ATTRIBUTE_ARCHIVE;
  info.FileAttributes &= kKept;
  if (info.FileAttributes == 0) info.FileAttributes = FILE_ATTRIBUTE_NORMAL;
  const ScopedHandle file(
      CreateFileW(path.c_str(), FILE_WRITE_ATTRIBUTES, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr));
  if (!file || SetFileInformationByHandle(file.Get(), FileBasicInfo, &info, sizeof(info)) == FALSE) {
    RaiseLastOSError();
  }
}

}  // namespace

FoundEntry ListFile(const std::wstring& path, bool enabled) {
  FoundEntry found;
  found.name = SharedText(path);
  found.command = found.name;
  const std::wstring_view name = FileNamePart(path);
  found.caption = SharedText(name.substr(0, name.size() - ExtensionPart(name).size()));
  found.isEnabled = enabled;
  return found;
}

std::unique_ptr<FileSource> FileSource::Open(const FolderSet& folders, const std::wstring& path,
                                             bool recorded) {
  std::unique_ptr<HeldFile> file = HeldFile::Open(path);
  if (file == nullptr) return nullptr;
  std::string bytes;
  if (SameText(ExtensionPart(path), kShortcutExtension)) bytes = file->Bytes(kLargestShortcut);
  return std::unique_ptr<FileSource>(new FileSource(folders, std::move(file), std::move(bytes), recorded));
}

FileSource::FileSource(const FolderSet& folders, std::unique_ptr<HeldFile> file, std::string bytes,
                       bool recorded)
    : folders_(folders),
      file_(std::move(file)),
      path_(file_->Path()),
      bytes_(std::move(bytes)),
      recorded_(recorded) {}

FoundEntry FileSource::Found() const {
  return ListFile(path_, folders_.IsStartupFolder(FolderPart(path_)));
}

// One that cannot be read is shown as itself.
SharedText FileSource::ShownCommand() const {
  try {
    TShellLinkInfo link;
    link.SetBytes(path_, bytes_);
    if (ShortcutFacts facts = ShortcutFactsOf(link); !facts.targetFile.empty())
      return std::move(facts.command);
  } catch (const Exception&) {
  }
  return SharedText(path_);
}

std::wstring FileSource::Command() const {
  const ShortcutFacts facts = ShortcutFactsOf(*RequireChangeableLink(path_, bytes_));
  if (facts.targetFile.empty()) RaiseOSError(ERROR_NOT_SUPPORTED);
  return std::wstring(facts.command);
}

void FileSource::MarkCopies(std::size_t) const {
  DLLGlobals::Safeguard().SetSource(nullptr, nullptr, path_.c_str());
}

bool FileSource::ExtractItem(const LastLook& arrived) {
  if (!recorded_) {
    RequireStill(arrived);
    isBegun_ = true;
    file_->Delete();
    return true;
  }
  try {
    DeleteRecorded(arrived);
  } catch (const EChangeRefused&) {
    // Gone by another program's hand it needs no deletion, and must not come back.
    if (Exists(path_) || !file_->HasLeft(path_) || !arrived()) throw;
  }
  return true;
}

void FileSource::DeleteRecorded(const LastLook& arrived) {
  file_->ShareDeletion();
  if (!bytes_.empty() && file_->Bytes(kLargestShortcut) != bytes_) RaiseChangedMeanwhile();
  const LastLook isStill = [&] { return isBegun_ = arrived() && file_->StandsAt(path_); };
  const ScopedLook look(isStill);
  const LSTATUS status = DLLGlobals::Safeguard().DeleteRecordedFile(path_.c_str());
  look.RequireKept();
  file_->Close();
  // What happened counts, not what was answered; a refusal is believed unless the file is seen to have gone.
  if (status == ERROR_SUCCESS ? !file_->StandsAt(path_) : file_->HasLeft(path_)) return;
  CheckRecorded(status);
  RaiseOSError(ERROR_ACCESS_DENIED);
}

bool FileSource::PutBack() noexcept {
  if (file_->StandsAt(path_)) return true;
  try {
    if (!Exists(path_) && !bytes_.empty()) WriteNewFile(path_, bytes_);
    // What others have put where it was deleted is not it.
    return isBegun_ ? ReadShortcutBytes(path_) == bytes_ : Exists(path_);
  } catch (...) {
    return false;
  }
}

FileTarget::FileTarget(FileSource& source, std::wstring to, bool enabled, const FolderSet& folders,
                       bool recorded)
    : file_(source.File()),
      from_(file_.Path()),
      to_(std::move(to)),
      enabled_(enabled),
      folders_(folders),
      recorded_(recorded) {}

FileTarget::FileTarget(std::unique_ptr<TemporaryShortcut> made, std::wstring to, bool enabled,
                       const FolderSet& folders, bool recorded)
    : made_(std::move(made)),
      held_(HeldFile::Require(made_->Path())),
      file_(*held_),
      from_(made_->Path()),
      to_(std::move(to)),
      bytes_(file_.Bytes(kLargestShortcut)),
      enabled_(enabled),
      folders_(folders),
      recorded_(recorded) {
  folders_.RequireTrustedSource(file_);
}

void FileTarget::Move() {
  if (!recorded_) {
    file_.RenameTo(to_);
    return;
  }
  file_.ShareDeletion();
  const ScopedLook look([this] { return file_.StandsAt(from_); });
  const LSTATUS status = DLLGlobals::Safeguard().MoveRecordedFile(from_.c_str(), to_.c_str());
  look.RequireKept();
  // What happened counts, not what was answered; to another volume the file goes as a copy.
  if (file_.StandsAt(to_) || (status == ERROR_SUCCESS && !Exists(from_) && Exists(to_))) return;
  CheckRecorded(status);
  RaiseOSError(ERROR_ACCESS_DENIED);
}

// Let go of afterwards: those who list the file now read it.
bool FileTarget::InsertItem(const CopyMark& mark) {
  // A file that goes there itself is no copy.
  if (made_ != nullptr) mark(0);
  Move();
  file_.Close();
  folders_.TakeOver(to_);
  return true;
}

// What took the source along is not asked.
bool FileTarget::Stands() const {
  // Without sharing deletion: a file that is deleted is still read by those who had it open.
  return made_ == nullptr || ReadWholeFile(to_, FILE_SHARE_READ, kLargestShortcut) == bytes_;
}

bool FileTarget::TakeBack() noexcept {
  try {
    file_.Close();
    if (file_.StandsAt(from_) || Exists(from_)) return file_.StandsAt(from_);
    const std::unique_ptr<HeldFile> file = HeldFile::Open(to_);
    if (file == nullptr || file->Identity() != file_.Identity()) return false;
    file->RenameTo(from_);
    return true;
  } catch (...) {
    return false;
  }
}

ReplacedFile::ReplacedFile(FileSource& source, std::unique_ptr<TemporaryShortcut> made,
                           const FolderSet& folders, bool recorded)
    : source_(source),
      made_(std::move(made)),
      file_(source.File().Path()),
      bytes_(ReadShortcutBytes(made_->Path())),
      folders_(folders),
      recorded_(recorded) {
  SetBasicInfo(made_->Path(), source.File().BasicInfo());
}

// A file that is open cannot be replaced: it is let go of directly before.
void ReplacedFile::Replace() {
  HeldFile& old = source_.File();
  const auto isOld = [&] { return old.StandsAt(file_) && ReadShortcutBytes(file_) == source_.Bytes(); };
  old.Close();
  if (recorded_) {
    const ScopedLook look(isOld);
    const LSTATUS status =
        DLLGlobals::Safeguard().CopyRecordedFile(made_->Path().c_str(), file_.c_str(), TRUE);
    look.RequireKept();
    if (ReadShortcutBytes(file_) != bytes_) CheckRecorded(status);
    return;
  }
  aside_ = std::make_unique<ScopedFile>(MakeUniqueFileName(made_->Path()));
  // Another name of the same file needs no room; where there is none, a copy does.
  if (CreateHardLinkW(aside_->Path().c_str(), file_.c_str(), nullptr) == FALSE &&
      CopyFileW(file_.c_str(), aside_->Path().c_str(), TRUE) == FALSE) {
    RaiseLastOSError();
  }
  const LSTATUS status = PutPatiently(made_->Path(), file_, isOld);
  const DWORD error = status == ERROR_SUCCESS ? ERROR_WRITE_FAULT : static_cast<DWORD>(status);
  if (ReadShortcutBytes(file_) != bytes_) RaiseOSError(error);
}

bool ReplacedFile::InsertItem(const CopyMark&) {
  Replace();
  if (ReadShortcutBytes(file_) != bytes_) RaiseOSError(ERROR_WRITE_FAULT);
  folders_.TakeOver(file_);
  return true;
}

bool ReplacedFile::Stands() const {
  return ReadShortcutBytes(file_) == bytes_;
}

bool ReplacedFile::TakeBack() noexcept {
  try {
    if (aside_ == nullptr) return ReadShortcutBytes(file_) == source_.Bytes();
    bool isOld = false;
    const LastLook isOurs = [&] {
      const std::string now = ReadShortcutBytes(file_);
      isOld = now == source_.Bytes();
      return !isOld && now == bytes_;
    };
    try {
      return PutPatiently(aside_->Path(), file_, isOurs) == ERROR_SUCCESS;
    } catch (const EChangeRefused&) {
      return isOld;
    }
  } catch (...) {
    return false;
  }
}

}  // namespace smh
