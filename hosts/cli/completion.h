// Scripts by which a shell completes commands and options.
#pragma once

#include <span>
#include <string>
#include <vector>

namespace smh {

// One option as --help shows it: "--location".
struct OptionSyntax {
  std::string name;
  std::string help;
  // "LOCATION"; empty for an option without a value.
  std::string valueName;
};
// A command with its options.
struct CommandSyntax {
  std::string name;
  std::string help;
  std::vector<OptionSyntax> options;
};
// A PowerShell script of ASCII letters, to be run in a profile: completes the commands and their options, and
// the names of locations behind --location and --to. Pure, for any thread.
std::wstring PowerShellCompletion(std::span<const CommandSyntax> commands);

}  // namespace smh
