#include "hosts/gui/context_menus.h"

#include "hosts/gui/menus.h"
#include "hosts/gui/resource.h"

#include <commctrl.h>
#include <richedit.h>

#include <algorithm>
#include <iterator>

namespace smh {

namespace {

enum class ControlKind { kList, kTree, kText };

struct MenuRow {
  int control;
  ContextMenu menu;
  ControlKind kind;
};
constexpr MenuRow kMenus[] = {
    {IDC_ENTRIES, ContextMenu::kEntry, ControlKind::kList},
    {IDC_PROGRAMS, ContextMenu::kProgram, ControlKind::kList},
    {IDC_CHECKPOINTS, ContextMenu::kChange, ControlKind::kList},
    {IDC_STEPS, ContextMenu::kText, ControlKind::kList},
    {IDC_DETAILS, ContextMenu::kText, ControlKind::kText},
    {IDC_TREE, ContextMenu::kTree, ControlKind::kTree},
};

// What has the focus, in pixels of the control; empty when nothing has.
RECT FocusedPlace(HWND control, ControlKind kind) noexcept {
  RECT place = {};
  if (kind == ControlKind::kTree) {
    const HTREEITEM node = TreeView_GetSelection(control);
    if (node == nullptr) return place;
    TreeView_EnsureVisible(control, node);
    TreeView_GetItemRect(control, node, &place, TRUE);
    return place;
  }
  if (kind == ControlKind::kText) {
    CHARRANGE selected = {};
    POINTL begin = {};
    SendMessageW(control, EM_EXGETSEL, 0, reinterpret_cast<LPARAM>(&selected));
    SendMessageW(control, EM_POSFROMCHAR, reinterpret_cast<WPARAM>(&begin), selected.cpMin);
    const int y = static_cast<int>(begin.y);
    return {static_cast<int>(begin.x), y, 0, std::max(y, 0)};
  }
  const int row = ListView_GetNextItem(control, -1, LVNI_FOCUSED);
  if (row < 0) return place;
  ListView_EnsureVisible(control, row, FALSE);
  ListView_GetItemRect(control, row, &place, LVIR_LABEL);
  return place;
}

void SelectNodeAt(HWND tree, POINT point) noexcept {
  TVHITTESTINFO hit = {};
  hit.pt = point;
  ScreenToClient(tree, &hit.pt);
  const HTREEITEM node = TreeView_HitTest(tree, &hit);
  if (node != nullptr && (hit.flags & TVHT_ONITEM) != 0) TreeView_SelectItem(tree, node);
}

}  // namespace

bool ShowContextMenu(HWND window, HWND control, POINT point) {
  const int id = GetDlgCtrlID(control);
  const auto row = std::find_if(std::begin(kMenus), std::end(kMenus),
                                [id](const MenuRow& each) { return each.control == id; });
  if (row == std::end(kMenus)) return false;
  SetFocus(control);
  if (point.x == -1 && point.y == -1) {
    const RECT place = FocusedPlace(control, row->kind);
    point = {place.left, place.bottom};
    ClientToScreen(control, &point);
  } else if (row->kind == ControlKind::kTree) {
    SelectNodeAt(control, point);
  }
  const HMENU menu = MakeContextMenu(row->menu);
  OpenMenu(menu, point, window);
  DestroyMenu(menu);
  return true;
}

}  // namespace smh
