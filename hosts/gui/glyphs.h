// The small pictures of tool bar and check boxes, drawn as vectors so that they are sharp at any resolution.
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

}  // namespace smh
