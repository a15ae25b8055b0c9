// Memory of the allocator that owns item ID lists: COM's task allocator on Windows, the heap elsewhere.
//
// Kept on purpose: one header over two sources. A target compiles one of them, task_memory_ole.cpp for
// Windows or task_memory_heap.cpp for the native build, and so chooses the allocator without a switch in the
// code.
#pragma once

#include <cstddef>
#include <memory>

namespace smh {

// Gives the memory back. Null is nothing to do. Any thread.
struct TaskMemoryDeleter {
  void operator()(std::byte* memory) const noexcept;
};
using TaskMemory = std::unique_ptr<std::byte[], TaskMemoryDeleter>;

// `size` bytes, not 0, without a value; the caller owns them. Raises std::bad_alloc. Any thread.
TaskMemory AllocateTaskMemory(std::size_t size);

}  // namespace smh
