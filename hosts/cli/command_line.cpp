#include "hosts/cli/command_line.h"

#include "hosts/common/host_error.h"
#include "hosts/common/location_names.h"
#include "hosts/common/text_encoding.h"
#include "infra/runtime/text.h"

#include <CLI/CLI.hpp>

#include <memory>

namespace smh {

namespace {

// In front of an argument that the parser must take as it is: it treats an empty value as missing and one in
// brackets as a list.
constexpr char kLiteral = '\x01';

std::string EncodeArgument(std::wstring_view argument) {
  std::string bytes = ToUtf8(argument);
  if (bytes.empty() || bytes.front() == kLiteral || bytes.front() == '[')
    bytes.insert(bytes.begin(), kLiteral);
  return bytes;
}

std::wstring DecodeArgument(std::string_view bytes) {
  if (!bytes.empty() && bytes.front() == kLiteral) bytes.remove_prefix(1);
  return FromUtf8(bytes);
}

// In the order that the parser wants: last first.
std::vector<std::string> EncodeArguments(std::span<const std::wstring> arguments) {
  std::vector<std::string> encoded;
  bool optionsEnded = false;
  for (const std::wstring& argument : arguments) {
    const bool emptyValue = !optionsEnded && argument.starts_with(L"--") && argument.ends_with(L'=');
    optionsEnded = optionsEnded || argument == L"--";
    encoded.push_back(EncodeArgument(emptyValue ? argument.substr(0, argument.size() - 1) : argument));
    if (emptyValue) encoded.push_back(EncodeArgument(L""));
  }
  return {encoded.rbegin(), encoded.rend()};
}

// The options of one command as the parser fills them.
struct RawArguments {
  std::vector<std::string> items;
  std::vector<std::string> locations;
  std::vector<std::string> paths;
  std::string target;
  std::string name;
  std::string command;
  unsigned seconds = 0;
  unsigned id = 0;
  bool show = false, force = false;
  bool all = false, enabled = false, disabled = false, json = false, csv = false;
};

// What the command works on.
void DeclareSubject(CLI::App& app, std::uint32_t options, RawArguments& raw) {
  if (options & kTakesOneItem) {
    app.add_option("ITEM", raw.items, "Name of an entry, or a caption that only one entry has")
        ->required()
        ->expected(1);
  }
  if (options & kTakesItems) {
    app.add_option("ITEM", raw.items, "Names of entries, or captions that only one entry has")->required();
  }
  if (options & kTakesCommandLine) {
    app.add_option("COMMANDLINE", raw.items, "A command line, as one argument")->required()->expected(1);
  }
  if (options & (kTakesId | kNeedsId)) {
    app.add_option("ID", raw.id, "A checkpoint's number, see the command checkpoints")
        ->required((options & kNeedsId) != 0)
        ->check(CLI::PositiveNumber);
  }
  if (options & kTakesPaths) {
    app.add_option("--add", raw.paths, "Also show the program of that path")
        ->allow_extra_args(false)
        ->type_name("PATH");
  }
}

void DeclareLocation(CLI::App& app, std::uint32_t options, RawArguments& raw) {
  if (options & (kTakesLocations | kTakesLocation | kNeedsLocation)) {
    CLI::Option* const location =
        app.add_option("--location", raw.locations, "A location's name, see the command locations")
            ->allow_extra_args(false)
            ->type_name("NAME");
    if (!(options & kTakesLocations)) location->expected(1);
    if (options & kNeedsLocation) location->required();
  }
}

// What is shown, how and for how long.
void DeclareShowing(CLI::App& app, std::uint32_t options, RawArguments& raw) {
  if (options & kTakesFilter) {
    app.add_flag("--all", raw.all, "All locations, not only the usual ones");
    CLI::Option* const enabled = app.add_flag("--enabled", raw.enabled, "Only enabled entries");
    app.add_flag("--disabled", raw.disabled, "Only disabled entries")->excludes(enabled);
  }
  CLI::Option* json = nullptr;
  if (options & kTakesJson) json = app.add_flag("--json", raw.json, "As JSON");
  if (options & kTakesCsv) app.add_flag("--csv", raw.csv, "As CSV")->excludes(json);
  if (options & kTakesSeconds) app.add_option("--seconds", raw.seconds, "End after that time");
}

// What a change makes of it.
void DeclareChange(CLI::App& app, std::uint32_t options, RawArguments& raw) {
  if (options & kNeedsName) app.add_option("--name", raw.name, "Name of the new entry")->required();
  if (options & kNeedsCommand) app.add_option("--command", raw.command, "A command line")->required();
  if (options & kNeedsTarget) app.add_option("--to", raw.target, "A location's name")->required();
  if (options & kTakesUndoMode) {
    CLI::Option* const show = app.add_flag("--show", raw.show, "Only say what it would do, step by step");
    app.add_flag("--force", raw.force, "Over later changes too, and say what was overwritten")
        ->excludes(show);
  }
}

void Declare(CLI::App& app, std::uint32_t options, RawArguments& raw) {
  DeclareSubject(app, options, raw);
  DeclareLocation(app, options, raw);
  DeclareShowing(app, options, raw);
  DeclareChange(app, options, raw);
}

std::int32_t ParseLocation(std::string_view bytes) {
  const std::wstring name = DecodeArgument(bytes);
  const auto location = LocationByName(name);
  if (!location) {
    throw UsageError(L"There is no location \"" + name + L"\"; the command locations lists them.");
  }
  return *location;
}

Arguments Convert(const RawArguments& raw, const CLI::App& app, std::uint32_t options) {
  Arguments arguments;
  for (const std::string& item : raw.items) arguments.items.push_back(DecodeArgument(item));
  for (const std::string& location : raw.locations) arguments.locations.push_back(ParseLocation(location));
  for (const std::string& path : raw.paths) {
    arguments.paths.push_back(DecodeArgument(path));
    if (Trim(arguments.paths.back()).empty()) throw UsageError(L"The path is empty.");
  }
  if (options & kNeedsTarget) arguments.target = ParseLocation(raw.target);
  arguments.name = DecodeArgument(raw.name);
  arguments.command = DecodeArgument(raw.command);
  if (options & kNeedsName && arguments.name.empty()) throw UsageError(L"The name is empty.");
  if (options & kNeedsCommand && arguments.command.empty()) throw UsageError(L"The command is empty.");
  arguments.id = raw.id;
  arguments.show = raw.show;
  arguments.force = raw.force;
  arguments.all = raw.all;
  if (raw.enabled || raw.disabled) arguments.enabled = raw.enabled;
  if (raw.json) arguments.format = OutputFormat::kJson;
  if (raw.csv) arguments.format = OutputFormat::kCsv;
  if (options & kTakesSeconds && app.count("--seconds") != 0) arguments.seconds = raw.seconds;
  return arguments;
}

// The parser would only say that some command is missing.
void RefuseUnknownCommand(std::span<const std::wstring> arguments) {
  if (arguments.empty() || arguments.front().starts_with(L'-')) return;
  const std::string name = ToUtf8(arguments.front());
  for (const Command& command : AllCommands()) {
    if (command.name == name) return;
  }
  throw UsageError(L"There is no command \"" + arguments.front() + L"\".\nSee startupctl --help.");
}

}  // namespace

std::variant<Invocation, std::wstring> ParseCommandLine(std::span<const std::wstring> arguments) {
  RefuseUnknownCommand(arguments);
  CLI::App app("Lists and manages what Windows starts automatically.", "startupctl");
  app.require_subcommand(1);
  // A value name may begin with a slash.
  app.allow_windows_style_options(false);
  RawArguments raw;
  std::vector<std::pair<const Command*, CLI::App*>> parsers;
  for (const Command& command : AllCommands()) {
    CLI::App* const parser = app.add_subcommand(std::string(command.name), std::string(command.help));
    if (command.options & kHidden) parser->group("");
    Declare(*parser, command.options, raw);
    parsers.emplace_back(&command, parser);
  }
  try {
    app.parse(EncodeArguments(arguments));
    for (const auto& [command, parser] : parsers) {
      if (parser->parsed()) return Invocation{command, Convert(raw, *parser, command->options)};
    }
  } catch (const CLI::CallForHelp&) {
    return FromUtf8(app.help());
  } catch (const CLI::ParseError& error) {
    throw UsageError(DecodeArgument(error.what()) + L"\nSee startupctl --help.");
  }
  throw UsageError(L"No command was given.");
}

}  // namespace smh
