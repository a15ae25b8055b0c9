// Where the files of a Startup folder lie while they are disabled, for who finds and moves them and for who
// takes that back; location_table.h has the side keys of the others. Constant texts, with a trailing
// backslash.
#pragma once

#include <string_view>

namespace smh {

// In this system's own data folder: the only one that is written to.
inline constexpr std::wstring_view kDisabledByThis = L"Disabled Startup\\";
// Where two other tools keep what they have disabled: in the Startup folder, and in the application data.
inline constexpr std::wstring_view kDisabledInStartup = L"AutorunsDisabled\\";
inline constexpr std::wstring_view kDisabledByOthers =
    L"Brisko Software\\Brisko Utilities\\StartUp Manager\\Disabled objects\\";

}  // namespace smh
