#include "guardkit/checkpoints.h"

namespace smh {

void Checkpoints::Begin(std::wstring_view title) {
  const ScopedLock guard(lock_);
  if (depth_ == 0) title_ = title;
  ++depth_;
}

bool Checkpoints::End() noexcept {
  const ScopedLock guard(lock_);
  if (depth_ == 0) return false;
  if (--depth_ == 0) title_.clear();
  return true;
}

unsigned Checkpoints::Depth() const noexcept {
  const ScopedLock guard(lock_);
  return depth_;
}

std::wstring Checkpoints::Title() const {
  const ScopedLock guard(lock_);
  return title_;
}

}  // namespace smh
