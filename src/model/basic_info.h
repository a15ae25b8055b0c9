// The cheap facts of an entry, gathered when it is found: the file it starts, its caption, its version
// record.
#pragma once

#include "core/contracts/location_table.h"
#include "model/started_file.h"
#include <string>
#include <string_view>

namespace smh {

// Whether the location keeps files in a folder rather than values in the registry.
bool IsFolderLocation(TTypeStartupLocation location) noexcept;

// Completes details that have nothing but the caption and the command as given. In a folder location `name`
// is the entry's own file, and that is what the entry starts. Touches disk and registry: loads call it
// without a lock, changes under the item-list lock. What is missing stays empty; raises what the services
// raise.
void FillBasicDetails(TTypeStartupLocation location, const SharedText& name, ItemDetails& details);

}  // namespace smh
