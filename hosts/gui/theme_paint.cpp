#include "hosts/gui/theme_paint.h"

#include "hosts/gui/dpi.h"
#include "hosts/gui/text_direction.h"

#include <iterator>

namespace smh {

namespace {

constexpr wchar_t kDpiProperty[] = L"StartupManagerDpi";

bool IsMirrored(HDC canvas) noexcept {
  return (GetLayout(canvas) & LAYOUT_RTL) != 0;
}

}  // namespace

Painter::Painter(HDC canvas, HFONT font) noexcept : canvas_(canvas), saved_(SaveDC(canvas)) {
  if (font != nullptr) SelectObject(canvas_, font);
  SetBkMode(canvas_, TRANSPARENT);
}

Painter::~Painter() {
  RestoreDC(canvas_, saved_);
}

void Painter::Fill(const RECT& area, Role role) const noexcept {
  FillRect(canvas_, &area, BrushOf(canvas_, role));
}

void Painter::Frame(const RECT& area, Role role) const noexcept {
  FrameRect(canvas_, &area, BrushOf(canvas_, role));
}

void Painter::Text(const std::wstring& text, RECT area, Role role, UINT format) const noexcept {
  Text(text, area, ColorOf(role), format);
}

void Painter::Text(const std::wstring& text, RECT area, COLORREF color, UINT format) const noexcept {
  const std::wstring directed = Directed(text);
  SetTextColor(canvas_, color);
  DrawTextW(canvas_, directed.c_str(), static_cast<int>(directed.size()), &area,
            DT_SINGLELINE | DT_VCENTER | format);
}

SIZE Painter::Measure(const std::wstring& text, UINT format) const noexcept {
  RECT area = {};
  DrawTextW(canvas_, text.c_str(), static_cast<int>(text.size()), &area,
            DT_SINGLELINE | DT_CALCRECT | format);
  return {area.right, area.bottom};
}

void Painter::Tick(const RECT& area, Role role) const noexcept {
  const int height = static_cast<int>(area.bottom - area.top);
  const int side = height / 4;
  const int x = static_cast<int>(area.left + area.right) / 2,
            y = static_cast<int>(area.top + area.bottom) / 2;
  const int right = IsMirrored(canvas_) ? -1 : 1;
  // Strokes of one pixel beside each other make a line that is sharp at any resolution.
  SelectObject(canvas_, GetStockObject(DC_PEN));
  SetDCPenColor(canvas_, ColorOf(role));
  for (int i = 0; i <= height / 12; ++i) {
    const POINT points[] = {{x - right * side, y + i},
                            {x - right * (side / 3), y + side * 2 / 3 + i},
                            {x + right * (side + 1), y - side * 2 / 3 - 1 + i}};
    Polyline(canvas_, points, static_cast<int>(std::size(points)));
  }
}

void Painter::Triangle(const RECT& area, Arrow arrow, int size, Role role) const noexcept {
  const int x = static_cast<int>(area.left + area.right) / 2,
            y = static_cast<int>(area.top + area.bottom) / 2;
  for (int i = 0; i < size; ++i) {
    RECT line = {x - i, y - size / 2 + i, x + i + 1, y - size / 2 + i + 1};
    if (arrow == Arrow::kDown) line = {x - i, y + size / 2 - i, x + i + 1, y + size / 2 - i + 1};
    if (arrow == Arrow::kRight) line = {x + size / 2 - i, y - i, x + size / 2 - i + 1, y + i + 1};
    Fill(line, role);
  }
}

PaintScope::PaintScope(HWND window) noexcept : window_(window) {
  const HDC screen = BeginPaint(window_, &paint_);
  GetClientRect(window_, &area_);
  // Not every system turns a mirrored copy the right way round.
  if (!IsMirrored(screen)) {
    buffer_ = BeginBufferedPaint(screen, &area_, BPBF_COMPATIBLEBITMAP, nullptr, &canvas_);
  }
  // Without a copy it is drawn where it is seen.
  if (buffer_ == nullptr) canvas_ = screen;
}

PaintScope::~PaintScope() {
  if (buffer_ != nullptr) EndBufferedPaint(buffer_, TRUE);
  EndPaint(window_, &paint_);
}

void KeepPictures(HDC canvas) noexcept {
  if (IsMirrored(canvas)) SetLayout(canvas, LAYOUT_RTL | LAYOUT_BITMAPORIENTATIONPRESERVED);
}

HFONT FontOf(HWND window) noexcept {
  const auto font = reinterpret_cast<HFONT>(SendMessageW(window, WM_GETFONT, 0, 0));
  return font != nullptr ? font : static_cast<HFONT>(GetStockObject(DEFAULT_GUI_FONT));
}

int DrawingDpi(HWND window) noexcept {
  const HWND top = GetAncestor(window, GA_ROOT);
  const auto kept = static_cast<int>(reinterpret_cast<INT_PTR>(GetPropW(top, kDpiProperty)));
  return kept > 0 ? kept : DpiOf(window);
}

void KeepDpi(HWND topWindow, int dpi) noexcept {
  SetPropW(topWindow, kDpiProperty, reinterpret_cast<HANDLE>(static_cast<INT_PTR>(dpi)));
}

}  // namespace smh
