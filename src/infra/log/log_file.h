// Writing of the log file. kernel32 alone and no allocation: it also serves a process that is ending.
#pragma once

#include "infra/log/log_text.h"

#include <string>

namespace smh {

// Where a log goes: the file, by its full path, and the name under which it is written first, in the same
// folder.
struct LogFileNames {
  std::wstring file;
  std::wstring unfinished;
};

// Makes missing folders, writes the text as UTF-16LE with byte order mark under the unfinished name, and puts
// that file in the place of the old one; when that name cannot be used, writes over the file itself. False
// when neither works. Changes the texts of `names` for the time of the call. The caller keeps others from
// `text` meanwhile.
bool WriteLogFile(LogFileNames& names, const LogText& text) noexcept;

}  // namespace smh
