#include "hosts/icons/icon_pixels.h"

namespace smh {

namespace {

struct BitmapForm {
  BITMAPINFOHEADER header;
  RGBQUAD colors[2];
};

// The rows of a bitmap from the top down; false when it has fewer.
bool ReadRows(HDC context, HBITMAP bitmap, int width, int rows, WORD bits, void* to) noexcept {
  BitmapForm form = {{sizeof(BITMAPINFOHEADER), width, -rows, 1, bits, BI_RGB, 0, 0, 0, 0, 0}, {}};
  return GetDIBits(context, bitmap, 0, static_cast<UINT>(rows), to, reinterpret_cast<BITMAPINFO*>(&form),
                   DIB_RGB_COLORS) == rows;
}

// An icon of two colours has them below its mask, in the same bitmap: 1 is white.
template <int side>
bool ReadTwoColors(HDC context, HBITMAP bitmap, IconPixels<side>& pixels) noexcept {
  std::uint8_t rows[2 * side][4] = {};
  if (!ReadRows(context, bitmap, side, 2 * side, 1, rows)) return false;
  for (int y = 0; y < side; ++y) {
    for (int i = 0; i < 4; ++i) pixels.mask[y][i] = rows[y][i];
    for (int x = 0; x < side; ++x) {
      const bool isWhite = (rows[side + y][x / 8] >> (7 - x % 8) & 1) != 0;
      pixels.colors[y * side + x] = isWhite ? 0xFFFFFF : 0;
    }
  }
  return true;
}

// The bitmaps of an icon; without colours the mask has them.
struct IconParts {
  explicit IconParts(HICON icon) noexcept {
    ICONINFO info;
    if (icon == nullptr || GetIconInfo(icon, &info) == FALSE) return;
    colors.Reset(info.hbmColor);
    mask.Reset(info.hbmMask);
  }
  bool IsOfSide(int side) const noexcept {
    BITMAP form = {};
    GetObjectW(mask.Get(), sizeof(form), &form);
    return form.bmWidth == side && form.bmHeight == (colors ? side : 2 * side);
  }

  ScopedBitmap colors;
  ScopedBitmap mask;
};

template <int side>
bool Read(HDC context, const IconParts& parts, IconPixels<side>& pixels) noexcept {
  if (!parts.mask) return false;
  if (!parts.colors) return ReadTwoColors(context, parts.mask.Get(), pixels);
  return ReadRows(context, parts.colors.Get(), side, side, 32, pixels.colors) &&
         ReadRows(context, parts.mask.Get(), side, side, 1, pixels.mask);
}

template <int side>
void TakeAll(HDC context, HICON icon, IconPixels<side>& pixels) noexcept {
  pixels.isThere = 0;
  const IconParts parts(icon);
  if (!parts.mask) return;
  bool isRead = false;
  if (parts.IsOfSide(side)) {
    isRead = Read(context, parts, pixels);
  } else {
    const ScopedIcon fitting(static_cast<HICON>(CopyImage(icon, IMAGE_ICON, side, side, 0)));
    isRead = Read(context, IconParts(fitting.Get()), pixels);
  }
  pixels.isThere = isRead ? 1 : 0;
}

}  // namespace

void IconPixelReader::Take(HICON icon, IconPixels<kLargeIconSide>& pixels) const noexcept {
  TakeAll(context_.Get(), icon, pixels);
}

void IconPixelReader::Take(HICON icon, IconPixels<kSmallIconSide>& pixels) const noexcept {
  TakeAll(context_.Get(), icon, pixels);
}

}  // namespace smh
