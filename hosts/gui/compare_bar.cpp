#include "hosts/gui/compare_bar.h"

#include "hosts/gui/accessible_button.h"
#include "hosts/gui/dpi.h"
#include "hosts/gui/resource.h"
#include "hosts/gui/texts/filter_texts.h"

#include <commctrl.h>

namespace smh {

namespace {

constexpr int kGap = 4;
constexpr int kButtonWidth = 130;

HWND MakeButton(HWND parent, const wchar_t* title, UINT command, DWORD style) {
  return CreateWindowExW(0, WC_BUTTONW, title, WS_CHILD | WS_VISIBLE | WS_TABSTOP | style, 0, 0, 0, 0, parent,
                         reinterpret_cast<HMENU>(static_cast<UINT_PTR>(command)), nullptr, nullptr);
}

}  // namespace

void CompareBar::Open(HWND parent) {
  Create({.className = L"StartupManagerCompareBar",
          .style = WS_CHILD | WS_CLIPSIBLINGS | WS_CLIPCHILDREN,
          .exStyle = WS_EX_CONTROLPARENT,
          .parent = parent});
  SetWindowLongW(Handle(), GWL_ID, IDC_COMPARE_BAR);
  only_ = MakeButton(Handle(), texts::kOnlyDifferences.Get(), CMD_ONLY_DIFFERENT, BS_CHECKBOX | BS_PUSHLIKE);
  stop_ = MakeButton(Handle(), texts::kStopComparing.Get(), CMD_STOP_COMPARING, BS_PUSHBUTTON);
  accessibleOnly_.Attach(only_, std::make_unique<AccessibleButton>(only_, L""));
  accessibleStop_.Attach(stop_, std::make_unique<AccessibleButton>(stop_, L""));
}

void CompareBar::SetDpi(int dpi, HFONT font) {
  dpi_ = dpi;
  font_ = font;
  for (const HWND button : {only_, stop_})
    SendMessageW(button, WM_SETFONT, reinterpret_cast<WPARAM>(font), TRUE);
}

void CompareBar::SetText(const std::wstring& text, bool onlyDifferent) {
  SendMessageW(only_, BM_SETCHECK, onlyDifferent ? BST_CHECKED : BST_UNCHECKED, 0);
  if (text == TextOf(Handle())) return;
  SetWindowTextW(Handle(), text.c_str());
  InvalidateRect(Handle(), nullptr, TRUE);
}

int CompareBar::LineHeight() const {
  return FontHeight(Handle(), font_) + Scaled(8, dpi_);
}

// The text has a line of its own, so that a narrow window shows it, too.
int CompareBar::Place(const RECT& area) const {
  const int gap = Scaled(kGap, dpi_);
  const int height = 2 * (LineHeight() + gap);
  MoveWindow(Handle(), area.left, area.top, area.right - area.left, height, TRUE);
  const int width = Scaled(kButtonWidth, dpi_);
  MoveWindow(only_, 0, LineHeight() + gap, width, LineHeight(), TRUE);
  MoveWindow(stop_, width + gap, LineHeight() + gap, width, LineHeight(), TRUE);
  return height;
}

void CompareBar::Paint(const PaintScope& paint) const {
  const Painter painter(paint.Canvas(), font_);
  painter.Fill(paint.Area(), Role::kBar);
  RECT line = paint.Area();
  line.bottom = LineHeight();
  painter.Text(TextOf(Handle()), line, Role::kBarText, DT_NOPREFIX | DT_END_ELLIPSIS);
}

}  // namespace smh
