// The library's images at the size that the screen's resolution asks for.
#pragma once

#include "infra/runtime/scoped_image_list.h"

namespace smh {

class ScaledImages {
 public:
  // `small` or `large` where they fit, else copies of the large ones, made as images come. Null for null.
  HIMAGELIST For(int dpi, HIMAGELIST small, HIMAGELIST large);

 private:
  ScopedImageList images_;
  HIMAGELIST source_ = nullptr;
  int side_ = 0;
};

}  // namespace smh
