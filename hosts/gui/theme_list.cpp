#include "hosts/gui/theme_list.h"

#include "hosts/gui/dpi.h"
#include "hosts/gui/theme_paint.h"

#include <uxtheme.h>

#include <algorithm>
#include <iterator>

namespace smh {

namespace {

constexpr UINT_PTR kListSubclass = 0x534D01;
// Between an edge and a text, at 96 DPI.
constexpr int kLabelMargin = 2;
constexpr int kCellMargin = 6;
constexpr int kArrowSize = 4;

// How a column's texts are aligned, as a DT_ flag.
UINT AlignmentOf(int format) noexcept {
  switch (format & HDF_JUSTIFYMASK) {
    case HDF_RIGHT:
      return DT_RIGHT;
    case HDF_CENTER:
      return DT_CENTER;
    default:
      return DT_LEFT;
  }
}

std::wstring CellText(HWND list, int row, int column) {
  wchar_t text[1024] = L"";
  LVITEMW item = {};
  item.iSubItem = column;
  item.pszText = text;
  item.cchTextMax = static_cast<int>(std::size(text));
  SendMessageW(list, LVM_GETITEMTEXTW, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item));
  return text;
}

struct RowColors {
  Role back;
  COLORREF text;
};

// A plain text takes the colour of the selection; what is coloured stays so.
RowColors ColorsOf(HWND list, UINT state, COLORREF color) noexcept {
  if ((state & LVIS_SELECTED) == 0) return {Role::kWindow, color};
  const bool hasFocus = GetFocus() == list;
  const Role text = hasFocus ? Role::kSelectionText : Role::kQuietSelectionText;
  return {hasFocus ? Role::kSelection : Role::kQuietSelection,
          color == ColorOf(Role::kText) ? ColorOf(text) : color};
}

void DrawRowPictures(HWND list, HDC canvas, int row, const RECT& icon, UINT state) {
  const HIMAGELIST checks = ListView_GetImageList(list, LVSIL_STATE);
  const int check = static_cast<int>((state & LVIS_STATEIMAGEMASK) >> 12) - 1;
  int width = 0, height = 0;
  if (check >= 0 && checks != nullptr && ImageList_GetIconSize(checks, &width, &height)) {
    ImageList_Draw(checks, check, canvas, icon.left - width, (icon.top + icon.bottom - height) / 2,
                   ILD_TRANSPARENT);
  }
  const HIMAGELIST images = ListView_GetImageList(list, LVSIL_SMALL);
  LVITEMW item = {};
  item.mask = LVIF_IMAGE;
  item.iItem = row;
  if (images == nullptr || !SendMessageW(list, LVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&item))) return;
  if (item.iImage >= 0 && ImageList_GetIconSize(images, &width, &height)) {
    ImageList_Draw(images, item.iImage, canvas, icon.left, (icon.top + icon.bottom - height) / 2,
                   ILD_TRANSPARENT);
  }
}

void DrawHeaderItem(HWND header, HDC canvas, int index, const RECT& area, UINT state) {
  wchar_t text[256] = L"";
  HDITEMW item = {};
  item.mask = HDI_TEXT | HDI_FORMAT;
  item.pszText = text;
  item.cchTextMax = static_cast<int>(std::size(text));
  SendMessageW(header, HDM_GETITEMW, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(&item));
  const int dpi = DrawingDpi(header);
  const Painter painter(canvas, FontOf(header));
  painter.Fill(area, (state & CDIS_SELECTED) != 0 ? Role::kButton : Role::kHeader);
  painter.Fill({area.right - 1, area.top, area.right, area.bottom}, Role::kBorder);
  RECT label = {area.left + Scaled(kCellMargin, dpi), area.top, area.right - Scaled(kCellMargin, dpi),
                area.bottom};
  const bool isUp = (item.fmt & HDF_SORTUP) != 0;
  if (isUp || (item.fmt & HDF_SORTDOWN) != 0) {
    const int room = Scaled(3 * kArrowSize, dpi);
    const RECT place = {label.right - room, area.top, label.right, area.bottom};
    painter.Triangle(place, isUp ? Painter::Arrow::kUp : Painter::Arrow::kDown, Scaled(kArrowSize, dpi),
                     Role::kHeaderText);
    label.right = std::max(label.right - room, label.left);
  }
  painter.Text(text, label, Role::kHeaderText, DT_END_ELLIPSIS | DT_NOPREFIX | AlignmentOf(item.fmt));
}

