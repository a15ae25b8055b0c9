// Windows, the screen, and the registry editor on it.
#pragma once

#include <windows.h>

#include <string>

namespace smh::test {

// A window of this thread, gone at the end of the scope; nobody runs a message loop for it.
class TestWindow {
 public:
  TestWindow(const std::wstring& caption, DWORD style, DWORD exStyle = 0, HWND owner = nullptr);
  ~TestWindow() { DestroyWindow(window_); }
  TestWindow(const TestWindow&) = delete;
  TestWindow& operator=(const TestWindow&) = delete;

  HWND Get() const noexcept { return window_; }
  // The small icon that WM_GETICON answers.
  void SetIcon(HICON icon) const {
    SendMessageW(window_, WM_SETICON, ICON_SMALL, reinterpret_cast<LPARAM>(icon));
  }

 private:
  HWND window_;
};

DWORD ProcessOf(HWND window);

// The registry editor's window, once it is there; null when it does not come.
HWND WaitForEditor();
// The list view in a window, and the first row there in a state such as LVNI_SELECTED (-1: none).
HWND ListInside(HWND window);
int RowInState(HWND list, UINT state);
// The key whose values Wine's editor shows, behind the name of the computer.
std::wstring ShownKey(HWND editor);
// The window that has the focus in the thread of `window`.
HWND FocusOf(HWND window);
// Ends every editor and waits until its processes are gone.
void CloseEditors();

// Saves the screen, or a part of it, as NAME-win64.png or NAME-win32.png in the folder artefacts beside this
// program's. Throws std::runtime_error.
void SaveScreenshot(const std::wstring& name);
void SaveScreenshot(const std::wstring& name, const RECT& part);

}  // namespace smh::test
