// The library's images at the size that the screen's resolution asks for. For the window's thread.
#pragma once

#include "infra/runtime/scoped_image_list.h"

namespace smh {

// Owns the copies; one object for each pair of lists that is drawn at one resolution.
class ScaledImages {
 public:
  // Answers `small` or `large` where they fit, else copies of the large ones, made as images come; `small`
  // when there is no `large`. The answer is valid until the next call with another resolution or list, and as
  // long as object and lists are. Images that cannot be copied are missing at the end.
  HIMAGELIST For(int dpi, HIMAGELIST small, HIMAGELIST large);

 private:
  ScopedImageList images_;
  HIMAGELIST source_ = nullptr;
  int side_ = 0;
};

}  // namespace smh
