// Files read whole into memory. No state; any thread, one at a time per handle.
#pragma once

#include <windows.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace smh {

// The size of an open file in bytes; none when the system does not tell, and the thread's last error says
// why.
std::optional<std::uint64_t> SizeOfOpenFile(HANDLE file) noexcept;

// Fills `bytes` from the file's current place with one read, and answers how many came: fewer only at the end
// of the file. At most 2 GB. Raises EOSError.
std::size_t ReadBytes(HANDLE file, std::span<std::byte> bytes);
// The same for a file that nobody can have shortened: raises EOSError, ERROR_HANDLE_EOF, when fewer came.
void ReadAllBytes(HANDLE file, std::span<std::byte> bytes);

// The bytes of an open file from its beginning, where its place must be, as they are at its size now: fewer
// when somebody shortens it meanwhile. Raises EOSError, ERROR_FILE_TOO_LARGE for a file of more than `cap`
// bytes before anything is allocated or read.
std::vector<std::byte> ReadOpenFile(HANDLE file, std::uint64_t cap);

// The bytes of a file, opened with FILE_SHARE_... `sharing`. Raises EOSError as above, and when the file
// cannot be opened; without FILE_SHARE_WRITE in `sharing`, by which nobody may shorten it, ERROR_HANDLE_EOF
// when fewer came than its size says.
std::string ReadWholeFile(const std::wstring& path, DWORD sharing, std::uint64_t cap);

}  // namespace smh
