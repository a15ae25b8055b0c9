// The library's images at the size that the screen's resolution asks for.
#pragma once

#include <windows.h>

#include <commctrl.h>

namespace smh {

class ScaledImages {
 public:
  ScaledImages() = default;
  ~ScaledImages();
  ScaledImages(const ScaledImages&) = delete;
  ScaledImages& operator=(const ScaledImages&) = delete;

  // `small` or `large` where they fit, else copies of the large ones, made as images come. Null for null.
  HIMAGELIST For(int dpi, HIMAGELIST small, HIMAGELIST large);

 private:
  HIMAGELIST images_ = nullptr;
  HIMAGELIST source_ = nullptr;
  int side_ = 0;
};

}  // namespace smh
