// Standard output and standard error: UTF-16 on a console, UTF-8 in files and pipes.
//
// Output belongs to standard output and nothing else does; errors and progress go to standard error.
//
// For the one thread of the program.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace smh {

// Cells of a line of the window of the console behind standard output, less the last one, which would begin a
// new line; 0 when that is a file or a pipe.
std::size_t ConsoleWidth() noexcept;

// Writes through to standard output, as it is. Raises HostError when that is closed or full; a part may have
// been written.
void WriteOutput(std::wstring_view text);

// Writes "startupctl: `text`" and a line break to standard error, what cannot be printed escaped. A failure
// is ignored: nobody is left to hear of it.
void WriteMessage(std::wstring_view text) noexcept;

}  // namespace smh
