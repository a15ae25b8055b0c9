// Standard output and standard error: UTF-16 on a console, UTF-8 in files and pipes.
//
// Output belongs to standard output and nothing else does; errors and progress go to standard error.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace smh {

// Cells of a line of the console behind standard output; 0 when that is a file or a pipe.
std::size_t ConsoleWidth() noexcept;

// Writes through to standard output. Raises HostError when that is closed.
void WriteOutput(std::wstring_view text);

// Writes "startupctl: `text`" and a line break to standard error, what cannot be printed escaped.
void WriteMessage(std::wstring_view text) noexcept;

}  // namespace smh
