// Standard output and standard error: UTF-16 on a console, UTF-8 in files and pipes.
//
// Output belongs to standard output and nothing else does; errors and progress go to standard error.
//
// For the one thread of the program.
#pragma once

#include "infra/runtime/handle.h"

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

namespace smh {

// Cells of a line of the window of the console behind standard output, less the last one, which would begin a
// new line; 0 when the output goes to a file or a pipe.
std::size_t ConsoleWidth() noexcept;

// Whether output may be toned (table_output.h): on a console, unless the environment variable NO_COLOR holds
// anything. What is written to a console has its tones as attributes, whether or not it knows their
// sequences.
bool WantsColours() noexcept;

// While an object lives, output goes to a file instead of standard output. One at a time.
class OutputFile {
 public:
  // The file is made, or emptied, by the first output: a command that fails before leaves it as it was. With
  // `hasMark` the bytes of UTF-8's mark come first, by which spreadsheets know it.
  OutputFile(std::wstring path, bool hasMark);
  ~OutputFile();
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;

  // Appends. Raises HostError when the file cannot be made or written.
  void Write(std::wstring_view text);

 private:
  std::wstring path_;
  bool hasMark_;
  ScopedHandle file_;
};

// Writes through to the output, as it is. Raises HostError when that is full or cannot be written; a part may
// have been written. Into a pipe that its reader has closed nothing is written any more, and that is no
// failure: who stops reading has what it wanted, and a change that is told of goes on.
void WriteOutput(std::wstring_view text);
// Whether an output has found its pipe closed: what only prints may end then.
bool IsOutputClosed() noexcept;

// Keeps messages away that tell of no failure, from now on.
void BeQuiet() noexcept;
// Writes "startupctl: `text`" and the lines to standard error, each made printable, unless BeQuiet was
// called. A failure is ignored here and below: nobody is left to hear of it.
void WriteMessage(std::wstring_view text, std::span<const std::wstring> lines = {}) noexcept;
// The same for a failure, quiet or not.
void WriteFailure(std::wstring_view text) noexcept;
// The same of a text whose lines are printable, as that of a HostError.
void WriteError(std::wstring_view printableLines) noexcept;

}  // namespace smh
