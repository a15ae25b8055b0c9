// Calls of ntdll that the headers of the tool chain leave out: the only ones that tell a key's real name, and
// that reach values whose names hold NULs, and how the system compares names.
#pragma once

#include <windows.h>
#include <winternl.h>

extern "C" {

// As Windows documents them for drivers (ZwQueryKey and so on), here on handles of registry keys. Sizes are
// bytes; names are counted.
NTSTATUS NTAPI NtQueryKey(HANDLE key, int informationClass, void* information, ULONG size, ULONG* needed);
NTSTATUS NTAPI NtSetValueKey(HANDLE key, UNICODE_STRING* name, ULONG titleIndex, ULONG type, const void* data,
                             ULONG size);
NTSTATUS NTAPI NtDeleteValueKey(HANDLE key, UNICODE_STRING* name);
WCHAR NTAPI RtlUpcaseUnicodeChar(WCHAR unit);
}

namespace smh {

// Answers a 32-bit length in bytes and the name behind it.
inline constexpr int KeyNameInformationClass = 3;

}  // namespace smh
