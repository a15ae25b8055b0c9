// The registry and the disk answered from memory, so that a pass costs nothing but its own work.
#pragma once

namespace smh::bench {

// While one lives, counted calls that read are asked of the system the first time and answered from memory
// from then on. One at a time; CountSystemCalls comes first. Single-threaded. What is changed meanwhile is
// not seen, and what is remembered goes with the object.
class MemoryMachine {
 public:
  MemoryMachine();
  ~MemoryMachine();
  MemoryMachine(const MemoryMachine&) = delete;
  MemoryMachine& operator=(const MemoryMachine&) = delete;
};

}  // namespace smh::bench
