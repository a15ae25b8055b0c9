#include "hosts/gui/accessible_list.h"

#include "infra/runtime/text.h"

#include <commctrl.h>
#include <oleacc.h>

#include <utility>

namespace smh {

namespace {

constexpr std::size_t kMostUnits = 4096;

}  // namespace

AccessibleList::AccessibleList(const ListColumns& columns, HWND list, std::wstring name, std::wstring action)
    : columns_(columns), list_(list), name_(std::move(name)), action_(std::move(action)) {}

int AccessibleList::Count() const {
  return ListView_GetItemCount(list_);
}

// A picture stands behind blanks.
std::wstring AccessibleList::Cell(int row, int column) const {
  std::wstring text(kMostUnits, L'\0');
  LVITEMW item = {};
  item.iSubItem = column;
  item.pszText = text.data();
  item.cchTextMax = static_cast<int>(text.size());
  const LRESULT units =
      SendMessageW(list_, LVM_GETITEMTEXTW, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item));
  return std::wstring(Trim({item.pszText, static_cast<std::size_t>(units)}));
}

std::wstring AccessibleList::Name(int child) const {
  if (child == 0) return name_;
  std::wstring name;
  for (const std::size_t column : columns_.Order()) {
    const std::wstring cell = Cell(child - 1, static_cast<int>(column));
    if (cell.empty() || ListView_GetColumnWidth(list_, static_cast<int>(column)) == 0) continue;
    if (!name.empty()) name += L", ";
    name += column == 0 ? cell : columns_.Title(column) + L": " + cell;
  }
  return name;
}

DWORD AccessibleList::Role(int child) const {
  return child == 0 ? ROLE_SYSTEM_LIST : ROLE_SYSTEM_LISTITEM;
}

bool AccessibleList::Is(int row, UINT state) const {
  return ListView_GetItemState(list_, row, state) == state;
}

DWORD AccessibleList::State(int child) const {
  const bool hasFocus = GetFocus() == list_;
  DWORD state = STATE_SYSTEM_FOCUSABLE;
  if (child == 0) return state | (hasFocus ? STATE_SYSTEM_FOCUSED : 0);
  const int row = child - 1;
  state |= STATE_SYSTEM_SELECTABLE | STATE_SYSTEM_MULTISELECTABLE;
  if (Is(row, LVIS_SELECTED)) state |= STATE_SYSTEM_SELECTED;
  if (hasFocus && Is(row, LVIS_FOCUSED)) state |= STATE_SYSTEM_FOCUSED;
  if (ListView_GetItemState(list_, row, LVIS_STATEIMAGEMASK) == INDEXTOSTATEIMAGEMASK(2u)) {
    state |= STATE_SYSTEM_CHECKED;
  }
  const int top = ListView_GetTopIndex(list_);
  if (row < top || row > top + ListView_GetCountPerPage(list_)) state |= STATE_SYSTEM_OFFSCREEN;
  return state;
}

RECT AccessibleList::Place(int child) const {
  RECT place = {};
  if (child == 0) {
    GetClientRect(list_, &place);
  } else {
    ListView_GetItemRect(list_, child - 1, &place, LVIR_BOUNDS);
  }
  return place;
}

int AccessibleList::HitTest(POINT point) const {
  LVHITTESTINFO hit = {};
  hit.pt = point;
  return ListView_HitTest(list_, &hit) + 1;
}

int AccessibleList::Focused() const {
  return ListView_GetNextItem(list_, -1, LVNI_FOCUSED) + 1;
}

std::vector<int> AccessibleList::Selected() const {
  std::vector<int> rows;
  for (int row = -1; (row = ListView_GetNextItem(list_, row, LVNI_SELECTED)) >= 0;) rows.push_back(row + 1);
  return rows;
}

std::wstring AccessibleList::DefaultAction(int child) const {
  return child == 0 ? std::wstring() : action_;
}

void AccessibleList::DoDefaultAction(int child) {
  Select(child, SELFLAG_TAKEFOCUS | SELFLAG_TAKESELECTION);
  PostMessageW(list_, WM_KEYDOWN, VK_RETURN, 0);
}

void AccessibleList::Set(int row, UINT state, UINT mask) const {
  LVITEMW item = {};
  item.state = state;
  item.stateMask = mask;
  SendMessageW(list_, LVM_SETITEMSTATE, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item));
}

bool AccessibleList::Select(int child, LONG flags) {
  if (child == 0) {
    if (flags != SELFLAG_TAKEFOCUS) return false;
    SetFocus(list_);
    return true;
  }
  const int row = child - 1;
  constexpr LONG kAdding = SELFLAG_TAKESELECTION | SELFLAG_ADDSELECTION;
  if ((flags & SELFLAG_EXTENDSELECTION) != 0) return false;
  if ((flags & SELFLAG_REMOVESELECTION) != 0 && (flags & kAdding) != 0) return false;
  if ((flags & SELFLAG_TAKESELECTION) != 0) Set(-1, 0, LVIS_SELECTED);
  if ((flags & kAdding) != 0) Set(row, LVIS_SELECTED, LVIS_SELECTED);
  if ((flags & SELFLAG_REMOVESELECTION) != 0) Set(row, 0, LVIS_SELECTED);
  if ((flags & SELFLAG_TAKEFOCUS) != 0) {
    SetFocus(list_);
    Set(row, LVIS_FOCUSED, LVIS_FOCUSED);
    ListView_EnsureVisible(list_, row, FALSE);
  }
  return true;
}

}  // namespace smh
