// The 39 places from which Windows starts programs. Ordinals cross the module boundary and member names stand
// in log lines: neither may change.
#pragma once

#include "core/contracts/StartupManagerHelper.h"

#include <optional>
#include <string_view>

namespace smh {

inline constexpr int kLocationCount = 40;

// "sulRegistryUserRun"; empty for a value outside the enumeration.
std::wstring_view LocationMemberName(TTypeStartupLocation location) noexcept;
// The member of that exact name, ignoring the case of ASCII letters.
std::optional<TTypeStartupLocation> LocationFromMemberName(std::wstring_view name) noexcept;

}  // namespace smh
