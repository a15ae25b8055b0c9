// The eight Run-key locations.
#pragma once

#include "locations/registry/uLocationRegistryStd.h"

#include <memory>

namespace smh {

inline constexpr int kRunKeyClassCount = 8;

// In the order of registration.
const RunKeyClass (&RunKeyClasses() noexcept)[kRunKeyClassCount];

// Makes the location of row `Index` of the table.
template <int Index>
std::unique_ptr<TLocationStartup> MakeRunKeyLocation() {
  return std::make_unique<TLocationRegistryStd>(RunKeyClasses()[Index]);
}

}  // namespace smh
