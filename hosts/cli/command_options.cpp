#include "hosts/cli/command_options.h"

#include "hosts/cli/commands/commands.h"
#include "hosts/cli/suggestion.h"
#include "hosts/common/host_error.h"
#include "hosts/common/location_names.h"
#include "hosts/common/text_encoding.h"
#include "infra/runtime/text.h"

#include <CLI/CLI.hpp>

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

// What the command works on.
void DeclareSubject(CLI::App& app, std::uint64_t options, OptionValues& values) {
  if (options & kTakesOneItem) {
    app.add_option("ITEM", values.items, "Name or id of an entry, or a caption that only one entry has")
        ->required()
        ->expected(1);
  }
  if (options & kTakesSelection) {
    app.add_option(
        "ITEM", values.items,
        "Names, captions or ids of entries, or patterns with * and ?; without any, what filters leave");
  }
  if (options & kTakesCommandLine) {
    app.add_option("COMMANDLINE", values.items, "A command line, as one argument")->required()->expected(1);
  }
  if (options & (kTakesId | kNeedsId)) {
    app.add_option("ID", values.ids, "A checkpoint's number, see the command checkpoints")
        ->required((options & kNeedsId) != 0)
        ->expected(1);
  }
  if (options & kTakesIds) {
    app.add_option("ID", values.ids, "Checkpoints' numbers, see the command checkpoints");
  }
  if (options & kNeedsFile) app.add_option("FILE", values.file, "A snapshot")->required();
  if (options & kTakesFile2) {
    app.add_option("FILE2", values.file2, "A later one, in place of this machine");
  }
  if (options & kTakesInput) {
    app.add_option("--input", values.input, "Properties of an entry")->type_name("JSON");
  }
  if (options & kTakesPaths) {
    app.add_option("--add", values.paths, "Also show the program of that path")
        ->allow_extra_args(false)
        ->type_name("PATH");
  }
}

void DeclareLocation(CLI::App& app, std::uint64_t options, OptionValues& values) {
  if (options & (kTakesLocations | kTakesLocation | kNeedsLocation)) {
    CLI::Option* const location =
        app.add_option("--location", values.locations, "A location's name, see the command locations")
            ->allow_extra_args(false)
            ->type_name("LOCATION");
    if (!(options & kTakesLocations)) location->expected(1);
    if (options & kNeedsLocation) location->required();
  }
}

// Which entries are meant, besides --location.
void DeclareFilters(CLI::App& app, OptionValues& values) {
  const auto text = [&](const char* name, std::string& value, const char* type, const char* help) {
    app.add_option(name, value, help)->type_name(type);
  };
  CLI::Option* const enabled = app.add_flag("--enabled", values.enabled, "Only enabled entries");
  app.add_flag("--disabled", values.disabled, "Only disabled entries")->excludes(enabled);
  CLI::Option* const starts = app.add_flag("--starts", values.starts, "Only those that Windows starts");
  app.add_flag("--not-starting", values.notStarting, "Only those that Windows does not start, for any reason")
      ->excludes(starts);
  app.add_option("--rating", values.ratings, "Only trusted, unknown or risky ones")
      ->allow_extra_args(false)
      ->type_name("RATING");
  text("--company", values.company, "TEXT", "Only those with that in their company's name");
  app.add_flag("--missing", values.missing, "Only those whose file is missing");
  app.add_flag("--unreachable", values.unreachable, "Only those whose file's share or drive does not answer");
  text("--match", values.match, "TEXT", "Only those with that in any column");
  text("--since", values.since, "TIME",
       "Only those whose file was written since: 2024-05-31T18:00, or 36h, 7d");
  text("--from", values.from, "FILE", "Only those that the file names, one a line; - is standard input");
}

// What is shown and for how long.
void DeclareShowing(CLI::App& app, std::uint64_t options, OptionValues& values) {
  if (options & kTakesVerify) {
    app.add_flag("--verify", values.verify, "Also say who signed the files, and whether that is proved");
  }
  if (options & kTakesAll) app.add_flag("--all", values.all, "All locations, not only the usual ones");
  if (options & kTakesSelection) DeclareFilters(app, values);
  if (options & kTakesLimit) {
    app.add_option("--limit", values.limit, "At most so many")->type_name("COUNT");
  }
  if (options & kTakesSeconds) {
    app.add_option("--seconds", values.seconds, "End after that time")->type_name("SECONDS");
  }
}

