// Sizes and fonts at the resolution of a window's screen.
#pragma once

#include "infra/runtime/handle.h"

namespace smh {

// Dots per inch of the screen that the window is on, else of the main screen.
int DpiOf(HWND window) noexcept;

// A size given for 96 DPI.
inline int Scaled(int size, int dpi) noexcept {
  return MulDiv(size, dpi, USER_DEFAULT_SCREEN_DPI);
}

// How ScopedResource owns a font.
struct FontTraits {
  using Type = HFONT;
  static constexpr Type kNone = nullptr;
  static bool IsValid(Type value) noexcept { return value != nullptr; }
  static void Close(Type value) noexcept { DeleteObject(value); }
};
using ScopedFont = ScopedResource<FontTraits>;

// For texts and for headings.
enum class FontKind { kNormal, kHeading };

// The font of the user's message boxes at that resolution; a heading is bold and a quarter larger. Empty when
// the system has none to give.
ScopedFont MakeFont(int dpi, FontKind kind = FontKind::kNormal);
// The height of a line in pixels, as `window` would draw it.
int FontHeight(HWND window, HFONT font) noexcept;

}  // namespace smh
