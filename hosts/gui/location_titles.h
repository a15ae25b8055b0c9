// Locations as people know them. Safe from any thread, without a lock.
#pragma once

#include "core/contracts/location_table.h"

#include <string>

namespace smh {

// A location's title on its own: "Run, this user"; "Context menu: files". Empty for a number that names no
// location. Fails only for want of memory.
std::wstring FullTitle(std::int32_t location);

// Whether the entries are those of the account that runs this program, not of every user.
bool IsUserLocation(std::int32_t location) noexcept;

}  // namespace smh