// How it is shown.
void DeclareFormat(CLI::App& app, std::uint64_t options, OptionValues& values) {
  CLI::Option* json = nullptr;
  if (options & kTakesJson) json = app.add_flag("--json", values.json, "As JSON");
  if (options & kTakesCsv) app.add_flag("--csv", values.csv, "As CSV")->excludes(json);
  if (options & kTakesColumns) {
    app.add_option("--columns", values.columns, "Only these keys, in this order, separated by commas")
        ->allow_extra_args(false)
        ->type_name("KEYS");
  }
  if (options & kTakesOutput) {
    app.add_option("--output", values.output, "Into that file instead of standard output")->type_name("FILE");
  }
  app.add_flag("--quiet", values.quiet, "Only tell of failures");
}

// What a change makes of it.
void DeclareChange(CLI::App& app, std::uint64_t options, OptionValues& values) {
  if (options & kNeedsName) {
    app.add_option("--name", values.name, "Name of the new entry")->required()->type_name("NAME");
  }
  if (options & kNeedsCommand) {
    app.add_option("--command", values.command, "A command line")->required()->type_name("COMMANDLINE");
  }
  if (options & kNeedsTarget) {
    app.add_option("--to", values.target, "A location's name")->required()->type_name("LOCATION");
  }
  if (options & kTakesUndoMode) {
    CLI::Option* const show = app.add_flag("--show", values.show, "Only say what it would do, step by step");
    app.add_flag("--force", values.force, "Over later changes too, and say what was overwritten")
        ->excludes(show);
  }
  if (options & kTakesOnly) {
    app.add_option("--only", values.only, "Only this part: its number, or the entry that its title names")
        ->allow_extra_args(false)
        ->type_name("ITEM");
  }
  if (options & kTakesPruning) {
    app.add_option("--keep", values.keep, "All but the newest so many")->type_name("COUNT");
    app.add_option("--days", values.days, "Those that are older than so many days")->type_name("DAYS");
  }
  if (options & kTakesPruneSwitch) {
    app.add_flag("--prune", values.prune, "Take away the switches that belong to no entry");
  }
  if (options & kTakesSwitch) {
    app.add_flag("--like-task-manager", values.likeTaskManager,
                 "Leave them there, and use Task Manager's switch");
  }
  if (options & kTakesDryRun) app.add_flag("--dry-run", values.dryRun, "Only say what would be done");
  if (options & kTakesDeleteOthers) {
    app.add_flag("--delete-others", values.deleteOthers, "Delete the entries that it lacks");
  }
  if (options & kTakesYes) app.add_flag("--yes", values.yes, "Without a question");
}

std::int32_t ParseLocation(std::string_view bytes) {
  const std::wstring name = DecodeArgument(bytes);
  if (const auto location = LocationByName(name)) return *location;
  std::vector<std::wstring> known;
  for (std::int32_t location = kFirstLocation; location <= kLastLocation; ++location) {
    known.emplace_back(LocationName(location));
  }
  throw UsageError(L"There is no location \"" + name + L"\"; the command locations lists them." +
                   DidYouMean(name, known));
}

std::uint32_t ParseId(std::string_view bytes) {
  const std::wstring text = DecodeArgument(bytes);
  if (text.empty() || text.find_first_not_of(L"0123456789") != std::wstring::npos) {
    throw UsageError(L"\"" + text +
                     L"\" is not a number; the command checkpoints lists those of checkpoints.");
  }
  const unsigned long long id = text.size() > 10 ? 0 : wcstoull(text.c_str(), nullptr, 10);
  if (id == 0 || id > 0xFFFFFFFFull) throw UsageError(L"There is no checkpoint " + text + L".");
  return static_cast<std::uint32_t>(id);
}

void TakeNames(const std::vector<std::string>& lists, std::vector<std::wstring>& names) {
  for (const std::string& list : lists) {
    const std::wstring text = DecodeArgument(list);
    for (std::size_t begin = 0; begin <= text.size();) {
      const std::size_t end = std::min(text.find(L',', begin), text.size());
      names.push_back(Trim(std::wstring_view(text).substr(begin, end - begin)));
      begin = end + 1;
    }
  }
}

// What has no value of its own that says that it was not given.
template <typename Value>
std::optional<Value> Given(const CLI::App& parser, const char* option, bool isTaken, Value value) {
  return isTaken && parser.count(option) != 0 ? std::optional(value) : std::nullopt;
}

void TakeSubject(const OptionValues& values, Arguments& arguments) {
  for (const std::string& item : values.items) arguments.items.push_back(DecodeArgument(item));
  for (const std::string& location : values.locations) arguments.locations.push_back(ParseLocation(location));
  for (const std::string& id : values.ids) arguments.ids.push_back(ParseId(id));
  for (const std::string& part : values.only) arguments.only.push_back(DecodeArgument(part));
  for (const std::string* const file : {&values.file, &values.file2}) {
    if (!file->empty()) arguments.files.push_back(DecodeArgument(*file));
  }
  for (const std::string& path : values.paths) {
    arguments.paths.push_back(DecodeArgument(path));
    if (Trim(arguments.paths.back()).empty()) throw UsageError(L"The path is empty.");
  }
}

