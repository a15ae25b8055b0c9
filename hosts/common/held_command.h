// Whether an entry holds a command already, in whatever spelling.
#pragma once

#include "hosts/common/item_record.h"
#include "hosts/common/library.h"

#include <string>

namespace smh {

// A registry entry holds a command as it is given. A shortcut keeps the file of the program and the
// arguments: it holds every command line that starts that file with those arguments, to the letter. Answers
// false where that cannot be told. The library is asked for files, so this may touch the disk.
bool HoldsCommand(const Library& library, const ItemRecord& item, const std::wstring& command);

}  // namespace smh
