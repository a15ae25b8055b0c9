// Work that other threads hand to the window's thread.
#pragma once

#include <windows.h>

#include <functional>
#include <mutex>
#include <vector>

namespace smh {

class UiQueue {
 public:
  using Work = std::function<void()>;

  // Any thread. Dropped when the window is gone.
  void Post(Work work);
  // From here on `window` gets `message` when work waits; it answers with RunAll.
  void Attach(HWND window, UINT message);
  void Detach();
  void RunAll();

 private:
  // Guards everything below; no other lock is taken while it is held.
  std::mutex lock_;
  std::vector<Work> waiting_;
  HWND window_ = nullptr;
  UINT message_ = 0;
  bool closed_ = false;
};

}  // namespace smh
