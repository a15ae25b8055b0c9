// The trace file "debug.log" in the "Logs" folder of the data folder: UTF-16LE with a byte-order mark and
// CRLF line ends, only ever appended to, also by several processes at once.
#pragma once

#include "infra/runtime/critical_section.h"
#include "infra/runtime/handle.h"

#include <string_view>

namespace smh {

// Any thread may call it; lines of several processes do not mix.
class TraceFile {
 public:
  // Appends one line, which holds no line end, and makes folders and file with the first one. Raises
  // EOSError: a file that could not be opened is tried again with the next line, one that could not be
  // written to stays open.
  void Append(std::wstring_view line);

 private:
  // A leaf, held while a line is written.
  CriticalSection lock_;
  ScopedHandle file_;
};

}  // namespace smh
