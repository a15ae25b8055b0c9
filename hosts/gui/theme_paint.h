// Drawing with the colours of the theme. For the window's thread.
#pragma once

#include "hosts/gui/theme.h"

#include <uxtheme.h>

#include <string>

namespace smh {

// Draws on a canvas of somebody else and leaves it as it was. Nothing here fails in a way that can be seen
// but by what is missing on the screen.
class Painter {
 public:
  // The font is the caller's; null for the one that the canvas has.
  explicit Painter(HDC canvas, HFONT font = nullptr) noexcept;
  ~Painter();
  Painter(const Painter&) = delete;
  Painter& operator=(const Painter&) = delete;

  HDC Canvas() const noexcept { return canvas_; }
  void Fill(const RECT& area, Role role) const noexcept;
  // A line of one pixel inside the edges of the area.
  void Frame(const RECT& area, Role role) const noexcept;
  // One line of text between top and bottom; `format` are further DT_ flags.
  void Text(const std::wstring& text, RECT area, Role role, UINT format) const noexcept;
  void Text(const std::wstring& text, RECT area, COLORREF color, UINT format) const noexcept;
  // A tick, the same way round on a mirrored canvas, and a triangle that points up, down or to where lines
  // end, in the middle of the area.
  void Tick(const RECT& area, Role role) const noexcept;
  enum class Arrow { kUp, kDown, kRight };
  void Triangle(const RECT& area, Arrow arrow, int size, Role role) const noexcept;
  // The pixels that the text takes.
  SIZE Measure(const std::wstring& text, UINT format) const noexcept;

 private:
  HDC canvas_;
  int saved_;
};

// Answers WM_PAINT of a window: what is drawn on Canvas appears at once, at the end of the scope.
class PaintScope {
 public:
  explicit PaintScope(HWND window) noexcept;
  ~PaintScope();
  PaintScope(const PaintScope&) = delete;
  PaintScope& operator=(const PaintScope&) = delete;

  HDC Canvas() const noexcept { return canvas_; }
  // The client area.
  const RECT& Area() const noexcept { return area_; }

 private:
  HWND window_;
  PAINTSTRUCT paint_ = {};
  RECT area_ = {};
  HPAINTBUFFER buffer_ = nullptr;
  HDC canvas_ = nullptr;
};

// On a mirrored canvas pictures are drawn as they are from now on; where they stand stays mirrored.
void KeepPictures(HDC canvas) noexcept;

// The font that the window draws with.
HFONT FontOf(HWND window) noexcept;
// The resolution that the window's top-level window is drawn for: as WM_DPICHANGED said, which KeepDpi notes
// there, else that of its screen.
int DrawingDpi(HWND window) noexcept;
void KeepDpi(HWND topWindow, int dpi) noexcept;

}  // namespace smh
