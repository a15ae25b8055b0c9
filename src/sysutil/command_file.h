// The one way from a command line to the file it starts, shared by all that show or start one.
#pragma once

#include "sysutil/uFileUtils.h"

namespace smh {

// Splits the command, normalises the program part, searches a bare name, and maps redirected folders. The
// path need not exist. `command` is terminated.
CommandParts ResolveCommand(const wchar_t* command);
// The path alone.
SharedText ResolveCommandToFile(const wchar_t* command);

}  // namespace smh
