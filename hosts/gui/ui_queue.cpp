#include "hosts/gui/ui_queue.h"

#include <utility>

namespace smh {

void UiQueue::Post(Work work) {
  const std::lock_guard guard(lock_);
  if (closed_) return;
  waiting_.push_back(std::move(work));
  if (window_ != nullptr && waiting_.size() == 1) PostMessageW(window_, message_, 0, 0);
}

void UiQueue::Attach(HWND window, UINT message) {
  const std::lock_guard guard(lock_);
  window_ = window;
  message_ = message;
  if (!waiting_.empty()) PostMessageW(window_, message_, 0, 0);
}

void UiQueue::Detach() {
  const std::lock_guard guard(lock_);
  closed_ = true;
  waiting_.clear();
}

void UiQueue::RunAll() {
  std::vector<Work> work;
  {
    const std::lock_guard guard(lock_);
    work.swap(waiting_);
  }
  for (const Work& each : work) each();
}

}  // namespace smh
