// Changes of files, each recorded in a checkpoint before it is made. Paths are full. Answers are the system's
// statuses; what keeps a change from being recorded raises EOSError, and the change is not made then.
//
// A file never stands half written in its folder: it is made elsewhere on the volume and gets there by one
// rename.
#pragma once

#include "siblings/guardkit/file_state.h"
#include "siblings/guardkit/open_checkpoint.h"

namespace smh {

// Never replaces a file: ERROR_ALREADY_EXISTS. Another volume is reached by a copy, which is on the disk
// before the source is deleted. What comes from the product's folder of temporary shortcuts counts as made,
// and what goes there as deleted: an undo leaves nothing in that folder.
LSTATUS MoveRecorded(OpenCheckpoint& checkpoint, const std::wstring& from, const std::wstring& to);
LSTATUS DeleteRecorded(OpenCheckpoint& checkpoint, const std::wstring& file);
// Without `overwrite` an existing file stays: ERROR_FILE_EXISTS. A file that is overwritten keeps its access
// rights.
LSTATUS CopyRecorded(OpenCheckpoint& checkpoint, const std::wstring& from, const std::wstring& to,
                     bool overwrite);

// Gives `path` the content and everything else of `wanted`, all of whose streams are kept. Without
// `overwrite` an existing file stays, as above.
LSTATUS MakeRecorded(OpenCheckpoint& checkpoint, const std::wstring& path, const FileState& wanted,
                     bool overwrite);

}  // namespace smh
