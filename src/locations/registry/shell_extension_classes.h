// The locations of shell extension handlers, browser helper objects, approved extensions and URL search
// hooks.
#pragma once

#include "locations/registry/uLocationRegistryShellExt.h"
#include "locations/registry/uLocationRegistryShellHandlers.h"

#include <memory>

namespace smh {

// 25 handler lists, and the browser helper objects as the last row.
inline constexpr int kHandlerClassCount = 26;
// Approved extensions, then the user's and all users' URL search hooks.
inline constexpr int kShellExtClassCount = 3;

const HandlerClass (&HandlerClasses() noexcept)[kHandlerClassCount];
const ShellExtClass (&ShellExtClasses() noexcept)[kShellExtClassCount];

// Make the location of row `Index` of a table.
template <int Index>
std::unique_ptr<TLocationStartup> MakeHandlerLocation() {
  return std::make_unique<TLocationRegistryShellHandlers>(HandlerClasses()[Index]);
}
template <int Index>
std::unique_ptr<TLocationStartup> MakeShellExtLocation() {
  return std::make_unique<TLocationRegistryShellExt>(ShellExtClasses()[Index]);
}

}  // namespace smh
