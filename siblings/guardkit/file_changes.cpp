#include "siblings/guardkit/file_changes.h"

#include "infra/files/file_facts.h"
#include "infra/files/file_moves.h"
#include "infra/runtime/exceptions.h"
#include "infra/runtime/text.h"
#include "siblings/common/product.h"
#include "siblings/guardkit/format/state_content.h"

#include <shlobj.h>

namespace smh {

namespace {

LSTATUS LastStatus() noexcept {
  return static_cast<LSTATUS>(GetLastError());
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

// The state to go back to, with its content; what is taken back is recorded already.
FileState KeptState(OpenCheckpoint& checkpoint, const std::wstring& path) {
  return checkpoint.TakesBack() ? ReadFileState(path) : KeepFileState(path, checkpoint.Blobs());
}

bool IsExpected(const FileState& found, const FileState* expected) {
  return expected == nullptr || SameContent(found, *expected);
}

bool IsStill(const std::wstring& path, const FileState& state) {
  return IsSameState(ReadFileState(path), state);
}

// The rename refuses a file that was not there when it was looked at.
LSTATUS Replace(OpenCheckpoint& checkpoint, const FileStep& step, const StagedFile& staged) {
  if (step.before.exists) checkpoint.Aside().Link(step.path);
  return checkpoint.Record(
      step, [&] { return IsStill(step.path, step.before); },
      [&] { return RenameFile(staged.Path(), step.path, step.before.exists); });
}

// One that was set aside comes back as it is.
LSTATUS PutBackAside(OpenCheckpoint& checkpoint, const FileStep& step) {
  if (!checkpoint.TakesBack()) return ERROR_FILE_NOT_FOUND;
  return checkpoint.Record(
      step, [&] { return IsStill(step.path, step.before); },
      [&] { return checkpoint.Aside().PutBack(step.path, step.after, step.before.exists); });
}

LSTATUS MoveByCopy(OpenCheckpoint& checkpoint, const std::wstring& from, const std::wstring& to,
                   const FileState& file) {
  if (!IsTemporary(from)) {
    checkpoint.SetSource({StepSource::Kind::kFile, from, {}, ContentSum(file)});
  }
  const LSTATUS copied = CopyRecorded(checkpoint, from, to, false);
  if (copied != ERROR_SUCCESS) return copied;
  const FileState copy = ReadFileState(to);
  LSTATUS status = ERROR_WRITE_FAULT;
  if (copy.streams == file.streams) {
    if (!IsTemporary(from)) {
      status = DeleteRecorded(checkpoint, from, ReadOnly::kDeleted, &copy);
    } else {
      status = DeleteFileW(from.c_str()) != FALSE ? ERROR_SUCCESS : LastStatus();
    }
  }
  if (status != ERROR_SUCCESS) DeleteRecorded(checkpoint, to, ReadOnly::kDeleted, &copy);
  return status;
}

}  // namespace

LSTATUS MoveRecorded(OpenCheckpoint& checkpoint, const std::wstring& from, const std::wstring& to,
                     const FileState* expected) {
  if (Exists(to)) return ERROR_ALREADY_EXISTS;
  const bool isDeleted = IsTemporary(to);
  const FileState file = isDeleted ? KeptState(checkpoint, from) : ReadFileState(from);
  if (!file.exists) return ERROR_FILE_NOT_FOUND;
  if (!IsExpected(file, expected)) return ERROR_REVISION_MISMATCH;
  if (!OnOneVolume(from, to)) return MoveByCopy(checkpoint, from, to, file);
  Step step = MoveStep{from, to, file};
  if (IsTemporary(from)) {
    step = FileStep{to, {}, file};
  } else if (isDeleted) {
    step = FileStep{from, file, {}};
  }
  RecordedFile held(from, checkpoint.Patience());
  if (!held) return LastStatus();
  const LSTATUS status = checkpoint.Record(
      step, [&] { return held.Is(file); }, [&] { return held.MoveTo(to); });
  if (status == ERROR_SUCCESS && isDeleted) checkpoint.Aside().Note(from, to);
  return status;
}

LSTATUS DeleteRecorded(OpenCheckpoint& checkpoint, const std::wstring& file, ReadOnly readOnly,
                       const FileState* expected) {
  const FileStep step{file, KeptState(checkpoint, file), {}};
  if (!step.before.exists) return ERROR_FILE_NOT_FOUND;
  if (!IsExpected(step.before, expected)) return ERROR_REVISION_MISMATCH;
  const bool evenReadOnly = readOnly == ReadOnly::kDeleted;
  if (!evenReadOnly && (step.before.attributes & FILE_ATTRIBUTE_READONLY) != 0) return ERROR_ACCESS_DENIED;
  checkpoint.FlushBeforeDelete({});
  RecordedFile held(file, checkpoint.Patience());
  if (!held) return LastStatus();
  return checkpoint.Record(
      step, [&] { return held.Is(step.before); },
      [&] { return checkpoint.Aside().Take(held, file, evenReadOnly); });
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
                     bool overwrite, const FileState* expected) {
  FileStep step{path, KeptState(checkpoint, path), wanted};
  // From here on the rename itself fails on a file that was not there now.
  if (!overwrite && step.before.exists) return ERROR_FILE_EXISTS;
  if (!IsExpected(step.before, expected)) return ERROR_REVISION_MISMATCH;
  const LSTATUS back = PutBackAside(checkpoint, step);
  if (back != ERROR_FILE_NOT_FOUND) return back;
  if (step.after.security.empty()) step.after.security = step.before.security;
  const StagedFile staged(checkpoint.Aside().NewName(path, step.after.security.empty()));
  MakeFile(step.after, staged.Path(), checkpoint.Blobs());
  return Replace(checkpoint, step, staged);
}

}  // namespace smh
