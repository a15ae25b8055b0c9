#include "infra/runtime/module_steps.h"

namespace smh {

void StartModule(std::span<const ModuleStep> steps) {
  std::size_t started = 0;
  try {
    for (; started < steps.size(); ++started) {
      if (steps[started].start != nullptr) steps[started].start();
    }
  } catch (...) {
    StopModule(steps.first(started));
    throw;
  }
}

void StopModule(std::span<const ModuleStep> steps) noexcept {
  StopMode mode = StopMode::kUnload;
  for (std::size_t i = steps.size(); i > 0; --i) {
    if (steps[i - 1].stop != nullptr) steps[i - 1].stop(mode);
  }
}

}  // namespace smh
