// Memory of the allocator that owns item ID lists: COM's task allocator on Windows, the heap elsewhere.
#pragma once

#include <cstddef>
#include <memory>

namespace smh {

struct TaskMemoryDeleter {
  void operator()(std::byte* memory) const noexcept;
};
using TaskMemory = std::unique_ptr<std::byte[], TaskMemoryDeleter>;

// `size` bytes, not 0, without a value; the caller owns them. Raises std::bad_alloc. Any thread.
TaskMemory AllocateTaskMemory(std::size_t size);

}  // namespace smh
