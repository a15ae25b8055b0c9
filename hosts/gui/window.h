// A window of a class of this program's own, whose messages arrive in a member function.
#pragma once

#include <windows.h>

#include <string>

namespace smh {

// In the captions of all windows.
inline constexpr wchar_t kProgramTitle[] = L"Startup Manager";

// The whole text of a window or control.
std::wstring TextOf(HWND window);

class Window {
 public:
  Window(const Window&) = delete;
  Window& operator=(const Window&) = delete;
  HWND Handle() const noexcept { return window_; }

 protected:
  Window() = default;
  // Destroys the window if it still exists.
  virtual ~Window();

  struct Look {
    const wchar_t* className;
    const wchar_t* title = L"";
    DWORD style = 0;
    DWORD exStyle = 0;
    const wchar_t* cursor = reinterpret_cast<const wchar_t*>(32512);  // IDC_ARROW
    HWND parent = nullptr;
    HMENU menu = nullptr;
  };
  // Raises HostError.
  void Create(const Look& look);
  // Exceptions end in a message box.
  virtual LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) = 0;

 private:
  static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept;

  HWND window_ = nullptr;
};

}  // namespace smh
