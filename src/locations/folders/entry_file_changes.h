// How the file of a Startup entry is moved, inserted, replaced and put back: wholly, or what stood before
// stands there again.
//
// For a thread that has the gate of the location of `folders`, the item-list lock and, for recorded changes,
// its checkpoint. Every path is a full one. All raise EOSError.
#pragma once

#include "locations/folders/file_changes.h"
#include "locations/folders/folder_set.h"

#include <string>

namespace smh {

// Moves a file to a place in `folders`, where none may be yet, and gives it the rights of that place; back
// again when it cannot have them.
void MoveEntryFile(const FileChanger& changer, const std::wstring& from, const std::wstring& to,
                   const FolderSet& folders);

// Moves a file that was made for it to where enabled or disabled entries lie, under `name` or the next free
// one, and confirms it by reading it back. Answers the new path. After a failure nothing is left there.
std::wstring InsertEntryFile(const FileChanger& changer, const std::wstring& made, const std::wstring& name,
                             bool enabled, const FolderSet& folders);

// Puts the content of `made` in the place of `file` and confirms it by reading it back; an enabled entry gets
// the rights of its folder. After a failure the old content is there again, recorded or not: no entry may be
// lost.
void ReplaceEntryFile(const FileChanger& changer, const std::wstring& made, const std::wstring& file,
                      bool enabled, const FolderSet& folders);

// Makes the file of an extracted entry anew, so that the journal knows of it when `recorded`. What the
// service refuses is done all the same: no entry may be lost. A file that is there already stays.
void PutBackEntryFile(bool recorded, const std::wstring& path, const std::string& bytes,
                      const FolderSet& folders);

}  // namespace smh
