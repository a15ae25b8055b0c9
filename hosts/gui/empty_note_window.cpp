#include "hosts/gui/empty_note_window.h"

#include "hosts/gui/accessible_button.h"
#include "hosts/gui/dpi.h"
#include "hosts/gui/resource.h"

#include <commctrl.h>

#include <algorithm>

namespace smh {

namespace {

constexpr int kMargin = 12;
constexpr int kGap = 6;
constexpr int kButtonWidth = 200;
constexpr UINT kTextFormat = DT_CENTER | DT_WORDBREAK | DT_NOPREFIX;

bool IsSame(const EmptyListNote& a, const EmptyListNote& b) {
  return a.text == b.text && std::equal(a.offers.begin(), a.offers.end(), b.offers.begin(), b.offers.end(),
                                        [](const EmptyListOffer& one, const EmptyListOffer& other) {
                                          return one.command == other.command && one.label == other.label;
                                        });
}

}  // namespace

void EmptyNoteWindow::Open(HWND parent) {
  Create({.className = L"StartupManagerEmptyNote",
          .style = WS_CHILD | WS_CLIPSIBLINGS | WS_CLIPCHILDREN,
          .exStyle = WS_EX_CONTROLPARENT,
          .parent = parent});
  SetWindowLongW(Handle(), GWL_ID, IDC_EMPTY_NOTE);
}

void EmptyNoteWindow::SetDpi(int dpi, HFONT font) {
  dpi_ = dpi;
  font_ = font;
  Arrange();
}

void EmptyNoteWindow::Place(const RECT& area) {
  MoveWindow(Handle(), area.left, area.top, area.right - area.left, area.bottom - area.top, TRUE);
}

bool EmptyNoteWindow::Show(const EmptyListNote& note) {
  if (IsSame(note, note_)) return false;
  const bool hadFocus = IsChild(Handle(), GetFocus()) != FALSE;
  note_ = note;
  MakeButtons();
  SetWindowTextW(Handle(), note_.text.c_str());
  if (note_.text.empty()) {
    ShowWindow(Handle(), SW_HIDE);
  } else {
    SetWindowPos(Handle(), HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE | SWP_SHOWWINDOW);
    InvalidateRect(Handle(), nullptr, TRUE);
  }
  return hadFocus;
}

bool EmptyNoteWindow::Offers(UINT command) const {
  return std::any_of(note_.offers.begin(), note_.offers.end(),
                     [command](const EmptyListOffer& offer) { return offer.command == command; });
}

void EmptyNoteWindow::MakeButtons() {
  while (const HWND button = GetWindow(Handle(), GW_CHILD)) DestroyWindow(button);
  accessible_.clear();
  for (const EmptyListOffer& offer : note_.offers) {
    const HWND button = CreateWindowExW(
        0, WC_BUTTONW, offer.label.c_str(), WS_CHILD | WS_VISIBLE | WS_TABSTOP | BS_PUSHBUTTON, 0, 0, 0, 0,
        Handle(), reinterpret_cast<HMENU>(static_cast<UINT_PTR>(offer.command)), nullptr, nullptr);
    accessible_.push_back(std::make_unique<AccessibleWindow>());
    accessible_.back()->Attach(button, std::make_unique<AccessibleButton>(button, note_.text));
  }
  Arrange();
}

RECT EmptyNoteWindow::TextArea() const {
  RECT area;
  GetClientRect(Handle(), &area);
  InflateRect(&area, -Scaled(kMargin, dpi_), -Scaled(kMargin, dpi_));
  RECT text = area;
  const HDC canvas = GetDC(Handle());
  const HGDIOBJ before = SelectObject(canvas, font_);
  DrawTextW(canvas, note_.text.c_str(), -1, &text, kTextFormat | DT_CALCRECT);
  SelectObject(canvas, before);
  ReleaseDC(Handle(), canvas);
  return {area.left, text.top, area.right, text.bottom};
}

void EmptyNoteWindow::Arrange() {
  RECT area;
  GetClientRect(Handle(), &area);
  const int height = FontHeight(Handle(), font_) + Scaled(10, dpi_);
  const int width = std::min(Scaled(kButtonWidth, dpi_), static_cast<int>(area.right));
  int top = static_cast<int>(TextArea().bottom) + Scaled(kMargin, dpi_);
  for (const EmptyListOffer& offer : note_.offers) {
    const HWND button = GetDlgItem(Handle(), static_cast<int>(offer.command));
    SendMessageW(button, WM_SETFONT, reinterpret_cast<WPARAM>(font_), FALSE);
    MoveWindow(button, (static_cast<int>(area.right) - width) / 2, top, width, height, TRUE);
    top += height + Scaled(kGap, dpi_);
  }
}

void EmptyNoteWindow::Paint(const PaintScope& paint) const {
  const HDC canvas = paint.Canvas();
  const Painter painter(canvas, font_);
  painter.Fill(paint.Area(), Role::kWindow);
  SetTextColor(canvas, ColorOf(Role::kText));
  SetBkMode(canvas, TRANSPARENT);
  RECT text = TextArea();
  DrawTextW(canvas, note_.text.c_str(), -1, &text, kTextFormat);
}

}  // namespace smh
