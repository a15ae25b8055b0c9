// Scripts by which a shell completes commands and options.
#pragma once

#include "hosts/cli/command_line.h"

#include <span>
#include <string>

namespace smh {

// A PowerShell script of ASCII letters, to be run in a profile: completes the commands and their options, and
// the names of locations behind --location and --to. Pure, for any thread.
std::wstring PowerShellCompletion(std::span<const CommandSyntax> commands);

}  // namespace smh
