// The content of deleted and replaced files, each once, under its hash: "Blobs\<hash>" in the journal's
// folder.
#pragma once

#include "siblings/guardkit/journal_folder.h"
#include "siblings/guardkit/format/journal_steps.h"
#include "infra/runtime/handle.h"

#include <set>

namespace smh {

class BlobStore {
 public:
  // The folder must outlive it. The caller holds the journal's lock whenever it keeps or removes something.
  explicit BlobStore(const JournalFolder& folder) : folder_(folder.File(L"Blobs\\")), root_(folder.Path()) {}

  // Reads an open file to its end and answers what it holds; nothing is kept.
  static StreamState Measure(HANDLE file);
  // The same, and the content is on the disk under its hash when this returns. Raises EOSError.
  StreamState Keep(HANDLE file) const;
  // Appends the content to an open file. Raises EOSError: ERROR_FILE_NOT_FOUND when it is not there,
  // ERROR_CRC when it is not what was kept.
  void CopyTo(const StreamState& stream, HANDLE file) const;

  std::uint64_t TotalSize() const;
  // Removes every content but these.
  void RemoveAllBut(const std::set<ContentHash>& used) const;

  // A new name for a file that is being made in the journal's folder.
  std::wstring StagingFile() const;
  // Removes what processes that died left half made.
  void RemoveStagingFiles() const noexcept;

 private:
  bool Holds(const StreamState& stream) const;

  std::wstring folder_;
  std::wstring root_;
};

}  // namespace smh
