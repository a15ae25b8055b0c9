// The states of files: read for the journal, written back by an undo. No state of its own: any thread.
#pragma once

#include "siblings/guardkit/blob_store.h"
#include "siblings/guardkit/format/journal_steps.h"

namespace smh {

// The state of the file at a full path, its contents as hashes. A missing file gives a state that does not
// exist. Raises EOSError when the state cannot be told: for a folder (access denied), for a reparse point
// (ERROR_CANT_ACCESS_FILE), for a file that somebody writes to.
FileState ReadFileState(const std::wstring& path);
// The same of a file that is open for reading, whose path this is.
FileState ReadOpenFileState(HANDLE file, const std::wstring& path);
// As the first, and all its streams are kept in `blobs`; the caller has the journal's lock.
FileState KeepFileState(const std::wstring& path, const BlobStore& blobs);

// Whether nothing has changed, to the byte; only the time of the last access does not count.
bool IsSameState(FileState now, const FileState& before);

// Makes the file that the state describes, with what its folder hands down where the state has no security;
// its content is on the disk when this returns. `path` is a new name. Raises EOSError, and whatever has that
// name is gone then.
void MakeFile(const FileState& state, const std::wstring& path, const BlobStore& blobs);

// Owner, group and DACL as far as this process may, see ApplySecurity. A Win32 status.
LSTATUS ApplyFileSecurity(const std::wstring& path, const ByteVector& security) noexcept;

// Whether two paths, which need not exist, lie on one volume, so that a rename gets from one to the other.
// Raises EOSError.
bool OnOneVolume(const std::wstring& a, const std::wstring& b);

}  // namespace smh
