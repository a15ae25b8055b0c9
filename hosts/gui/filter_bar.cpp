#include "hosts/gui/filter_bar.h"

#include "hosts/gui/accessible_button.h"
#include "hosts/gui/dpi.h"

#include <commctrl.h>

namespace smh {

namespace {

constexpr int kGap = 4;

int TextWidth(HWND window, HFONT font, const wchar_t* text) noexcept {
  const HDC canvas = GetDC(window);
  const HGDIOBJ before = SelectObject(canvas, font);
  SIZE size = {};
  GetTextExtentPoint32W(canvas, text, lstrlenW(text), &size);
  SelectObject(canvas, before);
  ReleaseDC(window, canvas);
  return static_cast<int>(size.cx);
}

}  // namespace

void FilterBar::Create(HWND parent) {
  const HWND tips = CreateWindowExW(WS_EX_TOPMOST, TOOLTIPS_CLASSW, nullptr, WS_POPUP | TTS_ALWAYSTIP, 0, 0,
                                    0, 0, parent, nullptr, nullptr, nullptr);
  for (std::size_t i = 0; i < kFilterCount; ++i) {
    const EntryFilter& filter = EntryFilters()[i];
    buttons_[i] = CreateWindowExW(
        0, WC_BUTTONW, filter.title.Get(),
        WS_CHILD | WS_TABSTOP | WS_CLIPSIBLINGS | BS_CHECKBOX | BS_PUSHLIKE, 0, 0, 0, 0, parent,
        reinterpret_cast<HMENU>(static_cast<UINT_PTR>(filter.command)), nullptr, nullptr);
    accessible_[i].Attach(buttons_[i], std::make_unique<AccessibleButton>(buttons_[i], filter.tip.Get()));
    TOOLINFOW tip = {};
    tip.cbSize = TTTOOLINFOW_V2_SIZE;
    tip.uFlags = TTF_IDISHWND | TTF_SUBCLASS;
    tip.hwnd = parent;
    tip.uId = reinterpret_cast<UINT_PTR>(buttons_[i]);
    tip.lpszText = const_cast<wchar_t*>(filter.tip.Get());
    SendMessageW(tips, TTM_ADDTOOLW, 0, reinterpret_cast<LPARAM>(&tip));
  }
}

void FilterBar::SetDpi(int dpi, HFONT font) {
  dpi_ = dpi;
  height_ = FontHeight(buttons_.front(), font) + Scaled(8, dpi);
  for (std::size_t i = 0; i < kFilterCount; ++i) {
    SendMessageW(buttons_[i], WM_SETFONT, reinterpret_cast<WPARAM>(font), TRUE);
    widths_[i] = TextWidth(buttons_[i], font, EntryFilters()[i].title.Get()) + Scaled(18, dpi);
  }
}

int FilterBar::Place(const RECT& area) const {
  const int gap = Scaled(kGap, dpi_);
  const int right = static_cast<int>(area.right) - gap;
  int left = static_cast<int>(area.left);
  int top = static_cast<int>(area.top);
  for (std::size_t i = 0; i < kFilterCount; ++i) {
    if (left + widths_[i] > right && left > area.left) {
      left = static_cast<int>(area.left);
      top += height_ + gap;
    }
    MoveWindow(buttons_[i], left, top, widths_[i], height_, TRUE);
    left += widths_[i] + gap;
  }
  return top + height_ + gap - static_cast<int>(area.top);
}

void FilterBar::Show(bool show) const {
  for (const HWND button : buttons_) ShowWindow(button, show ? SW_SHOWNA : SW_HIDE);
}

void FilterBar::Check(const FilterSet& filters) const {
  for (std::size_t i = 0; i < kFilterCount; ++i) {
    const WPARAM state = filters[i] ? BST_CHECKED : BST_UNCHECKED;
    if (SendMessageW(buttons_[i], BM_GETCHECK, 0, 0) != static_cast<LRESULT>(state)) {
      SendMessageW(buttons_[i], BM_SETCHECK, state, 0);
    }
  }
}

}  // namespace smh
