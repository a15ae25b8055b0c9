// The whole text of a cell that has no room for it, beside the mouse. For the window's thread.
#pragma once

#include <windows.h>
#include <commctrl.h>

#include <functional>
#include <string>

namespace smh {

// The tips of one report list, which owns their window: it destroys that before itself.
class CellTips {
 public:
  // The text of a cell that exists, for as long as the list does.
  using TextOfCell = std::function<std::wstring(std::size_t row, std::size_t column)>;

  // Called once, with a list that has no tips of its own.
  void Create(HWND list, TextOfCell text);
  // The font is the caller's and lives until the next call.
  void SetDpi(int dpi, HFONT font);
  // The list's owner passes on the messages of the list before the list gets them.
  void OnListMessage(UINT message, WPARAM wParam, LPARAM lParam);

 private:
  void ShowForMouse();
  void Relay(UINT message, WPARAM wParam, LPARAM lParam) const;
  bool HasRoom(const std::wstring& text, int column, const RECT& cell) const;
  TOOLINFOW Tool() const;

  HWND list_ = nullptr;
  HWND tip_ = nullptr;
  TextOfCell text_;
  int dpi_ = USER_DEFAULT_SCREEN_DPI;
  POINT mouse_ = {-1, -1};  // where it was last, in the list
  RECT cell_ = {};
  std::wstring shown_;
};

}  // namespace smh
