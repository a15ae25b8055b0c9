// The names by which locations are given on the command line and shown in lists.
#pragma once

#include "core/StartupManagerHelper.h"

#include <optional>
#include <string_view>

namespace smh {

inline constexpr std::int32_t kFirstLocation = sulFolderUser;
inline constexpr std::int32_t kLastLocation = sulRegistryCommonIEURLSearchHooks;

// "sulRegistryUserRun"; "sulNone" for 0 and for a value outside the enumeration.
std::wstring_view LocationName(std::int32_t location) noexcept;
// The location of that name, ASCII case ignored; "sul" or "sulRegistry" in front may be left out.
std::optional<TTypeStartupLocation> LocationByName(std::wstring_view name) noexcept;
// Whether the library reads the location without being told to read all of them.
bool IsUsualLocation(std::int32_t location) noexcept;

}  // namespace smh
