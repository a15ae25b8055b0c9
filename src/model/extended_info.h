// The expensive facts of an entry: file times and size, type name, rating and icons.
#pragma once

#include "model/item_details.h"

namespace smh {

// File times and size, of an existing file, and the type name. Any thread with COM initialised.
void ReadFileFacts(ItemDetails& details);

// Read thread only: the shell wants COM initialised on the calling thread. Call it without holding a lock.
// For a missing file rating and icon stay as they are.
void ReadExtendedDetails(ItemDetails& details);

}  // namespace smh
