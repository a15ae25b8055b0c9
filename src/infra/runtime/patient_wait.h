// Waits that may take seconds: a thread of a single-threaded apartment goes on dispatching its messages, so
// that its windows stay alive and calls into it arrive, those too that what it waits for may make.
#pragma once

#include <windows.h>

namespace smh {

// Waits for a handle for at most `timeout` milliseconds and answers as WaitForSingleObject. On a thread of a
// single-threaded apartment, and only there, messages are dispatched meanwhile; one that asks to quit is kept
// for the host's loop.
DWORD WaitPatiently(HANDLE object, DWORD timeout) noexcept;

}  // namespace smh
