// Locations as the command line, lists and windows give them. All of this is safe from any thread and takes
// no lock; what returns a container fails only for want of memory.
#pragma once

#include "core/contracts/location_table.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace smh {

// "sulRegistryUserRun"; "sulNone" for 0 and for a value outside the enumeration. Lives as long as the
// program.
std::wstring_view LocationName(std::int32_t location) noexcept;
// The location of that name, ASCII case ignored; "sul" or "sulRegistry" in front may be left out.
std::optional<TTypeStartupLocation> LocationByName(std::wstring_view name) noexcept;

// Key with its root, or folder. A key path without a root is read under both HKEY_LOCAL_MACHINE and
// HKEY_CURRENT_USER; "shell:" stands before the shell's name of a folder.
std::wstring LocationPlace(const LocationRow& row);
// What the location allows; a single entry may allow less. Names of actions, and "add".
std::vector<std::wstring_view> LocationActions(const LocationRow& row);

// For people: a location's title on its own: "Run, this user"; "Context menu: files". Empty for a number that
// names no location. Fails only for want of memory.
std::wstring FullTitle(std::int32_t location);
// Its two parts.
std::wstring ShownLocationTitle(const LocationRow& row);
std::wstring ShownLocationGroup(const LocationRow& row);

// Whether the entries are those of the account that runs this program, not of every user.
bool IsUserLocation(std::int32_t location) noexcept;

}  // namespace smh
