// The syntax of the command line.
#pragma once

#include "hosts/cli/arguments.h"
#include "hosts/cli/commands/commands.h"

#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace smh {

struct Invocation {
  const Command* command;
  Arguments arguments;
};

// The command and its arguments, or a help text that was asked for. `arguments` are those after the program's
// name. Raises a usage error for anything that does not fit.
std::variant<Invocation, std::wstring> ParseCommandLine(std::span<const std::wstring> arguments);

}  // namespace smh
