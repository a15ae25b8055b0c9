// What runs when the program of a command only runs something else that the command names: a library through
// rundll32, a program or script through cmd, a script through powershell, wscript and cscript, a package
// through msiexec.
//
// What is told is what certainly runs, because people decide by it whether to trust the entry: where a
// command chains several programs, holds code of its own, or passes something on in a way that is not known
// here, no file is told; nor where the program only bears the name of one of these and lies elsewhere. Any
// thread may call these; they touch disk and registry, without a lock, and raise EAbort once the thread's
// reading pass was asked to end, what the services raise, and std::bad_alloc.
#pragma once

#include "core/contracts/shared_text.h"

#include <functional>
#include <string>
#include <string_view>

namespace smh {

struct ItemDetails;

struct StartedThrough {
  // The command's program, if that runs something else; else empty.
  SharedText program;
  // The full path of the existing file that it runs; empty when that cannot be told.
  SharedText file;
};

// `program` is the file that the command line's program part resolves to.
StartedThrough WhatIsStarted(const SharedText& program, const SharedText& command);
// Puts that, and how the file stands, into the details.
void TakeStartedThrough(const SharedText& program, const SharedText& command, ItemDetails& details);

// Whether `shortName` is that of the program that commands start a library through.
bool IsRundll(std::wstring_view shortName) noexcept;

// The file that stands for such a command in the list: the last existing one among its arguments, the
// entry-point name after the library left out; empty when there is none. Pure: `existingFile` answers the
// existing file that an argument names, or "", and what it raises passes.
std::wstring RundllTarget(std::wstring_view command,
                          const std::function<std::wstring(std::wstring_view)>& existingFile);
// Its full path when the command's program is such a one, else empty.
SharedText RundllFileOf(const SharedText& program, const SharedText& command);

}  // namespace smh
