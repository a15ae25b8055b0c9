// The owner of an image list.
#pragma once

#include "infra/runtime/handle.h"

#include <commctrl.h>

namespace smh {

struct ImageListTraits {
  using Type = HIMAGELIST;
  static constexpr Type kNone = nullptr;
  static bool IsValid(Type value) noexcept { return value != nullptr; }
  static void Close(Type value) noexcept { ImageList_Destroy(value); }
};
using ScopedImageList = ScopedResource<ImageListTraits>;

}  // namespace smh
