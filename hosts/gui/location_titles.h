// Locations as people know them.
#pragma once

#include "core/contracts/StartupManagerHelper.h"

#include <string>

namespace smh {

struct LocationTitle {
  std::wstring group;  // "Run keys"
  std::wstring name;   // within the group: "Run, this user"
  std::wstring full;   // on its own: "Run, this user"; "Context menu: files"
};

// For a location from kFirstLocation to kLastLocation; empty texts for any other.
LocationTitle TitleOf(std::int32_t location);

// Whether the entries are those of the account that runs this program, not of every user.
bool IsUserLocation(std::int32_t location) noexcept;

}  // namespace smh
