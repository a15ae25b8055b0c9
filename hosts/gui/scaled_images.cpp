#include "hosts/gui/scaled_images.h"

#include "hosts/gui/dpi.h"

namespace smh {

namespace {

constexpr int kSmallSide = 16;
constexpr int kLargeSide = 32;

}  // namespace

HIMAGELIST ScaledImages::For(int dpi, HIMAGELIST small, HIMAGELIST large) {
  const int side = Scaled(kSmallSide, dpi);
  if (large == nullptr || side == kSmallSide) return small;
  if (side == kLargeSide) return large;
  if (side != side_ || large != source_) {
    images_.Reset(ImageList_Create(side, side, ILC_COLOR32 | ILC_MASK, 32, 32));
    side_ = side;
    source_ = large;
  }
  for (int i = ImageList_GetImageCount(images_.Get()); i < ImageList_GetImageCount(large); ++i) {
    const ScopedIcon original(ImageList_GetIcon(large, i, ILD_TRANSPARENT));
    const ScopedIcon copy(static_cast<HICON>(CopyImage(original.Get(), IMAGE_ICON, side, side, 0)));
    if (!copy || ImageList_ReplaceIcon(images_.Get(), -1, copy.Get()) < 0) break;
  }
  return images_.Get();
}

}  // namespace smh
