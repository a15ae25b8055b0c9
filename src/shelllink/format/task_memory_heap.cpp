#include "shelllink/format/task_memory.h"

#include <cstdlib>
#include <new>

namespace smh {

void TaskMemoryDeleter::operator()(std::byte* memory) const noexcept {
  std::free(memory);
}

TaskMemory AllocateTaskMemory(std::size_t size) {
  TaskMemory memory(static_cast<std::byte*>(std::malloc(size)));
  if (!memory) throw std::bad_alloc();
  return memory;
}

}  // namespace smh
