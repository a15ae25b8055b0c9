// The LinkTargetIDList: the target as an item ID list of the shell's namespace.
#pragma once

#include "infra/runtime/byte_cursor.h"
#include "shelllink/format/task_memory.h"

namespace smh {

// Owns a copy of the list. Loaded and read by one thread at a time.
class TLinkTargetIDList {
 public:
  // For a header with kHasLinkTargetIDList. Accepts any bytes. Fails the cursor when the list is longer than
  // the file, and loads nothing. Raises std::bad_alloc.
  void Load(ByteCursor& file);
  void Clear() noexcept;

  // In memory of the task allocator; empty without a list. Valid until the next Load or Clear.
  Bytes List() const noexcept { return {list_.get(), size_}; }
  // Whether every item has a size that lies inside the list, and a terminator follows the last. The shell
  // reads a list without knowing its size, so only one that passes may reach it.
  bool IsWellFormed() const noexcept;

 private:
  TaskMemory list_;
  std::size_t size_ = 0;
};

}  // namespace smh
