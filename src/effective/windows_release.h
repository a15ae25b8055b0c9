// Which Windows reads the start-up entries: some locations and switches count for some releases only.
#pragma once

#include <windows.h>

#include <compare>

namespace smh {

struct WindowsRelease {
  DWORD major = 0;
  DWORD minor = 0;
  DWORD build = 0;
  auto operator<=>(const WindowsRelease&) const = default;
};

inline constexpr WindowsRelease kVista{6, 0, 0};
inline constexpr WindowsRelease kWindows8{6, 2, 0};
inline constexpr WindowsRelease kWindows11{10, 0, 22000};

// What the system itself says, whatever the manifest of the host's program does; zeros when it does not
// answer. Any thread; raises nothing.
WindowsRelease CurrentRelease() noexcept;

}  // namespace smh
