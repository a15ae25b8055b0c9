// The states of files: read for the journal, written back by an undo.
#pragma once

#include "siblings/guardkit/blob_store.h"
#include "siblings/guardkit/format/journal_steps.h"

namespace smh {

// A missing file gives a state that does not exist. Raises EOSError when the state cannot be told: for a
// folder (access denied), for a reparse point (ERROR_CANT_ACCESS_FILE), for a file that somebody writes to.
FileState ReadFileState(const std::wstring& path);
// The same, and all its streams are kept.
FileState KeepFileState(const std::wstring& path, const BlobStore& blobs);

// Makes the file that the state describes, with what its folder hands down where the state has no security;
// its content is on the disk when this returns. Raises EOSError, and nothing is left then.
void MakeFile(const FileState& state, const std::wstring& path, const BlobStore& blobs);

// Owner, group and DACL as far as this process may. A status.
LSTATUS ApplyFileSecurity(const std::wstring& path, const ByteVector& security) noexcept;

// Whether two paths lie on one volume, so that a rename gets from one to the other.
bool OnOneVolume(const std::wstring& a, const std::wstring& b);

}  // namespace smh
