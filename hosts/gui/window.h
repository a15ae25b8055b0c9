// A window of a class of this program's own, whose messages arrive in a member function. For the thread that
// makes it.
#pragma once

#include <windows.h>

#include <string>

namespace smh {

// In the captions of all windows.
inline constexpr wchar_t kProgramTitle[] = L"Startup Manager";

// The whole text of a window or control of this thread.
std::wstring TextOf(HWND window);

// Owns the window. When something else destroys that first, its parent or WM_CLOSE, the handle is null from
// then on.
class Window {
 public:
  Window(const Window&) = delete;
  Window& operator=(const Window&) = delete;
  // Null before Create, and after the window has gone.
  HWND Handle() const noexcept { return window_; }

 protected:
  Window() = default;
  // Destroys the window if it still exists. By now OnMessage of the derived class is gone, so the window
  // ought to have ended before: by WM_CLOSE or with its parent.
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

}  // namespace smh
