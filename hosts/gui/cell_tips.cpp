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

bool IsMouseOver(HWND window) noexcept {
  POINT mouse = {};
  return GetCursorPos(&mouse) && WindowFromPoint(mouse) == window;
}

}  // namespace

void CellTips::Create(HWND list, TextOfCell text) {
  list_ = list;
  text_ = std::move(text);
  tip_ = CreateWindowExW(WS_EX_TOPMOST, TOOLTIPS_CLASSW, L"", WS_POPUP | TTS_NOPREFIX | TTS_ALWAYSTIP,
                         CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, list, nullptr, nullptr,
                         nullptr);
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
    mouse_ = {static_cast<short>(LOWORD(lParam)), static_cast<short>(HIWORD(lParam))};
  // What is painted anew may be another cell by now, or say something else.
  if (message == WM_PAINT && !IsMouseOver(list_)) mouse_ = {-1, -1};
  if (message == WM_MOUSEMOVE || message == WM_PAINT) ShowForMouse();
  if (message >= WM_MOUSEFIRST && message <= WM_MOUSELAST) Relay(message, wParam, lParam);
}

void CellTips::Relay(UINT message, WPARAM wParam, LPARAM lParam) const {
  MSG relayed = {};
  relayed.hwnd = list_;
  relayed.message = message;
  relayed.wParam = wParam;
  relayed.lParam = lParam;
  SendMessageW(tip_, TTM_RELAYEVENT, 0, reinterpret_cast<LPARAM>(&relayed));
}

// A cell that has something to tell has a tool; one whose text changes keeps it, so that a tip that is seen
// stays.
void CellTips::ShowForMouse() {
  LVHITTESTINFO hit = {};
  hit.pt = mouse_;
  SendMessageW(list_, LVM_SUBITEMHITTEST, 0, reinterpret_cast<LPARAM>(&hit));
  TOOLINFOW tool = Tool();
  std::wstring text;
  if (hit.iItem >= 0 && hit.iSubItem >= 0 &&
      ListView_GetSubItemRect(list_, hit.iItem, hit.iSubItem, LVIR_LABEL, &tool.rect)) {
    text = text_(static_cast<std::size_t>(hit.iItem), static_cast<std::size_t>(hit.iSubItem));
    if (HasRoom(text, hit.iSubItem, tool.rect)) text.clear();
  }
  if (text.size() > kLongestText) text.replace(kLongestText, std::wstring::npos, L"\u2026");
  const bool isSameCell = EqualRect(&tool.rect, &cell_) != FALSE;
  if (isSameCell && text == shown_) return;
  const bool keepsTool = isSameCell && !text.empty() && !shown_.empty();
  if (!keepsTool && !shown_.empty()) SendMessageW(tip_, TTM_DELTOOLW, 0, reinterpret_cast<LPARAM>(&tool));
  cell_ = tool.rect;
  shown_ = text;
  if (text.empty()) return;
  tool.lpszText = text.data();
  SendMessageW(tip_, keepsTool ? TTM_UPDATETIPTEXTW : TTM_ADDTOOLW, 0, reinterpret_cast<LPARAM>(&tool));
  if (!keepsTool) Relay(WM_MOUSEMOVE, 0, MAKELPARAM(mouse_.x, mouse_.y));
}

bool CellTips::HasRoom(const std::wstring& text, int column, const RECT& cell) const {
  const int padding = column == 0 ? 0 : Scaled(kPadding, dpi_);
  const int width = ListView_GetStringWidth(list_, text.c_str()) + 2 * padding;
  RECT seen;
  GetClientRect(list_, &seen);
  return cell.left >= 0 && cell.left + width <= std::min(cell.right, seen.right);
}

}  // namespace smh
