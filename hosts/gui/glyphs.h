// The small pictures of tool bar and check boxes, drawn as vectors so that they are sharp at any resolution.
#pragma once

#include "infra/runtime/scoped_image_list.h"

namespace smh {

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

enum class GlyphLook { kNormal, kGreyed };

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
