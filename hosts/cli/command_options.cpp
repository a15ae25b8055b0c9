#include "hosts/cli/command_options.h"

#include "hosts/cli/commands/commands.h"
#include "hosts/cli/suggestion.h"
#include "hosts/cli/texts/help_texts.h"
#include "hosts/cli/texts/option_texts.h"
#include "hosts/cli/texts/usage_texts.h"
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

std::string Help(const Text& text) {
  return ToUtf8(text.Get());
}

// What the command works on.
void DeclareSubject(CLI::App& app, std::uint64_t options, OptionValues& values) {
  if (options & kTakesOneItem) {
    app.add_option("ITEM", values.items, Help(texts::kOneItemHelp))->required()->expected(1);
  }
  if (options & kTakesSelection) {
    app.add_option("ITEM", values.items, Help(texts::kItemsHelp));
  }
  if (options & kTakesCommandLine) {
    app.add_option("COMMANDLINE", values.items, Help(texts::kCommandLineHelp))->required()->expected(1);
  }
  if (options & (kTakesId | kNeedsId)) {
    app.add_option("ID", values.ids, Help(texts::kIdHelp))->required((options & kNeedsId) != 0)->expected(1);
  }
  if (options & kTakesIds) {
    app.add_option("ID", values.ids, Help(texts::kIdsHelp));
  }
  if (options & kNeedsFile) app.add_option("FILE", values.file, Help(texts::kFileHelp))->required();
  if (options & kTakesFile2) {
    app.add_option("FILE2", values.file2, Help(texts::kFile2Help));
  }
  if (options & kTakesInput) {
    app.add_option("--input", values.input, Help(texts::kInputHelp))->type_name("JSON");
  }
  if (options & kTakesPaths) {
    app.add_option("--add", values.paths, Help(texts::kAddPathHelp))
        ->allow_extra_args(false)
        ->type_name("PATH");
  }
}

void DeclareLocation(CLI::App& app, std::uint64_t options, OptionValues& values) {
  if (options & (kTakesLocations | kTakesLocation | kNeedsLocation)) {
    CLI::Option* const location = app.add_option("--location", values.locations, Help(texts::kLocationHelp))
                                      ->allow_extra_args(false)
                                      ->type_name("LOCATION");
    if (!(options & kTakesLocations)) location->expected(1);
    if (options & kNeedsLocation) location->required();
  }
}

// Which entries are meant, besides --location.
void DeclareFilters(CLI::App& app, OptionValues& values) {
  const auto text = [&](const char* name, std::string& value, const char* type, const std::string& help) {
    app.add_option(name, value, help)->type_name(type);
  };
  CLI::Option* const enabled = app.add_flag("--enabled", values.enabled, Help(texts::kEnabledHelp));
  app.add_flag("--disabled", values.disabled, Help(texts::kDisabledHelp))->excludes(enabled);
  CLI::Option* const starts = app.add_flag("--starts", values.starts, Help(texts::kStartsHelp));
  app.add_flag("--not-starting", values.notStarting, Help(texts::kNotStartingHelp))->excludes(starts);
  app.add_option("--rating", values.ratings, Help(texts::kRatingHelp))
      ->allow_extra_args(false)
      ->type_name("RATING");
  text("--company", values.company, "TEXT", Help(texts::kCompanyHelp));
  app.add_flag("--missing", values.missing, Help(texts::kMissingHelp));
  app.add_flag("--unreachable", values.unreachable, Help(texts::kUnreachableHelp));
  text("--match", values.match, "TEXT", Help(texts::kMatchHelp));
  text("--since", values.since, "TIME", Help(texts::kSinceHelp));
  text("--from", values.from, "FILE", Help(texts::kFromHelp));
}

// What is shown and for how long.
void DeclareShowing(CLI::App& app, std::uint64_t options, OptionValues& values) {
  if (options & kTakesVerify) {
    app.add_flag("--verify", values.verify, Help(texts::kVerifyHelp));
  }
  if (options & kTakesAll) app.add_flag("--all", values.all, Help(texts::kAllHelp));
  if (options & kTakesSelection) DeclareFilters(app, values);
  if (options & kTakesLimit) {
    app.add_option("--limit", values.limit, Help(texts::kLimitHelp))->type_name("COUNT");
  }
  if (options & kTakesSeconds) {
    app.add_option("--seconds", values.seconds, Help(texts::kSecondsHelp))->type_name("SECONDS");
  }
}

// How it is shown.
void DeclareFormat(CLI::App& app, std::uint64_t options, OptionValues& values) {
  CLI::Option* json = nullptr;
  if (options & kTakesJson) json = app.add_flag("--json", values.json, Help(texts::kJsonHelp));
  if (options & kTakesCsv) app.add_flag("--csv", values.csv, Help(texts::kCsvHelp))->excludes(json);
  if (options & kTakesColumns) {
    app.add_option("--columns", values.columns, Help(texts::kColumnsHelp))
        ->allow_extra_args(false)
        ->type_name("KEYS");
  }
  if (options & kTakesOutput) {
    app.add_option("--output", values.output, Help(texts::kOutputHelp))->type_name("FILE");
  }
  app.add_flag("--quiet", values.quiet, Help(texts::kQuietHelp));
  DeclareLanguage(app, values);
}

