// The syntax of the command line: `startupctl COMMAND [OPTIONS] [ITEM...]`, with the options that the
// command's table row takes. For the one thread of the program.
#pragma once

#include "hosts/cli/arguments.h"
#include "hosts/cli/commands/commands.h"
#include "hosts/cli/completion.h"
#include "hosts/common/host_error.h"

#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace smh {

// A command of AllCommands, which lives for ever, with what it was given.
struct Invocation {
  const Command* command;
  Arguments arguments;
};

// The command and its arguments, or the text that was asked for: help, the version, or a script for
// completion. `arguments` are those after the program's name. Raises a usage error for anything that does not
// fit; it says which help to read and what was probably meant. Texts come through unit by unit, unpaired
// surrogates included.
std::variant<Invocation, std::wstring> ParseCommandLine(std::span<const std::wstring> arguments);

// A usage error of the command, by its name, with the line that names its help.
HostError WithHelpHint(HostError error, std::string_view command);

// The commands that --help names. The first one, without a name, has the options of no command.
std::vector<CommandSyntax> CommandSyntaxes();

}  // namespace smh
