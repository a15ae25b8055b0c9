// Work that other threads hand to the window's thread.
#pragma once

#include <windows.h>

#include <functional>
#include <mutex>
#include <vector>

namespace smh {

// Works before the window exists and after it has gone, so it outlives both window and workers.
class UiQueue {
 public:
  using Work = std::function<void()>;

  // Any thread; `work` runs later on the window's thread, in the order of posting. Dropped after Detach.
  void Post(Work work);
  // Window's thread. From here on `window` gets `message` when work waits; it answers with RunAll.
  void Attach(HWND window, UINT message);
  // Window's thread, before the window goes: drops what waits and whatever comes later.
  void Detach();
  // Window's thread: runs what waits by now, without the lock, so that work may post and open dialogs. An
  // exception passes, and what waited behind it is dropped.
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
