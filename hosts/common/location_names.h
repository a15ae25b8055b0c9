// The names by which locations are given on the command line and shown in lists, and what is known of each.
#pragma once

#include "core/contracts/StartupManagerHelper.h"

#include <optional>
#include <string_view>
#include <vector>

namespace smh {

inline constexpr std::int32_t kFirstLocation = sulFolderUser;
inline constexpr std::int32_t kLastLocation = sulRegistryCommonIEURLSearchHooks;

// "sulRegistryUserRun"; "sulNone" for 0 and for a value outside the enumeration.
std::wstring_view LocationName(std::int32_t location) noexcept;
struct LocationFacts {
  std::wstring_view family;  // "Run key"
  // Key or folder. A key path without a root is read under both HKEY_LOCAL_MACHINE and HKEY_CURRENT_USER;
  // "shell:" stands before the shell's name of a folder.
  std::wstring_view place;
  // What the location allows; a single entry may allow less. Names of actions, and "add".
  std::vector<std::wstring_view> can;
  // Whether a registry entry is a key of its own instead of a value. The last part of its name is then the
  // text of the key's default value.
  bool entriesAreKeys;
};
// For a location from kFirstLocation to kLastLocation.
LocationFacts FactsOf(TTypeStartupLocation location);
// The location of that name, ASCII case ignored; "sul" or "sulRegistry" in front may be left out.
std::optional<TTypeStartupLocation> LocationByName(std::wstring_view name) noexcept;

}  // namespace smh
