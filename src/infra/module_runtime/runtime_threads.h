// The thread functions that the language's static runtime calls inside a module, over the system's own locks
// and storage: the POSIX names of its unwinder, of its storage per thread and of its guards of local statics.
//
// The toolchain's own ones keep a thread storage index, two handles and memory for every copy of the runtime,
// for good: a host that loads and frees modules is ended once the process has no index left. These hold one
// index and a record per thread that has thrown, and give both back. A function that is missing here brings
// in the toolchain's, and the linker refuses all that are defined twice.
//
// Their contract is that of POSIX, any thread may call them, and the calling thread's last error stays as it
// is, but for this:
// - A mutex may not be entered twice by a thread, the recursive ones neither. The runtime does not.
// - There are four keys at most, and none is deleted.
// - The destructor of a key's values may run on another thread than the value's, under the loader's lock.
#pragma once

namespace smh {

// Destroys the calling thread's values. For the end of a thread.
void ReleaseRuntimeThread() noexcept;

// Destroys the values of all threads and gives the index back. For the end of the module: no other thread is
// inside one of the functions, unless it was ended there; then everything is left as it is. Twice does no
// harm.
void ReleaseRuntimeThreads() noexcept;

}  // namespace smh
