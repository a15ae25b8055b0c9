// Start-up and shut-down of a module as one explicit table.
#pragma once

#include <span>

namespace smh {

enum class StopMode {
  // FreeLibrary: the loader lock is held, other threads of the process run on.
  kUnload,
  // As above, but a thread of the module had to be ended where it stood: locks may be orphaned, so nothing
  // enters a lock and nothing is freed.
  kUnloadBroken,
};

// What `start` starts, the same row's `stop` stops. Each may be null where there is nothing to do.
struct ModuleStep {
  const wchar_t* name;
  // Leaves nothing behind when it throws.
  void (*start)();
  // May worsen the mode for the steps that follow. Never throws.
  void (*stop)(StopMode& mode) noexcept;
};

// Runs every start in order. When one throws, the steps already started are stopped backwards and the
// exception goes on. Called by one thread while no other uses the module.
void StartModule(std::span<const ModuleStep> steps);
// Runs every stop, last step first. As above.
void StopModule(std::span<const ModuleStep> steps) noexcept;

}  // namespace smh