// What a change makes of it.
void DeclareChange(CLI::App& app, std::uint64_t options, OptionValues& values) {
  if (options & kNeedsName) {
    app.add_option("--name", values.name, Help(texts::kNameHelp))->required()->type_name("NAME");
  }
  if (options & kNeedsCommand) {
    app.add_option("--command", values.command, Help(texts::kCommandHelp))
        ->required()
        ->type_name("COMMANDLINE");
  }
  if (options & kNeedsTarget) {
    app.add_option("--to", values.target, Help(texts::kTargetHelp))->required()->type_name("LOCATION");
  }
  if (options & kTakesUndoMode) {
    CLI::Option* const show = app.add_flag("--show", values.show, Help(texts::kShowStepsHelp));
    app.add_flag("--force", values.force, Help(texts::kForceHelp))->excludes(show);
  }
  if (options & kTakesOnly) {
    app.add_option("--only", values.only, Help(texts::kOnlyHelp))->allow_extra_args(false)->type_name("ITEM");
  }
  if (options & kTakesPruning) {
    app.add_option("--keep", values.keep, Help(texts::kKeepHelp))->type_name("COUNT");
    app.add_option("--days", values.days, Help(texts::kDaysHelp))->type_name("DAYS");
  }
  if (options & kTakesPruneSwitch) {
    app.add_flag("--prune", values.prune, Help(texts::kPruneSwitchHelp));
  }
  if (options & kTakesSwitch) {
    app.add_flag("--like-task-manager", values.likeTaskManager, Help(texts::kLikeTaskManagerHelp));
  }
  if (options & kTakesDryRun) app.add_flag("--dry-run", values.dryRun, Help(texts::kDryRunHelp));
  if (options & kTakesDeleteOthers) {
    app.add_flag("--delete-others", values.deleteOthers, Help(texts::kDeleteOthersHelp));
  }
  if (options & kTakesYes) app.add_flag("--yes", values.yes, Help(texts::kYesHelp));
}

std::int32_t ParseLocation(std::string_view bytes) {
  const std::wstring name = DecodeArgument(bytes);
  if (const auto location = LocationByName(name)) return *location;
  std::vector<std::wstring> known;
  for (std::int32_t location = kFirstLocation; location <= kLastLocation; ++location) {
    known.emplace_back(LocationName(location));
  }
  throw UsageError(Say(texts::kUnknownLocation, name, DidYouMean(name, known)));
}

std::uint32_t ParseId(std::string_view bytes) {
  const std::wstring text = DecodeArgument(bytes);
  if (text.empty() || text.find_first_not_of(L"0123456789") != std::wstring::npos) {
    throw UsageError(Say(texts::kNotANumber, text));
  }
  const unsigned long long id = text.size() > 10 ? 0 : wcstoull(text.c_str(), nullptr, 10);
  if (id == 0 || id > 0xFFFFFFFFull) throw UsageError(Say(texts::kUnknownCheckpoint, text));
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
    if (Trim(arguments.paths.back()).empty()) throw UsageError(texts::kPathEmpty);
  }
}

std::int32_t ParseRating(std::string_view bytes) {
  const std::wstring name = DecodeArgument(bytes);
  if (const auto rating = RatingByName(name)) return *rating;
  throw UsageError(Say(texts::kUnknownRating, name));
}

double ParseSince(std::string_view bytes) {
  const std::wstring text = DecodeArgument(bytes);
  if (const auto time = ParseTime(text)) return *time;
  throw UsageError(Say(texts::kNoTime, text));
}

// A text that would leave everything is none that was meant.
std::wstring ParseText(const CLI::App& parser, const char* option, std::string_view bytes) {
  std::wstring text = DecodeArgument(bytes);
  if (text.empty() && parser.count(option) != 0) {
    throw UsageError(Say(texts::kTextEmpty, FromUtf8(option)));
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

void DeclareLanguage(CLI::App& parser, OptionValues& values) {
  parser.add_option("--language", values.language, Help(texts::kLanguageHelp))
      ->allow_extra_args(false)
      ->take_last()
      ->type_name("LANGUAGE");
}

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
  if (options & kNeedsName && arguments.name.empty()) throw UsageError(texts::kNameEmpty);
  if (options & kNeedsCommand && arguments.command.empty()) throw UsageError(texts::kCommandEmpty);
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
  if (isChange && arguments.NamesNothing()) throw UsageError(texts::kWhichEntries);
  arguments.output = DecodeArgument(values.output);
  if (options & kTakesOutput && parser.count("--output") != 0 && arguments.output.empty()) {
    throw UsageError(texts::kOutputEmpty);
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
