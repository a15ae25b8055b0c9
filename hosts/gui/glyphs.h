// The small pictures of tool bar and check boxes, drawn as vectors so that they are sharp at any resolution.
#pragma once

#include "infra/runtime/scoped_image_list.h"

namespace smh {

enum class Glyph { none = -1, on, off, remove, add, move, edit, run, undo, redo, refresh, shield, save };
inline constexpr int kGlyphCount = static_cast<int>(Glyph::save) + 1;

enum class GlyphLook { normal, greyed };

// Drawing is possible as long as one lives.
class GlyphDrawing {
 public:
  GlyphDrawing();
  ~GlyphDrawing();
  GlyphDrawing(const GlyphDrawing&) = delete;
  GlyphDrawing& operator=(const GlyphDrawing&) = delete;

 private:
  ULONG_PTR token_ = 0;
};

// All glyphs in their order.
ScopedImageList MakeGlyphs(int dpi, GlyphLook look);
// An empty and a ticked box.
ScopedImageList MakeCheckImages(int dpi);

}  // namespace smh
