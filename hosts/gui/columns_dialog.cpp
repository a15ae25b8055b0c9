#include "hosts/gui/columns_dialog.h"

#include "hosts/gui/dialog_place.h"
#include "hosts/gui/dialogs.h"
#include "hosts/gui/entry_columns.h"
#include "hosts/gui/resource.h"

#include <commctrl.h>

#include <algorithm>

namespace smh {

namespace {

// All columns, those that are shown first and in their order.
struct Choice {
  struct Row {
    ColumnPlace place;
    bool isShown;
  };
  std::vector<Row> rows;
};

Choice ChoiceOf(const ColumnLayout& layout) {
  Choice choice;
  for (const ColumnPlace& place : layout) choice.rows.push_back({place, true});
  for (std::size_t i = 0; i < EntryColumns().size(); ++i) {
    if (std::ranges::find(layout, i, &ColumnPlace::column) == layout.end()) {
      choice.rows.push_back({{i, EntryColumns()[i].width}, false});
    }
  }
  return choice;
}

HWND ListOf(HWND dialog) noexcept {
  return GetDlgItem(dialog, IDC_COLUMN_LIST);
}

void TakeChecks(HWND dialog, Choice& choice) {
  for (std::size_t i = 0; i < choice.rows.size(); ++i) {
    Choice::Row& row = choice.rows[i];
    row.isShown =
        row.place.column == kNameColumn || ListView_GetCheckState(ListOf(dialog), static_cast<int>(i)) != 0;
  }
}

void Fill(HWND dialog, const Choice& choice, int focused) {
  const HWND list = ListOf(dialog);
  ListView_DeleteAllItems(list);
  for (std::size_t i = 0; i < choice.rows.size(); ++i) {
    std::wstring title = EntryColumns()[choice.rows[i].place.column].title.Get();
    LVITEMW item = {};
    item.mask = LVIF_TEXT;
    item.iItem = static_cast<int>(i);
    item.pszText = title.data();
    SendMessageW(list, LVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&item));
    ListView_SetCheckState(list, item.iItem, choice.rows[i].isShown);
  }
  ListView_SetItemState(list, focused, LVIS_FOCUSED | LVIS_SELECTED, LVIS_FOCUSED | LVIS_SELECTED);
  ListView_EnsureVisible(list, focused, FALSE);
}

void Open(HWND dialog, const Choice& choice) {
  const HWND list = ListOf(dialog);
  ListView_SetExtendedListViewStyle(list, LVS_EX_CHECKBOXES | LVS_EX_FULLROWSELECT);
  RECT area;
  GetClientRect(list, &area);
  LVCOLUMNW column = {};
  column.mask = LVCF_WIDTH;
  column.cx = area.right - GetSystemMetrics(SM_CXVSCROLL);
  SendMessageW(list, LVM_INSERTCOLUMNW, 0, reinterpret_cast<LPARAM>(&column));
  Fill(dialog, choice, 0);
}

void MoveRow(HWND dialog, Choice& choice, int step) {
  const int row = ListView_GetNextItem(ListOf(dialog), -1, LVNI_SELECTED);
  const int target = row + step;
  if (row < 0 || target < 0 || target >= static_cast<int>(choice.rows.size())) return;
  TakeChecks(dialog, choice);
  std::swap(choice.rows[static_cast<std::size_t>(row)], choice.rows[static_cast<std::size_t>(target)]);
  Fill(dialog, choice, target);
}

INT_PTR CALLBACK Procedure(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) noexcept {
  if (message == WM_INITDIALOG) {
    SetWindowLongPtrW(dialog, DWLP_USER, lParam);
    BeginDialog(dialog, IDD_COLUMNS);
    Open(dialog, *reinterpret_cast<Choice*>(lParam));
    return TRUE;
  }
  auto* const choice = reinterpret_cast<Choice*>(GetWindowLongPtrW(dialog, DWLP_USER));
  if (message != WM_COMMAND || choice == nullptr) return FALSE;
  switch (LOWORD(wParam)) {
    case IDC_COLUMN_UP:
    case IDC_COLUMN_DOWN:
      MoveRow(dialog, *choice, LOWORD(wParam) == IDC_COLUMN_UP ? -1 : 1);
      return TRUE;
    case IDC_COLUMN_RESET:
      *choice = ChoiceOf(FirstLayout());
      Fill(dialog, *choice, 0);
      return TRUE;
    case IDOK:
      TakeChecks(dialog, *choice);
      EndDialog(dialog, IDOK);
      return TRUE;
    case IDCANCEL:
      EndDialog(dialog, IDCANCEL);
      return TRUE;
    default:
      return FALSE;
  }
}

}  // namespace

std::optional<ColumnLayout> AskColumns(HWND owner, const ColumnLayout& layout) {
  Choice choice = ChoiceOf(layout);
  if (OpenDialog(owner, IDD_COLUMNS, Procedure, reinterpret_cast<LPARAM>(&choice)) != IDOK) {
    return std::nullopt;
  }
  ColumnLayout chosen;
  for (const Choice::Row& row : choice.rows) {
    if (row.isShown) chosen.push_back(row.place);
  }
  return chosen;
}

}  // namespace smh
