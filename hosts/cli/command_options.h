// The options of the commands: what each bit of a command's row declares to the parser, and the arguments
// that are made of what was given. For the one thread of the program.
#pragma once

#include "hosts/cli/arguments.h"

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace CLI {
class App;
}

namespace smh {

// What the parser fills, in its encoding; of all commands, because one is parsed.
struct OptionValues {
  std::vector<std::string> items, locations, paths, columns, only, ids, ratings;
  std::string target, name, command, output, company, match, since, from, file, file2, input, language;
  unsigned seconds = 0, keep = 0, days = 0, limit = 0;
  bool show = false, force = false, yes = false, quiet = false, deleteOthers = false;
  bool all = false, enabled = false, disabled = false, json = false, csv = false;
  bool missing = false, unreachable = false, dryRun = false;
  bool starts = false, notStarting = false, likeTaskManager = false, verify = false, prune = false;
};

// --language, which the program itself and every command take; what it says is looked up before
// (language_option.h).
void DeclareLanguage(CLI::App& parser, OptionValues& values);
// Declares the options of a command, bits of CommandOption; `values` lives as long as the parser.
void DeclareOptions(CLI::App& parser, std::uint64_t options, OptionValues& values);
// What a parsed command was given. Raises a usage error for a value that does not fit.
Arguments TakeArguments(const OptionValues& values, const CLI::App& parser, std::uint64_t options);

// Arguments as the parser has to see them, in the order that it wants: last first. Each comes out of it as it
// was given, unit by unit.
std::vector<std::string> EncodeArguments(std::span<const std::wstring> arguments);
// One of them, or the parser's text about one.
std::wstring DecodeArgument(std::string_view bytes);

}  // namespace smh
