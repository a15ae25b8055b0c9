#include "siblings/guardkit/file_changes.h"

#include "infra/files/file_facts.h"
#include "infra/runtime/exceptions.h"
#include "infra/runtime/text.h"
#include "siblings/common/product.h"

#include <shlobj.h>

namespace smh {

namespace {

LSTATUS StatusOf(BOOL succeeded) noexcept {
  return succeeded != FALSE ? ERROR_SUCCESS : static_cast<LSTATUS>(GetLastError());
}

// The file goes unless it was renamed into its place.
class StagedFile {
 public:
  explicit StagedFile(std::wstring path) : path_(std::move(path)) {}
  ~StagedFile() { DeleteFileW(path_.c_str()); }
  StagedFile(const StagedFile&) = delete;
  StagedFile& operator=(const StagedFile&) = delete;

  const std::wstring& Path() const noexcept { return path_; }

 private:
  std::wstring path_;
};

bool IsTemporary(const std::wstring& file) {
  for (const int base : {CSIDL_APPDATA, CSIDL_COMMON_APPDATA}) {
    const std::wstring folder = ProductFolder(base);
    if (!folder.empty() && SameText(FolderPart(file), TempShortcutsIn(folder))) return true;
  }
  return false;
}

// Where a file for `target` is made. One that brings its own security does not have to inherit it; any other
// one inherits it from the folder above the target's, which is not watched and starts nothing.
std::wstring StagingPath(const OpenCheckpoint& checkpoint, const std::wstring& target,
                         const FileState& wanted) {
  std::wstring made = checkpoint.Blobs().StagingFile();
  const std::wstring folder = WithoutTrailingBackslash(FolderPart(target));
  if (!wanted.security.empty() && OnOneVolume(made, folder)) return made;
  const std::wstring above(FolderPart(folder));
  return std::wstring(above.empty() ? folder + L'\\' : above).append(FileNamePart(made));
}

bool IsStill(const std::wstring& path, const FileState& state) {
  const FileState now = ReadFileState(path);
  return now.exists == state.exists && now.streams == state.streams;
}

LSTATUS Replace(OpenCheckpoint& checkpoint, const FileStep& step, const StagedFile& staged) {
  const DWORD flags = MOVEFILE_WRITE_THROUGH | (step.before.exists ? MOVEFILE_REPLACE_EXISTING : 0);
  return checkpoint.Record(
      step, [&] { return IsStill(step.path, step.before); },
      [&] { return StatusOf(MoveFileExW(staged.Path().c_str(), step.path.c_str(), flags)); });
}

LSTATUS MoveByCopy(OpenCheckpoint& checkpoint, const std::wstring& from, const std::wstring& to) {
  const LSTATUS copied = CopyRecorded(checkpoint, from, to, false);
  if (copied != ERROR_SUCCESS) return copied;
  if (ReadFileState(to).streams != ReadFileState(from).streams) {
    DeleteRecorded(checkpoint, to);
    return ERROR_WRITE_FAULT;
  }
  const LSTATUS deleted =
      IsTemporary(from) ? StatusOf(DeleteFileW(from.c_str())) : DeleteRecorded(checkpoint, from);
  if (deleted != ERROR_SUCCESS) DeleteRecorded(checkpoint, to);
  return deleted;
}

}  // namespace

LSTATUS MoveRecorded(OpenCheckpoint& checkpoint, const std::wstring& from, const std::wstring& to) {
  if (Exists(to)) return ERROR_ALREADY_EXISTS;
  const bool isDeleted = IsTemporary(to);
  const FileState file = isDeleted ? KeepFileState(from, checkpoint.Blobs()) : ReadFileState(from);
  if (!file.exists) return ERROR_FILE_NOT_FOUND;
  if (!OnOneVolume(from, to)) return MoveByCopy(checkpoint, from, to);
  Step step = MoveStep{from, to, file};
  if (IsTemporary(from)) {
    step = FileStep{to, {}, file};
  } else if (isDeleted) {
    step = FileStep{from, file, {}};
  }
  return checkpoint.Record(
      step, [&] { return IsStill(from, file); },
      [&] { return StatusOf(MoveFileExW(from.c_str(), to.c_str(), MOVEFILE_WRITE_THROUGH)); });
}

LSTATUS DeleteRecorded(OpenCheckpoint& checkpoint, const std::wstring& file) {
  const FileStep step{file, KeepFileState(file, checkpoint.Blobs()), {}};
  if (!step.before.exists) return ERROR_FILE_NOT_FOUND;
  checkpoint.FlushBeforeDelete({});
  return checkpoint.Record(
      step, [&] { return IsStill(file, step.before); }, [&] { return StatusOf(DeleteFileW(file.c_str())); });
}

LSTATUS CopyRecorded(OpenCheckpoint& checkpoint, const std::wstring& from, const std::wstring& to,
                     bool overwrite) {
  if (!overwrite && Exists(to)) return ERROR_FILE_EXISTS;
  FileState wanted = KeepFileState(from, checkpoint.Blobs());
  if (!wanted.exists) return ERROR_FILE_NOT_FOUND;
  wanted.security.clear();
  return MakeRecorded(checkpoint, to, wanted, overwrite);
}

LSTATUS MakeRecorded(OpenCheckpoint& checkpoint, const std::wstring& path, const FileState& wanted,
                     bool overwrite) {
  FileStep step{path, KeepFileState(path, checkpoint.Blobs()), wanted};
  // From here on the rename itself fails on a file that was not there now.
  if (!overwrite && step.before.exists) return ERROR_FILE_EXISTS;
  if (step.after.security.empty()) step.after.security = step.before.security;
  const StagedFile staged(StagingPath(checkpoint, path, step.after));
  MakeFile(step.after, staged.Path(), checkpoint.Blobs());
  return Replace(checkpoint, step, staged);
}

}  // namespace smh
