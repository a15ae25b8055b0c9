// The locations of the module: which there are, and how they are found.
#pragma once

#include "infra/runtime/module_global.h"
#include "model/uLocationStartup.h"

#include <memory>
#include <vector>

namespace smh {

// Makes the location of a row; never null. Raises what its making raises.
using LocationMaker = std::unique_ptr<TLocationStartup> (*)(const LocationRow& row);

// How locations are made: their classes lie above this layer. For module start-up, before any call below.
void SetLocationMaker(LocationMaker maker);

// Every location of the table, in the order of the list; made together on first use, under the location-list
// lock. Any thread may ask; the locations live until the module stops. Raises what the maker raises, and then
// the next call tries again.
const std::vector<std::unique_ptr<TLocationStartup>>& Locations();
// The location of that type; null for a value that names none. As above.
TLocationStartup* FindLocation(TTypeStartupLocation type);

// The maker and the locations, which its stop destroys.
struct ModuleLocations;
extern ModuleGlobal<ModuleLocations> g_locations;

}  // namespace smh
