#include "hosts/gui/theme_bars.h"

#include "hosts/gui/dpi.h"
#include "hosts/gui/theme_paint.h"

#include <uxtheme.h>

#include <iterator>

namespace smh {

namespace {

constexpr UINT_PTR kStatusSubclass = 0x534D02;

void DrawStatusBar(HWND bar) {
  const PaintScope paint(bar);
  const Painter painter(paint.Canvas(), FontOf(bar));
  const int dpi = DrawingDpi(bar);
  const int margin = Scaled(6, dpi);
  painter.Fill(paint.Area(), Role::kBar);
  painter.Fill({0, 0, paint.Area().right, 1}, Role::kBorder);
  const auto parts = static_cast<WPARAM>(SendMessageW(bar, SB_GETPARTS, 0, 0));
  for (WPARAM i = 0; i < parts; ++i) {
    RECT part = {};
    SendMessageW(bar, SB_GETRECT, i, reinterpret_cast<LPARAM>(&part));
    std::wstring text(LOWORD(SendMessageW(bar, SB_GETTEXTLENGTHW, i, 0)) + std::size_t{1}, L'\0');
    SendMessageW(bar, SB_GETTEXTW, i, reinterpret_cast<LPARAM>(text.data()));
    text.pop_back();
    if (i > 0) painter.Fill({part.left, part.top + 2, part.left + 1, part.bottom - 2}, Role::kBorder);
    painter.Text(text, {part.left + margin, part.top, part.right - margin / 2, part.bottom}, Role::kBarText,
                 DT_END_ELLIPSIS | DT_NOPREFIX);
  }
}

LRESULT CALLBACK StatusProcedure(HWND bar, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR id,
                                 DWORD_PTR) noexcept {
  if (message == WM_PAINT && IsDark()) {
    DrawStatusBar(bar);
    return 0;
  }
  if (message == WM_ERASEBKGND && IsDark()) return TRUE;
  if (message == WM_NCDESTROY) RemoveWindowSubclass(bar, StatusProcedure, id);
  return DefSubclassProc(bar, message, wParam, lParam);
}

void DrawToolButton(const NMTBCUSTOMDRAW& draw) {
  const HWND bar = draw.nmcd.hdr.hwndFrom;
  const UINT state = draw.nmcd.uItemState;
  wchar_t label[128] = L"";
  TBBUTTONINFOW info = {};
  info.cbSize = sizeof(info);
  info.dwMask = TBIF_IMAGE | TBIF_STYLE | TBIF_TEXT;
  info.pszText = label;
  info.cchText = static_cast<int>(std::size(label));
  SendMessageW(bar, TB_GETBUTTONINFOW, draw.nmcd.dwItemSpec, reinterpret_cast<LPARAM>(&info));
  const Painter painter(draw.nmcd.hdc, FontOf(bar));
  RECT area = draw.nmcd.rc;
  if ((info.fsStyle & BTNS_SEP) != 0) {
    const int middle = static_cast<int>(area.left + area.right) / 2;
    return painter.Fill({middle, area.top + 3, middle + 1, area.bottom - 3}, Role::kBorder);
  }
  const bool isDisabled = (state & CDIS_DISABLED) != 0;
  const bool isDown = (state & (CDIS_SELECTED | CDIS_CHECKED)) != 0;
  const bool isHot = (state & CDIS_HOT) != 0 && !isDisabled;
  painter.Fill(area, isDown ? Role::kButtonPressed : isHot ? Role::kButtonHot : Role::kBar);
  if (isHot && GetFocus() == bar) painter.Frame(area, Role::kFocus);
  auto images = reinterpret_cast<HIMAGELIST>(
      SendMessageW(bar, isDisabled ? TB_GETDISABLEDIMAGELIST : TB_GETIMAGELIST, 0, 0));
  const bool hasText = (info.fsStyle & BTNS_SHOWTEXT) != 0 && label[0] != L'\0';
  int width = 0, height = 0;
  if (images != nullptr && info.iImage >= 0 && ImageList_GetIconSize(images, &width, &height)) {
    const int free = static_cast<int>(area.right - area.left) - width;
    const int left = static_cast<int>(area.left) +
                     (hasText ? static_cast<int>(area.bottom - area.top - height) / 2 : free / 2);
    ImageList_Draw(images, info.iImage, draw.nmcd.hdc, left,
                   static_cast<int>(area.top + area.bottom - height) / 2, ILD_TRANSPARENT);
    area.left = left + width;
  }
  if (hasText)
    painter.Text(label, area, isDisabled ? Role::kGreyText : Role::kBarText, DT_CENTER | DT_HIDEPREFIX);
}

}  // namespace

void DressStatusBar(HWND bar) {
  SetWindowSubclass(bar, StatusProcedure, kStatusSubclass, 0);
}

// A themed bar of progress knows no colours.
void DressProgressBar(HWND bar) {
  const wchar_t* const none = IsDark() ? L"" : nullptr;
  SetWindowTheme(bar, none, none);
  SendMessageW(bar, PBM_SETBKCOLOR, 0, static_cast<LPARAM>(IsDark() ? ColorOf(Role::kButton) : CLR_DEFAULT));
  SendMessageW(bar, PBM_SETBARCOLOR, 0, static_cast<LPARAM>(IsDark() ? ColorOf(Role::kGreen) : CLR_DEFAULT));
}

LRESULT DrawToolBar(const NMTBCUSTOMDRAW& draw) {
  switch (draw.nmcd.dwDrawStage) {
    case CDDS_PREPAINT: {
      RECT area;
      GetClientRect(draw.nmcd.hdr.hwndFrom, &area);
      Painter(draw.nmcd.hdc).Fill(area, Role::kBar);
      return CDRF_NOTIFYITEMDRAW;
    }
    case CDDS_ITEMPREPAINT:
      DrawToolButton(draw);
      return CDRF_SKIPDEFAULT;
    default:
      return CDRF_DODEFAULT;
  }
}

}  // namespace smh
