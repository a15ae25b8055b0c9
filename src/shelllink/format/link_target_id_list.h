// The LinkTargetIDList: the target as an item ID list of the shell's namespace.
#pragma once

#include "shelllink/format/byte_cursor.h"
#include "shelllink/format/task_memory.h"

namespace smh {

class TLinkTargetIDList {
 public:
  // For a header with kHasLinkTargetIDList. Accepts any bytes: only size faults are raised.
  void Load(ByteCursor& file);
  void Clear() noexcept;

  // In memory of the task allocator.
  Bytes List() const noexcept { return {list_.get(), size_}; }
  // Whether every item has a size that lies inside the list, and a terminator follows the last. The shell
  // reads a list without knowing its size, so only one that passes may reach it.
  bool IsWellFormed() const noexcept;

 private:
  TaskMemory list_;
  std::size_t size_ = 0;
};

}  // namespace smh