std::int32_t ParseRating(std::string_view bytes) {
  const std::wstring name = DecodeArgument(bytes);
  if (const auto rating = RatingByName(name)) return *rating;
  throw UsageError(L"There is no rating \"" + name + L"\": it is trusted, unknown or risky.");
}

double ParseSince(std::string_view bytes) {
  const std::wstring text = DecodeArgument(bytes);
  if (const auto time = ParseTime(text)) return *time;
  throw UsageError(L"\"" + text +
                   L"\" is no time: 2024-05-31 or 2024-05-31T18:00, or 90m, 36h, 7d, 2w before now.");
}

// A text that would leave everything is none that was meant.
std::wstring ParseText(const CLI::App& parser, const char* option, std::string_view bytes) {
  std::wstring text = DecodeArgument(bytes);
  if (text.empty() && parser.count(option) != 0) {
    throw UsageError(L"The text of " + FromUtf8(option) + L" is empty.");
  }
  return text;
}

void TakeFilters(const OptionValues& values, const CLI::App& parser, Arguments& arguments) {
  if (values.enabled || values.disabled) arguments.enabled = values.enabled;
  if (values.starts || values.notStarting) arguments.starts = values.starts;
  for (const std::string& rating : values.ratings) arguments.ratings.push_back(ParseRating(rating));
  arguments.company = ParseText(parser, "--company", values.company);
  arguments.match = ParseText(parser, "--match", values.match);
  arguments.from = ParseText(parser, "--from", values.from);
  if (values.missing) arguments.reachabilities.push_back(kFileMissing);
  if (values.unreachable) arguments.reachabilities.push_back(kFileUnreachable);
  if (parser.count("--since") != 0) arguments.since = ParseSince(values.since);
}

}  // namespace

void DeclareOptions(CLI::App& parser, std::uint64_t options, OptionValues& values) {
  DeclareSubject(parser, options, values);
  DeclareLocation(parser, options, values);
  DeclareShowing(parser, options, values);
  DeclareFormat(parser, options, values);
  DeclareChange(parser, options, values);
}

Arguments TakeArguments(const OptionValues& values, const CLI::App& parser, std::uint64_t options) {
  Arguments arguments;
  TakeSubject(values, arguments);
  if (options & kNeedsTarget) arguments.target = ParseLocation(values.target);
  arguments.name = DecodeArgument(values.name);
  arguments.command = DecodeArgument(values.command);
  if (options & kNeedsName && arguments.name.empty()) throw UsageError(L"The name is empty.");
  if (options & kNeedsCommand && arguments.command.empty()) throw UsageError(L"The command is empty.");
  arguments.show = values.show;
  arguments.force = values.force;
  arguments.yes = values.yes;
  arguments.deleteOthers = values.deleteOthers;
  arguments.quiet = values.quiet;
  arguments.all = values.all;
  arguments.dryRun = values.dryRun;
  arguments.likeTaskManager = values.likeTaskManager;
  arguments.verify = values.verify;
  arguments.prune = values.prune;
  if (options & kTakesSelection) TakeFilters(values, parser, arguments);
  if (values.json) arguments.format = OutputFormat::kJson;
  if (values.csv) arguments.format = OutputFormat::kCsv;
  arguments.input = Given(parser, "--input", (options & kTakesInput) != 0, DecodeArgument(values.input));
  arguments.seconds = Given(parser, "--seconds", (options & kTakesSeconds) != 0, values.seconds);
  arguments.limit = Given(parser, "--limit", (options & kTakesLimit) != 0, values.limit);
  arguments.keep = Given(parser, "--keep", (options & kTakesPruning) != 0, values.keep);
  arguments.days = Given(parser, "--days", (options & kTakesPruning) != 0, values.days);
  TakeNames(values.columns, arguments.columns);
  const bool isChange = (options & kTakesSelection) != 0 && (options & kTakesDryRun) != 0;
  if (isChange && arguments.NamesNothing()) throw UsageError(L"Which entries? Give an ITEM or a filter.");
  arguments.output = DecodeArgument(values.output);
  if (options & kTakesOutput && parser.count("--output") != 0 && arguments.output.empty()) {
    throw UsageError(L"The name of the output file is empty.");
  }
  return arguments;
}

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

std::wstring DecodeArgument(std::string_view bytes) {
  if (!bytes.empty() && bytes.front() == kLiteral) bytes.remove_prefix(1);
  return FromUtf8(bytes);
}

}  // namespace smh
