// What this process holds, for tests that nothing is left behind.
#pragma once

#include <cstddef>
#include <functional>

namespace smh::test {

int HandleCount();
// How many thread storage indexes the process has left.
int FreeTlsIndexes();
int ThreadCount();
// Bytes in use in all heaps, those in blocks of the size `without` left out.
std::size_t HeapBytes(std::size_t without = 0);

// Whether runs of `run` leave no handle, index or block of memory behind; what they left is printed. False as
// soon as a run answers false. What a run leaves grows every time; the system keeps something only once, of a
// first run and of the first exceptions. Raises what live_blocks.h says.
bool LeavesNothing(const std::function<bool()>& run);

}  // namespace smh::test
