// The two Startup folders.
#pragma once

#include "locations/folders/uLocationFolderStd.h"

#include <memory>

namespace smh {

inline constexpr int kFolderClassCount = 2;

// In the order of registration.
const FolderClass (&FolderClasses() noexcept)[kFolderClassCount];

// Makes the location of row `Index` of the table.
template <int Index>
std::unique_ptr<TLocationStartup> MakeFolderLocation() {
  return std::make_unique<TLocationFolderStd>(FolderClasses()[Index]);
}

}  // namespace smh
