#include "shelllink/format/task_memory.h"

#include <windows.h>
#include <objbase.h>

#include <new>

namespace smh {

void TaskMemoryDeleter::operator()(std::byte* memory) const noexcept {
  CoTaskMemFree(memory);
}

TaskMemory AllocateTaskMemory(std::size_t size) {
  TaskMemory memory(static_cast<std::byte*>(CoTaskMemAlloc(size)));
  if (!memory) throw std::bad_alloc();
  return memory;
}

}  // namespace smh
