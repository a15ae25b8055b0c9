// Changes of files, each recorded in a checkpoint before it is made. For the thread that opened the
// checkpoint, and with it has the journal's lock. Paths are full. Answers are Win32 statuses; what keeps a
// change from being recorded raises EOSError, and the change is not made then.
//
// A file never stands half written in its folder: it is made elsewhere on the volume and gets there by one
// rename. A file that is moved or deleted is looked at last by the handle that does it; one that is replaced,
// right before the rename. What was deleted or replaced stays on its volume, aside, until the checkpoint
// ends.
//
// `expected`, where it is given, is what an undo has planned with: a file with another content is left alone,
// ERROR_REVISION_MISMATCH.
#pragma once

#include "siblings/guardkit/checkpoints.h"
#include "siblings/guardkit/file_state.h"

namespace smh {

// Never replaces a file: ERROR_ALREADY_EXISTS. Another volume is reached by a copy, which is on the disk and
// compared before the source is deleted. What comes from the product's folder of temporary shortcuts counts
// as made, and what goes there as deleted: an undo leaves nothing in that folder.
LSTATUS MoveRecorded(OpenCheckpoint& checkpoint, const std::wstring& from, const std::wstring& to,
                     const FileState* expected = nullptr);

// What becomes of a read-only file; kRefused is ERROR_ACCESS_DENIED. Either way one that stays keeps the
// attribute.
enum class ReadOnly { kRefused, kDeleted };

// Keeps the content first, and writes the registry changes of the checkpoint through to the disk.
// ERROR_FILE_NOT_FOUND when there is no such file.
LSTATUS DeleteRecorded(OpenCheckpoint& checkpoint, const std::wstring& file,
                       ReadOnly readOnly = ReadOnly::kRefused, const FileState* expected = nullptr);
// Content, streams, times and attributes. Without `overwrite` an existing file stays: ERROR_FILE_EXISTS. A
// file that is overwritten keeps its access rights; a new one gets those of its folder.
LSTATUS CopyRecorded(OpenCheckpoint& checkpoint, const std::wstring& from, const std::wstring& to,
                     bool overwrite);

// Gives `path` the content and everything else of `wanted`, all of whose streams are kept. Without
// `overwrite` an existing file stays, as above.
LSTATUS MakeRecorded(OpenCheckpoint& checkpoint, const std::wstring& path, const FileState& wanted,
                     bool overwrite, const FileState* expected = nullptr);

}  // namespace smh
