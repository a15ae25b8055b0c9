// Whether an entry holds a command that was given to the library.
#pragma once

#include "hosts/common/item_record.h"
#include "hosts/common/library.h"

#include <string>

namespace smh {

// Registry entries keep a command as it is given. A shortcut keeps the file of the program and the arguments:
// it holds every command line that starts that file with those arguments. The library is asked for those
// files, so this may touch the disk.
bool HoldsCommand(const Library& library, const ItemRecord& item, const std::wstring& command);

}  // namespace smh
