// The extensions of files that Windows starts by themselves or through their registered program.
#pragma once

#include <string_view>

namespace smh {

// Lower case, each with its dot, in the order in which they are tried.
inline constexpr std::wstring_view kExecutableExtensions[] = {
    L".com", L".exe", L".bat", L".cmd", L".pif", L".scr", L".cpl", L".msc", L".msi",
    L".vbs", L".vbe", L".js",  L".jse", L".wsf", L".wsh", L".hta", L".ps1",
};

}  // namespace smh
