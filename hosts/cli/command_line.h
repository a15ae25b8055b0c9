// The syntax of the command line: `startupctl COMMAND [OPTIONS] [ITEM...]`, with the options that the
// command's table row takes.
#pragma once

#include "hosts/cli/arguments.h"
#include "hosts/cli/commands/commands.h"

#include <span>
#include <string>
#include <string_view>
#include <variant>

namespace smh {

// A command of AllCommands, which lives for ever, with what it was given.
struct Invocation {
  const Command* command;
  Arguments arguments;
};

// The command and its arguments, or a help text that was asked for. `arguments` are those after the program's
// name. Raises a usage error for anything that does not fit. Texts come through unit by unit, unpaired
// surrogates included.
std::variant<Invocation, std::wstring> ParseCommandLine(std::span<const std::wstring> arguments);

}  // namespace smh
