// Shortcuts in any number in the real Startup folder, which is emptied first and put back at the end.
#pragma once

#include "benchmarks/sample_programs.h"
#include "tests/support/startup_folders.h"

namespace smh::bench {

// Shortcuts in the user's Startup folder.
class Shortcuts {
 public:
  Shortcuts(const Programs& programs, int count);
  const test::StartupPlaces& Places() const noexcept { return places_; }

 private:
  test::StartupPlaces places_;
};

}  // namespace smh::bench
