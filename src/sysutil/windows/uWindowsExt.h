// Processes, window titles, waits and ticks. What not every Windows offers is resolved at run time; all
// operations may be called from any thread.
#pragma once

#include <windows.h>
#include <wtsapi32.h>

#include <span>
#include <string>

namespace smh {

namespace WindowsExt {

// Empty when the window has no title or it cannot be read.
std::wstring GetWindowCaption(HWND window);
// In device form ("\Device\HarddiskVolume1\..."). `process` is open for queries. Raises EOSError.
std::wstring GetProcessImageFileName(HANDLE process);
// The full path of a module of a process, of its program for a null module. Raises EOSError, for every
// 64-bit process among others.
std::wstring GetModuleFileNameEx(HANDLE process, HMODULE module);
// As WTSEnumerateProcessesW; the caller frees the list with FreeWtsMemory. Raises EOSError.
void EnumerateProcesses(HANDLE server, DWORD reserved, DWORD version, WTS_PROCESS_INFOW*& info, DWORD& count);
// Frees and clears a list of EnumerateProcesses, without failure; null is allowed.
void FreeWtsMemory(WTS_PROCESS_INFOW*& info);
// As WaitForMultipleObjects: at most MAXIMUM_WAIT_OBJECTS handles, `timeout` in milliseconds.
DWORD WaitForObjects(std::span<const HANDLE> handles, bool waitAll, DWORD timeout) noexcept;
// Milliseconds since `start`, a value of GetTickCount; one short, on purpose, when the counter has wrapped.
DWORD TickDiff(DWORD start) noexcept;

}  // namespace WindowsExt

// Frees the libraries the entry points came from; no other thread may use them meanwhile. A module's stop
// calls it; there is no start, because programs that have no start-up table use this as well.
void ForgetWindowsExt() noexcept;

}  // namespace smh
