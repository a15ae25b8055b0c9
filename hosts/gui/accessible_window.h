// A control that answers programs that read the screen from a model, and tells them what changes. For the
// window's thread.
#pragma once

#include "hosts/gui/accessible_pane.h"

#include <memory>
#include <string>
#include <vector>

namespace smh {

// Owns the model; stays where it is. The control may be destroyed before or after it: objects that other
// programs still hold then fail.
class AccessibleWindow {
 public:
  AccessibleWindow() = default;
  ~AccessibleWindow() { Detach(); }
  AccessibleWindow(const AccessibleWindow&) = delete;
  AccessibleWindow& operator=(const AccessibleWindow&) = delete;

  // Called once. From here on WM_GETOBJECT is answered from the model; focus, selection and what the focused
  // child is are announced (NotifyWinEvent) when they are others, once for all messages that are handled
  // before the thread takes its next posted one.
  void Attach(HWND control, std::unique_ptr<AccessibleModel> model);

 private:
  // What was announced last.
  struct Told {
    int focused = 0;
    std::vector<int> selected;
    std::wstring name;
    DWORD state = 0;
  };
  static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR id,
                                    DWORD_PTR self) noexcept;
  void Detach() noexcept;
  LRESULT Answer(WPARAM wParam);
  void AnnounceLater(bool gotFocus) noexcept;
  void Announce();

  HWND window_ = nullptr;
  std::unique_ptr<AccessibleModel> model_;
  ComPtr<AccessiblePane> pane_;  // made by the first question
  Told told_;
  bool isPosted_ = false;  // the message that announces
  bool gotFocus_ = false;
};

}  // namespace smh
