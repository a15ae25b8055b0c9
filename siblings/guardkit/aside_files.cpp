#include "siblings/guardkit/aside_files.h"

#include "infra/files/file_facts.h"
#include "infra/files/file_moves.h"
#include "infra/runtime/exceptions.h"
#include "infra/runtime/text.h"
#include "siblings/guardkit/file_state.h"
#include "siblings/guardkit/format/state_content.h"

#include <algorithm>

namespace smh {

namespace {

bool Holds(const std::wstring& file, const FileState& content) {
  try {
    return SameContent(ReadFileState(file), content);
  } catch (const EOSError&) {
    return false;
  }
}

}  // namespace

AsideFiles::~AsideFiles() {
  for (const Row& row : rows_) {
    if (row.own) RemoveEvenReadOnly(row.now);
  }
}

LSTATUS AsideFiles::Take(RecordedFile& file, const std::wstring& path, bool evenReadOnly) {
  rows_.push_back({path, NewName(path, false)});
  if (file.MoveTo(rows_.back().now) == ERROR_SUCCESS) return ERROR_SUCCESS;
  rows_.pop_back();
  return file.Delete(evenReadOnly);
}

void AsideFiles::Link(const std::wstring& path) {
  // Its replacement will be refused, and the name could not go again without touching the file.
  if ((AttributesOf(path) & FILE_ATTRIBUTE_READONLY) != 0) return;
  rows_.push_back({path, NewName(path, false)});
  if (CreateHardLinkW(rows_.back().now.c_str(), path.c_str(), nullptr) == FALSE) rows_.pop_back();
}

void AsideFiles::Note(const std::wstring& path, const std::wstring& now) {
  rows_.push_back({path, now, false});
}

LSTATUS AsideFiles::PutBack(const std::wstring& path, const FileState& content, bool replaces) {
  const auto row = std::find_if(rows_.rbegin(), rows_.rend(), [&](const Row& each) {
    return SameText(each.path, path) && Holds(each.now, content);
  });
  if (row == rows_.rend()) return ERROR_FILE_NOT_FOUND;
  const LSTATUS status = RenameFile(row->now, path, replaces);
  if (status == ERROR_SUCCESS) rows_.erase(std::next(row).base());
  return status;
}

std::wstring AsideFiles::NewName(const std::wstring& path, bool inherits) const {
  std::wstring name = blobs_.StagingFile();
  const std::wstring folder = WithoutTrailingBackslash(FolderPart(path));
  if (!inherits && OnOneVolume(name, folder)) return name;
  const std::wstring above(FolderPart(folder));
  return std::wstring(above.empty() ? folder + L'\\' : above).append(FileNamePart(name));
}

}  // namespace smh
