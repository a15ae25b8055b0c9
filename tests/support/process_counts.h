// What this process holds, for tests that nothing is left behind.
#pragma once

#include <cstddef>

namespace smh::test {

int HandleCount();
int ThreadCount();
// Bytes in use in all heaps.
std::size_t HeapBytes();

}  // namespace smh::test
