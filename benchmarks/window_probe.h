// A window of another process as its user sees it: asked by messages, and read from the screen.
#pragma once

#include "tests/support/child_process.h"

#include <windows.h>

#include <string>
#include <vector>

namespace smh::bench {

// Owns the process and ends it. Times are in microseconds and begin with the creation of the process. What
// does not come within a minute raises std::runtime_error.
class WindowProbe {
 public:
  // Starts `program` beside this one, and waits for a visible window of that class with a list below `list`.
  WindowProbe(const wchar_t* program, const std::vector<std::wstring>& arguments, const wchar_t* className,
              int list);
  // Closes the window and waits for the end.
  ~WindowProbe();
  WindowProbe(const WindowProbe&) = delete;
  WindowProbe& operator=(const WindowProbe&) = delete;

  HWND List() const noexcept { return list_; }
  HWND Control(int id) const noexcept { return GetDlgItem(window_, id); }
  int Count() const noexcept;
  bool IsChecked(int row) const noexcept;
  // As if chosen from a menu; returns at once.
  void Command(UINT command) const noexcept { PostMessageW(window_, WM_COMMAND, command, 0); }

  // When every row of a whole page stands on the screen. The list holds more than a page.
  double UntilPageIsPainted() const;
  // When the list has `count` rows, and the text of `status` does not begin so any more.
  double UntilComplete(int count, int status, const std::wstring& busy) const;
  // Sends the message, has the control draw what has become invalid, and answers how long both took.
  double Answer(HWND control, UINT message, WPARAM wParam, LPARAM lParam) const;

 private:
  bool IsPagePainted() const;

  const long long begin_;
  test::ChildProcess process_;
  HWND window_ = nullptr;
  HWND list_ = nullptr;
};

}  // namespace smh::bench
