// A tool bar that can be used by keyboard: the arrow keys, Home and End choose a button, Space and Enter
// press it. For the window's thread.
#pragma once

#include <windows.h>

namespace smh {

// Takes the keys of a tool bar and draws a focus rectangle on the chosen button while the bar has the focus.
// Stays where it is and outlives the control.
class BarKeys {
 public:
  // Called once for a bar; its parent gets WM_COMMAND as after a click.
  void Attach(HWND bar);
  // The position of the chosen button among all of the bar; -1 for none, as at first and in an empty bar.
  int Chosen() const noexcept { return chosen_; }
  // Makes a button the chosen one; does nothing for one that cannot be pressed.
  void Choose(int button);
  // As a click on the button, whose command is posted; does nothing for one that cannot be pressed.
  void Press(int button) const;

 private:
  static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR id,
                                    DWORD_PTR self) noexcept;
  LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam);
  bool OnKey(WPARAM key);
  bool CanPress(int button) const;
  // Chooses the next button that can be pressed, from `start` on.
  void Seek(int start, int step);
  RECT Place() const;
  void DrawFocus() const;

  HWND bar_ = nullptr;
  int chosen_ = -1;
};

}  // namespace smh
