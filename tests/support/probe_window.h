// A window that tells whether, and when, the messages of its thread are dispatched.
#pragma once

#include <windows.h>

#include <functional>
#include <utility>

namespace smh::test {

// Belongs to the thread that makes it, and ends there.
class ProbeWindow {
 public:
  // `onProbe` runs for every probe that is dispatched; it must not throw.
  explicit ProbeWindow(std::function<void()> onProbe) : onProbe_(std::move(onProbe)) {
    window_ = CreateWindowExW(0, L"Static", L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
    SetWindowLongPtrW(window_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
    SetWindowLongPtrW(window_, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&Procedure));
  }
  ~ProbeWindow() { DestroyWindow(window_); }
  ProbeWindow(const ProbeWindow&) = delete;
  ProbeWindow& operator=(const ProbeWindow&) = delete;

  // From any thread: leaves a probe in the queue, or has it dispatched and waits for that.
  void Post() const { PostMessageW(window_, kProbe, 0, 0); }
  void Send() const { SendMessageW(window_, kProbe, 0, 0); }

 private:
  static constexpr UINT kProbe = WM_APP + 1;

  static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM first, LPARAM second) {
    if (message != kProbe) return DefWindowProcW(window, message, first, second);
    reinterpret_cast<ProbeWindow*>(GetWindowLongPtrW(window, GWLP_USERDATA))->onProbe_();
    return 0;
  }

  const std::function<void()> onProbe_;
  HWND window_ = nullptr;
};

}  // namespace smh::test
