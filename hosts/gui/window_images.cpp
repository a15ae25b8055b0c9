#include "hosts/gui/window_images.h"

#include "hosts/gui/dpi.h"
#include "hosts/gui/theme.h"
#include "infra/runtime/handle.h"

#include <objidl.h>
#include <gdiplus.h>

#include <cstdint>

namespace smh {

namespace {

using namespace Gdiplus;

constexpr int kSide = 16;            // at 96 DPI; glyphs are drawn on a field of that size
constexpr int kLargeImageSide = 32;  // of the library's large images, at any DPI

struct Colors {
  ARGB green, red, blue, orange, grey;
};

ARGB Opaque(Role role) noexcept {
  const COLORREF color = ColorOf(role);
  return Color::MakeARGB(0xFF, GetRValue(color), GetGValue(color), GetBValue(color));
}

Colors ColorsOf(GlyphLook look) noexcept {
  if (look == GlyphLook::kGreyed) {
    const ARGB faded = Opaque(Role::kFaded);
    return {faded, faded, faded, faded, faded};
  }
  return {Opaque(Role::kGreen), Opaque(Role::kRed), Opaque(Role::kBlue), Opaque(Role::kOrange),
          Opaque(Role::kGrey)};
}

void Line(Graphics& canvas, ARGB color, float width, std::initializer_list<PointF> points) {
  Pen pen(Color(color), width);
  pen.SetLineJoin(LineJoinRound);
  pen.SetStartCap(LineCapRound);
  pen.SetEndCap(LineCapRound);
  canvas.DrawLines(&pen, points.begin(), static_cast<INT>(points.size()));
}

void Area(Graphics& canvas, ARGB color, std::initializer_list<PointF> points) {
  const SolidBrush brush{Color(color)};
  canvas.FillPolygon(&brush, points.begin(), static_cast<INT>(points.size()));
}

void Ring(Graphics& canvas, ARGB color, float from, float sweep) {
  const Pen pen(Color(color), 2);
  canvas.DrawArc(&pen, 3.0f, 3.0f, 10.0f, 10.0f, from, sweep);
}

// An arrow that comes back; redo is its mirror image.
void DrawReturn(Graphics& canvas, ARGB color, bool mirrored) {
  const auto x = [mirrored](float value) { return mirrored ? 16 - value : value; };
  const Pen pen(Color(color), 2);
  canvas.DrawArc(&pen, 4.0f, 5.0f, 9.0f, 8.0f, mirrored ? 90.0f : 270.0f, 180.0f);
  Line(canvas, color, 2, {{x(5), 5}, {8.5f, 5}});
  Line(canvas, color, 2, {{x(6), 13}, {8.5f, 13}});
  Area(canvas, color, {{x(1.5f), 5}, {x(6), 1}, {x(6), 9}});
}

void DrawShield(Graphics& canvas, const Colors& colors) {
  Area(canvas, colors.blue, {{8, 1}, {14, 3}, {13.5f, 9}, {8, 15}});
  Area(canvas, colors.orange, {{8, 1}, {2, 3}, {2.5f, 9}, {8, 15}});
}

void DrawSave(Graphics& canvas, const Colors& colors) {
  Line(canvas, colors.grey, 1.6f, {{3, 10}, {3, 14}, {13, 14}, {13, 10}});
  Line(canvas, colors.blue, 2, {{8, 2}, {8, 8}});
  Area(canvas, colors.blue, {{4, 6.5f}, {12, 6.5f}, {8, 11}});
}

void DrawGlyph(Graphics& canvas, Glyph glyph, const Colors& colors) {
  switch (glyph) {
    case Glyph::kOn:
      return Line(canvas, colors.green, 2.6f, {{3, 8.5f}, {6.5f, 12}, {13, 4}});
    case Glyph::kOff:
      Ring(canvas, colors.grey, 0, 360);
      return Line(canvas, colors.grey, 2, {{4.7f, 11.3f}, {11.3f, 4.7f}});
    case Glyph::kRemove:
      Line(canvas, colors.red, 2.4f, {{4, 4}, {12, 12}});
      return Line(canvas, colors.red, 2.4f, {{12, 4}, {4, 12}});
    case Glyph::kAdd:
      Line(canvas, colors.green, 2.6f, {{8, 3}, {8, 13}});
      return Line(canvas, colors.green, 2.6f, {{3, 8}, {13, 8}});
    case Glyph::kMove:
      Line(canvas, colors.blue, 2.2f, {{2.5f, 8}, {10, 8}});
      return Area(canvas, colors.blue, {{9, 3.5f}, {14.5f, 8}, {9, 12.5f}});
    case Glyph::kEdit:
      Line(canvas, colors.orange, 3.2f, {{5.2f, 10.8f}, {12, 4}});
      return Area(canvas, colors.grey, {{2, 14}, {3.4f, 9.8f}, {6.2f, 12.6f}});
    case Glyph::kRun:
      return Area(canvas, colors.green, {{4, 2.5f}, {13.5f, 8}, {4, 13.5f}});
    case Glyph::kUndo:
      return DrawReturn(canvas, colors.blue, false);
    case Glyph::kRedo:
      return DrawReturn(canvas, colors.blue, true);
    case Glyph::kRefresh:
      Ring(canvas, colors.green, -30, 300);
      return Area(canvas, colors.green, {{9.5f, 5.8f}, {15, 5.8f}, {14.2f, 0.8f}});
    case Glyph::kShield:
      return DrawShield(canvas, colors);
    case Glyph::kSave:
      return DrawSave(canvas, colors);
    case Glyph::kNone:
      return;
  }
}

void DrawCheck(Graphics& canvas, bool ticked) {
  const SolidBrush paper{Color(Opaque(ticked ? Role::kCheckFill : Role::kCheckPaper))};
  const Pen frame(Color(Opaque(ticked ? Role::kCheckFill : Role::kCheckFrame)), 1);
  canvas.FillRectangle(&paper, 2, 2, 11, 11);
  canvas.DrawRectangle(&frame, 2, 2, 11, 11);
  if (ticked) Line(canvas, Opaque(Role::kCheckMark), 1.8f, {{4.5f, 7.8f}, {6.8f, 10.2f}, {11, 5}});
}

// A bitmap with straight alpha, which is what image lists take.
ScopedBitmap MakeStrip(int width, int height, std::uint32_t** pixels) {
  BITMAPINFO format = {};
  format.bmiHeader = {sizeof(BITMAPINFOHEADER), width, -height, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
  void* bits = nullptr;
  ScopedBitmap strip(CreateDIBSection(nullptr, &format, DIB_RGB_COLORS, &bits, nullptr, 0));
  *pixels = static_cast<std::uint32_t*>(bits);
  return strip;
}

// All images are drawn on one bitmap: an icon for each takes many times as long.
template <typename Draw>
ScopedImageList MakeImages(int dpi, int count, Draw&& draw) {
  const int side = Scaled(kSide, dpi);
  ScopedImageList images(ImageList_Create(side, side, ILC_COLOR32, count, 1));
  std::uint32_t* pixels = nullptr;
  const ScopedBitmap strip = MakeStrip(side * count, side, &pixels);
  if (!strip) return images;
  {
    Bitmap bitmap(side * count, side, 4 * side * count, PixelFormat32bppARGB,
                  reinterpret_cast<BYTE*>(pixels));
    Graphics canvas(&bitmap);
    canvas.SetSmoothingMode(SmoothingModeAntiAlias);
    const float scale = static_cast<float>(side) / kSide;
    for (int i = 0; i < count; ++i) {
      canvas.ResetTransform();
      canvas.TranslateTransform(static_cast<float>(i * side), 0);
      canvas.ScaleTransform(scale, scale);
      draw(canvas, i);
    }
  }
  ImageList_Add(images.Get(), strip.Get(), nullptr);
  return images;
}

}  // namespace

GlyphDrawing::GlyphDrawing() {
  const GdiplusStartupInput input;
  GdiplusStartup(&token_, &input, nullptr);
}

GlyphDrawing::~GlyphDrawing() {
  if (token_ != 0) GdiplusShutdown(token_);
}

ScopedImageList MakeGlyphs(int dpi, GlyphLook look) {
  const Colors colors = ColorsOf(look);
  return MakeImages(dpi, kGlyphCount,
                    [&](Graphics& canvas, int i) { DrawGlyph(canvas, static_cast<Glyph>(i), colors); });
}

ScopedImageList MakeCheckImages(int dpi) {
  return MakeImages(dpi, 2, [](Graphics& canvas, int i) { DrawCheck(canvas, i == 1); });
}

HIMAGELIST ScaledImages::For(int dpi, HIMAGELIST small, HIMAGELIST large) {
  const int side = Scaled(kSide, dpi);
  if (large == nullptr || side == kSide) return small;
  if (side == kLargeImageSide) return large;
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
