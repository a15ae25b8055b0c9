#include "hosts/gui/cell_tips.h"

#include "hosts/gui/dpi.h"

#include <algorithm>

namespace smh {

namespace {

constexpr int kWidth = 600;
constexpr int kPadding = 6;            // at either side of a cell's text
constexpr int kLongestShown = 32'000;  // milliseconds
// The details show all of it; a tip is to fit the screen.
constexpr std::size_t kLongestText = 2'000;

}  // namespace

void CellTips::Create(HWND list, TextOfCell text) {
  list_ = list;
  text_ = std::move(text);
  tip_ = CreateWindowExW(WS_EX_TOPMOST, TOOLTIPS_CLASSW, L"", WS_POPUP | TTS_NOPREFIX | TTS_ALWAYSTIP,
                         CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, list, nullptr, nullptr,
                         nullptr);
  TOOLINFOW tool = Tool();
  wchar_t none[] = L"";
  tool.lpszText = none;
  SendMessageW(tip_, TTM_ADDTOOLW, 0, reinterpret_cast<LPARAM>(&tool));
  SendMessageW(tip_, TTM_SETDELAYTIME, TTDT_AUTOPOP, kLongestShown);
}

TOOLINFOW CellTips::Tool() const {
  TOOLINFOW tool = {};
  tool.cbSize = TTTOOLINFOW_V1_SIZE;
  tool.hwnd = list_;
  tool.uId = 1;
  return tool;
}

void CellTips::SetDpi(int dpi, HFONT font) {
  dpi_ = dpi;
  SendMessageW(tip_, WM_SETFONT, reinterpret_cast<WPARAM>(font), FALSE);
  SendMessageW(tip_, TTM_SETMAXTIPWIDTH, 0, Scaled(kWidth, dpi));
}

void CellTips::OnListMessage(UINT message, WPARAM wParam, LPARAM lParam) {
  if (tip_ == nullptr) return;
  if (message == WM_MOUSEMOVE)
    ShowFor({static_cast<short>(LOWORD(lParam)), static_cast<short>(HIWORD(lParam))});
  if (message == WM_VSCROLL || message == WM_HSCROLL || message == WM_MOUSEWHEEL) row_ = -1;
  if (message < WM_MOUSEFIRST || message > WM_MOUSELAST) return;
  MSG relayed = {};
  relayed.hwnd = list_;
  relayed.message = message;
  relayed.wParam = wParam;
  relayed.lParam = lParam;
  SendMessageW(tip_, TTM_RELAYEVENT, 0, reinterpret_cast<LPARAM>(&relayed));
}

// One tool moves from cell to cell, with no text where there is nothing to tell.
void CellTips::ShowFor(POINT point) {
  LVHITTESTINFO hit = {};
  hit.pt = point;
  SendMessageW(list_, LVM_SUBITEMHITTEST, 0, reinterpret_cast<LPARAM>(&hit));
  if (hit.iItem == row_ && hit.iSubItem == column_) return;
  row_ = hit.iItem;
  column_ = hit.iSubItem;
  SendMessageW(tip_, TTM_POP, 0, 0);
  TOOLINFOW tool = Tool();
  std::wstring text;
  if (row_ >= 0 && column_ >= 0 && ListView_GetSubItemRect(list_, row_, column_, LVIR_LABEL, &tool.rect)) {
    text = text_(static_cast<std::size_t>(row_), static_cast<std::size_t>(column_));
    if (HasRoom(text, column_, tool.rect)) text.clear();
  }
  if (text.size() > kLongestText) text.replace(kLongestText, std::wstring::npos, L"\u2026");
  tool.lpszText = text.data();
  SendMessageW(tip_, TTM_NEWTOOLRECTW, 0, reinterpret_cast<LPARAM>(&tool));
  SendMessageW(tip_, TTM_UPDATETIPTEXTW, 0, reinterpret_cast<LPARAM>(&tool));
}

bool CellTips::HasRoom(const std::wstring& text, int column, const RECT& cell) const {
  const int padding = column == 0 ? 0 : Scaled(kPadding, dpi_);
  const int width = ListView_GetStringWidth(list_, text.c_str()) + 2 * padding;
  RECT seen;
  GetClientRect(list_, &seen);
  return cell.left >= 0 && cell.left + width <= std::min(cell.right, seen.right);
}

}  // namespace smh
