// Windows of classes of this program's own: their base, and the bar between two panes. For the thread that
// makes them.
#pragma once

#include <windows.h>

#include <functional>
#include <string>

namespace smh {

// In the captions of all windows.
inline constexpr wchar_t kProgramTitle[] = L"Startup Manager";

// The whole text of a window or control of this thread.
std::wstring TextOf(HWND window);

// A box of the system's own, for what comes before windows can be made, or instead of them.
void ShowFault(HWND owner, const std::wstring& text) noexcept;

// Clicks the button of this thread's windows that has the focus when the message is Enter, as dialogs do.
bool ClicksButton(const MSG& message) noexcept;

// A window whose messages arrive in a member function. Owns the window: when something else destroys that
// first, its parent or WM_CLOSE, the handle is null from then on.
class Window {
 public:
  Window(const Window&) = delete;
  Window& operator=(const Window&) = delete;
  // Null before Create, and after the window has gone.
  HWND Handle() const noexcept { return window_; }

 protected:
  Window() = default;
  // Destroys the window if it still exists; OnMessage, which is gone by now, is not called for that.
  virtual ~Window();

  // How the window looks; the texts are read by Create only. A menu becomes the window's, a class is
  // registered once.
  struct Look {
    const wchar_t* className;
    const wchar_t* title = L"";
    DWORD style = 0;
    DWORD exStyle = 0;
    const wchar_t* cursor = reinterpret_cast<const wchar_t*>(32512);  // IDC_ARROW
    HWND parent = nullptr;
    HMENU menu = nullptr;
  };
  // Makes the window; OnMessage gets its first messages before this returns. Raises HostError, also when
  // handling WM_CREATE raised.
  void Create(const Look& look);
  // Answers a message, by DefWindowProcW what it does not know; not called for the window's first and last.
  // Exceptions end in a message box and answer 0; for WM_CREATE the window is then not made.
  virtual LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) = 0;

 private:
  static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept;

  HWND window_ = nullptr;
};

// Moves nothing itself: whoever is told places the bar and the panes.
class Splitter : public Window {
 public:
  // How the bar moves: between panes that lie side by side, or one above the other.
  enum class Direction { kLeftRight, kUpDown };

  // Makes the bar as a child of `parent`, which destroys it. `onDrag` gets the place of the mouse, in pixels
  // of the parent's client area, and may be called until then. Raises HostError.
  void Open(HWND parent, Direction direction, std::function<void(int position)> onDrag);

  // At 96 DPI.
  static constexpr int kThickness = 5;

 private:
  LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

  Direction direction_ = Direction::kLeftRight;
  std::function<void(int)> onDrag_;
};

}  // namespace smh