LRESULT DrawHeader(const NMCUSTOMDRAW& draw) {
  const HWND header = draw.hdr.hwndFrom;
  RECT area;
  GetClientRect(header, &area);
  switch (draw.dwDrawStage) {
    case CDDS_PREPAINT:
      return CDRF_NOTIFYITEMDRAW | CDRF_NOTIFYPOSTPAINT;
    case CDDS_ITEMPREPAINT:
      DrawHeaderItem(header, draw.hdc, static_cast<int>(draw.dwItemSpec), draw.rc, draw.uItemState);
      return CDRF_SKIPDEFAULT;
    case CDDS_POSTPAINT:
      for (int i = Header_GetItemCount(header) - 1; i >= 0; --i) {
        RECT item;
        if (Header_GetItemRect(header, i, &item)) area.left = std::max(area.left, item.right);
      }
      Painter(draw.hdc).Fill(area, Role::kHeader);
      return CDRF_DODEFAULT;
    default:
      return CDRF_DODEFAULT;
  }
}

LRESULT CALLBACK ListProcedure(HWND list, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR id,
                               DWORD_PTR) noexcept {
  if (message == WM_NOTIFY && IsDark()) {
    const auto& header = *reinterpret_cast<const NMHDR*>(lParam);
    if (header.code == NM_CUSTOMDRAW && header.hwndFrom == ListView_GetHeader(list)) {
      return DrawHeader(reinterpret_cast<const NMCUSTOMDRAW&>(header));
    }
  }
  if (message == WM_NCDESTROY) RemoveWindowSubclass(list, ListProcedure, id);
  return DefSubclassProc(list, message, wParam, lParam);
}

}  // namespace

void DressList(HWND list) {
  SetWindowSubclass(list, ListProcedure, kListSubclass, 0);
  // Where the system knows it, the dark theme has dark scroll bars.
  SetWindowTheme(list, IsDark() ? L"DarkMode_Explorer" : L"Explorer", nullptr);
  ListView_SetBkColor(list, ColorOf(Role::kWindow));
  ListView_SetTextBkColor(list, ColorOf(Role::kWindow));
  ListView_SetTextColor(list, ColorOf(Role::kText));
}

void DrawListRow(HWND list, HDC canvas, int row, COLORREF color) {
  RECT bounds, icon;
  if (!ListView_GetItemRect(list, row, &bounds, LVIR_BOUNDS) ||
      !ListView_GetItemRect(list, row, &icon, LVIR_ICON)) {
    return;
  }
  const UINT state = ListView_GetItemState(list, row, LVIS_SELECTED | LVIS_FOCUSED | LVIS_STATEIMAGEMASK);
  const RowColors colors = ColorsOf(list, state, color);
  const int dpi = DrawingDpi(list);
  const Painter painter(canvas, FontOf(list));
  painter.Fill(bounds, colors.back);
  DrawRowPictures(list, canvas, row, icon, state);
  const int columns = Header_GetItemCount(ListView_GetHeader(list));
  for (int i = 0; i < columns; ++i) {
    LVCOLUMNW column = {};
    column.mask = LVCF_FMT;
    RECT cell;
    if (!ListView_GetSubItemRect(list, row, i, i == 0 ? LVIR_LABEL : LVIR_BOUNDS, &cell) ||
        cell.right <= cell.left) {
      continue;
    }
    SendMessageW(list, LVM_GETCOLUMNW, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(&column));
    const int margin = Scaled(i == 0 ? kLabelMargin : kCellMargin, dpi);
    const RECT place = {cell.left + margin, cell.top, std::max(cell.right - margin, cell.left), cell.bottom};
    painter.Text(CellText(list, row, i), place, colors.text,
                 DT_END_ELLIPSIS | DT_NOPREFIX | AlignmentOf(column.fmt));
  }
  if ((state & LVIS_FOCUSED) != 0 && GetFocus() == list) painter.Frame(bounds, Role::kFocus);
}

void DressTree(HWND tree) {
  SetWindowTheme(tree, IsDark() ? L"DarkMode_Explorer" : nullptr, nullptr);
  TreeView_SetBkColor(tree, ColorOf(Role::kWindow));
  TreeView_SetTextColor(tree, ColorOf(Role::kText));
  TreeView_SetLineColor(tree, ColorOf(Role::kGrey));
}

LRESULT DrawTree(NMTVCUSTOMDRAW& draw) {
  if (draw.nmcd.dwDrawStage == CDDS_PREPAINT) return CDRF_NOTIFYITEMDRAW;
  if (draw.nmcd.dwDrawStage != CDDS_ITEMPREPAINT) return CDRF_DODEFAULT;
  const bool isSelected = (draw.nmcd.uItemState & CDIS_SELECTED) != 0;
  const bool hasFocus = GetFocus() == draw.nmcd.hdr.hwndFrom;
  draw.clrText = ColorOf(!isSelected ? Role::kText
                         : hasFocus  ? Role::kSelectionText
                                     : Role::kQuietSelectionText);
  draw.clrTextBk = ColorOf(!isSelected ? Role::kWindow : hasFocus ? Role::kSelection : Role::kQuietSelection);
  return CDRF_DODEFAULT;
}

}  // namespace smh
