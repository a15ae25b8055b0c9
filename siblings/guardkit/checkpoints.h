// The process's open checkpoint. Begins nest: the outermost names the checkpoint, and its end closes it.
#pragma once

#include "infra/critical_section.h"

#include <string>
#include <string_view>

namespace smh {

// Any thread may call it; the nesting counts for the process.
class Checkpoints {
 public:
  void Begin(std::wstring_view title);
  // False when none is open.
  bool End() noexcept;

  unsigned Depth() const noexcept;
  // Empty when none is open.
  std::wstring Title() const;

 private:
  // A leaf: nothing of this system is entered under it.
  mutable CriticalSection lock_;
  unsigned depth_ = 0;
  std::wstring title_;
};

}  // namespace smh
