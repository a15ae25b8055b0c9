#include "hosts/gui/notice_bar.h"

#include "hosts/gui/accessible_button.h"
#include "hosts/gui/dpi.h"
#include "hosts/gui/resource.h"
#include "hosts/gui/text_direction.h"

#include <commctrl.h>

#include <algorithm>

namespace smh {

namespace {

constexpr int kGap = 6;
constexpr int kLeastText = 160;
constexpr UINT kTextFormat = DT_WORDBREAK | DT_NOPREFIX;

bool IsSame(const Notice& a, const Notice& b) {
  return a.text == b.text &&
         std::equal(
             a.buttons.begin(), a.buttons.end(), b.buttons.begin(), b.buttons.end(),
             [](const NoticeButton& one, const NoticeButton& other) { return one.command == other.command; });
}

}  // namespace

void NoticeBar::Open(HWND parent) {
  Create({.className = L"StartupManagerNoticeBar",
          .style = WS_CHILD | WS_CLIPSIBLINGS | WS_CLIPCHILDREN,
          .exStyle = WS_EX_CONTROLPARENT,
          .parent = parent});
  SetWindowLongW(Handle(), GWL_ID, IDC_BANNER);
}

void NoticeBar::SetDpi(int dpi, HFONT font) {
  dpi_ = dpi;
  font_ = font;
}

bool NoticeBar::Show(const Notice& notice) {
  if (IsSame(notice, notice_)) return false;
  const bool hadFocus = IsChild(Handle(), GetFocus()) != FALSE;
  notice_ = notice;
  accessible_.clear();
  while (const HWND button = GetWindow(Handle(), GW_CHILD)) DestroyWindow(button);
  for (const NoticeButton& each : notice_.buttons) {
    const HWND button = CreateWindowExW(
        0, WC_BUTTONW, each.label, WS_CHILD | WS_VISIBLE | WS_TABSTOP | BS_PUSHBUTTON, 0, 0, 0, 0, Handle(),
        reinterpret_cast<HMENU>(static_cast<UINT_PTR>(each.command)), nullptr, nullptr);
    accessible_.push_back(std::make_unique<AccessibleWindow>());
    accessible_.back()->Attach(button, std::make_unique<AccessibleButton>(button, notice_.text));
  }
  SetWindowTextW(Handle(), notice_.text.c_str());
  ShowWindow(Handle(), notice_.text.empty() ? SW_HIDE : SW_SHOWNA);
  InvalidateRect(Handle(), nullptr, FALSE);
  return hadFocus;
}

std::vector<HWND> NoticeBar::Controls() const {
  std::vector<HWND> controls;
  for (const NoticeButton& each : notice_.buttons) {
    controls.push_back(GetDlgItem(Handle(), static_cast<int>(each.command)));
  }
  return controls;
}

SIZE NoticeBar::Measure(const std::wstring& text, int width) const {
  RECT area = {0, 0, width, 0};
  const HDC canvas = GetDC(Handle());
  const HGDIOBJ before = SelectObject(canvas, font_);
  DrawTextW(canvas, text.c_str(), -1, &area, kTextFormat | DT_CALCRECT);
  SelectObject(canvas, before);
  ReleaseDC(Handle(), canvas);
  return {area.right, area.bottom};
}

// The text has what the buttons at the right leave of a line, and as many lines as it needs.
int NoticeBar::Place(const RECT& area) {
  if (notice_.text.empty()) return 0;
  const int gap = Scaled(kGap, dpi_);
  const int width = static_cast<int>(area.right - area.left);
  const int buttonHeight = FontHeight(Handle(), font_) + Scaled(10, dpi_);
  int right = width - gap;
  const std::vector<HWND> buttons = Controls();
  for (std::size_t i = buttons.size(); i-- > 0;) {
    SendMessageW(buttons[i], WM_SETFONT, reinterpret_cast<WPARAM>(font_), FALSE);
    const int own = static_cast<int>(Measure(notice_.buttons[i].label, width).cx) + Scaled(24, dpi_);
    right -= own;
    MoveWindow(buttons[i], right, gap, own, buttonHeight, TRUE);
    right -= gap;
  }
  textWidth_ = std::max(right - gap, Scaled(kLeastText, dpi_));
  const int height =
      std::max(static_cast<int>(Measure(notice_.text, textWidth_).cy), buttons.empty() ? 0 : buttonHeight) +
      2 * gap;
  MoveWindow(Handle(), area.left, area.top, width, height, TRUE);
  InvalidateRect(Handle(), nullptr, FALSE);
  return height;
}

void NoticeBar::Paint(const PaintScope& paint) const {
  const Painter painter(paint.Canvas(), font_);
  painter.Fill(paint.Area(), Role::kBanner);
  SetTextColor(paint.Canvas(), ColorOf(Role::kBannerText));
  SetBkMode(paint.Canvas(), TRANSPARENT);
  const int gap = Scaled(kGap, dpi_);
  const int height = static_cast<int>(Measure(notice_.text, textWidth_).cy);
  const int top = std::max((static_cast<int>(paint.Area().bottom) - height) / 2, 0);
  RECT text = {gap, top, gap + textWidth_, top + height};
  DrawTextW(paint.Canvas(), Directed(notice_.text).c_str(), -1, &text, kTextFormat);
}

}  // namespace smh
