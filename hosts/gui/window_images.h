// The pictures of the window: those of tool bar and check boxes, drawn as vectors so that they are sharp at
// any resolution, and the library's, at the size that the resolution asks for. For the window's thread.
#pragma once

#include "infra/runtime/scoped_image_list.h"

namespace smh {

// In the order of the image list that MakeGlyphs makes.
enum class Glyph {
  kNone = -1,
  kOn,
  kOff,
  kRemove,
  kAdd,
  kMove,
  kEdit,
  kRun,
  kUndo,
  kRedo,
  kRefresh,
  kShield,
  kSave
};
inline constexpr int kGlyphCount = static_cast<int>(Glyph::kSave) + 1;

// Coloured, or grey for a command that cannot be used now.
enum class GlyphLook { kNormal, kGreyed };

// The start of GDI+: glyphs can be drawn as long as one object lives, and come out empty without.
class GlyphDrawing {
 public:
  // A failure shows in glyphs that are empty.
  GlyphDrawing();
  ~GlyphDrawing();
  GlyphDrawing(const GlyphDrawing&) = delete;
  GlyphDrawing& operator=(const GlyphDrawing&) = delete;

 private:
  ULONG_PTR token_ = 0;
};

// All glyphs in their order, 16 pixels wide at 96 DPI.
ScopedImageList MakeGlyphs(int dpi, GlyphLook look);
// An empty and a ticked box, of the same size.
ScopedImageList MakeCheckImages(int dpi);

// The library's images at the size of the screen. Owns the copies; one object for each pair of lists that is
// drawn at one resolution.
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
