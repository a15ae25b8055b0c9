// The syntax of the command line: `startupctl COMMAND [OPTIONS] [ITEM...]`, with the options that the
// command's table row takes. For the one thread of the program.
#pragma once

#include "hosts/cli/arguments.h"
#include "hosts/cli/commands/commands.h"
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

// The command and its arguments, or the help text or the version that was asked for. `arguments` are those
// after the program's name. Raises a usage error for anything that does not fit; it says which help to read
// and what was probably meant. Texts come through unit by unit, unpaired surrogates included.
std::variant<Invocation, std::wstring> ParseCommandLine(std::span<const std::wstring> arguments);

// A usage error of the command, by its name, with the line that names its help.
HostError WithHelpHint(HostError error, std::string_view command);

// One option as --help shows it: "--location".
struct OptionSyntax {
  std::string name;
  std::string help;
  // "LOCATION"; empty for an option without a value.
  std::string valueName;
};
// A command that --help names, with its options. The first one, without a name, has those of no command.
struct CommandSyntax {
  std::string name;
  std::string help;
  std::vector<OptionSyntax> options;
};
std::vector<CommandSyntax> CommandSyntaxes();

}  // namespace smh
