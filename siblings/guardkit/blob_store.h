// The content of deleted and replaced files, each once, under its hash: "Blobs\<hash>" in the journal's
// folder, <hash> being SHA-256 in lower-case hexadecimal digits. Sizes are bytes.
#pragma once

#include "infra/runtime/handle.h"
#include "siblings/guardkit/format/journal_steps.h"
#include "siblings/guardkit/journal_folder.h"

#include <map>

namespace smh {

// Deletes a file of the product's own, also a read-only one. What cannot be deleted stays. Any thread.
void RemoveEvenReadOnly(const std::wstring& path) noexcept;

// Knows folders only and keeps nothing open; any number may be made of one journal.
class BlobStore {
 public:
  // The folder must outlive it: it holds the path in place. The caller has the journal's lock whenever it
  // keeps or removes something.
  explicit BlobStore(const JournalFolder& folder) : folder_(folder.File(L"Blobs\\")), root_(folder.Path()) {}

  // Reads an open file from where it stands to its end and answers size and hash; nothing is kept. Raises
  // EOSError.
  static StreamState Measure(HANDLE file);
  // The same, and the content is on the disk under its hash when this returns. Raises EOSError. Content that
  // is kept already and whole is not written again.
  StreamState Keep(HANDLE file) const;
  // Appends the content to an open file. Raises EOSError: ERROR_FILE_NOT_FOUND when it is not there,
  // ERROR_CRC when it is not what was kept.
  void CopyTo(const StreamState& stream, HANDLE file) const;

  // All that are kept, with their sizes; those that cannot be listed are missing.
  std::map<ContentHash, std::uint64_t> List() const;
  // Removes one; what cannot be removed stays.
  void Remove(const ContentHash& hash) const noexcept;

  // The full path of a new name for a file that is being made, in the journal's folder; unique among the
  // running processes.
  std::wstring StagingFile() const;
  // Removes what processes that died left half made. Under the journal's lock: nobody else is making one
  // then.
  void RemoveStagingFiles() const noexcept;

 private:
  bool Holds(const StreamState& stream) const;

  std::wstring folder_;
  std::wstring root_;
};

}  // namespace smh
