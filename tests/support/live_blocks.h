// How many blocks of memory live in this process, whatever the heap keeps of them.
#pragma once

namespace smh::test {

// Blocks of all heaps that were allocated since the first call and have not been freed, less those of before
// that were. Any thread after the first call, which patches the system's functions in this process. Raises
// what code_patch.h says.
long LiveBlocks();

}  // namespace smh::test
