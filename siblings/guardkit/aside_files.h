// Files that a checkpoint deleted or replaced, under other names of their volume until it ends: putting one
// back is one rename and needs no room on the disk.
#pragma once

#include "siblings/guardkit/blob_store.h"
#include "siblings/guardkit/recorded_file.h"

#include <string>
#include <vector>

namespace smh {

// Of one checkpoint, for its thread, which holds the journal's lock. Paths are full. What a process that dies
// leaves behind goes with the other files that are being made.
class AsideFiles {
 public:
  // `blobs` names the files and outlives the object.
  explicit AsideFiles(const BlobStore& blobs) : blobs_(blobs) {}
  // Deletes what was not put back.
  ~AsideFiles();
  AsideFiles(const AsideFiles&) = delete;
  AsideFiles& operator=(const AsideFiles&) = delete;

  // Takes the held file away from `path`, which is free when this returns with ERROR_SUCCESS. A file that no
  // other name may be given to is deleted.
  LSTATUS Take(RecordedFile& file, const std::wstring& path, bool evenReadOnly);
  // Gives a file that is about to be replaced a second name; nothing happens where that cannot be.
  void Link(const std::wstring& path);
  // The file of `path` lies in `now` by now, and is nobody's to delete here.
  void Note(const std::wstring& path, const std::wstring& now);

  // Puts the file with this content back at its path, over what stands there if `replaces`. A Win32 status;
  // ERROR_FILE_NOT_FOUND when there is none. Raises std::bad_alloc.
  LSTATUS PutBack(const std::wstring& path, const FileState& content, bool replaces);

  // A new name for a file on the volume of `path`: in the journal's folder, or, from another volume and with
  // `inherits`, in the folder above that of `path`, which is not watched and starts nothing. Raises EOSError.
  std::wstring NewName(const std::wstring& path, bool inherits) const;

 private:
  struct Row {
    std::wstring path;
    std::wstring now;
    bool own = true;
  };

  const BlobStore& blobs_;
  std::vector<Row> rows_;
};

}  // namespace smh
