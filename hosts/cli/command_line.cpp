#include "hosts/cli/command_line.h"

#include "hosts/cli/command_options.h"
#include "hosts/cli/suggestion.h"
#include "hosts/cli/texts/help_texts.h"
#include "hosts/cli/texts/usage_texts.h"
#include "hosts/common/known_text.h"
#include "hosts/common/text_encoding.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <utility>

namespace smh {

namespace {

constexpr char kVersionText[] = "startupctl " SMH_HOST_VERSION;

std::wstring Widened(std::string_view ascii) {
  return {ascii.begin(), ascii.end()};
}

std::vector<const CLI::App*> AllBelow(const CLI::App& parser) {
  return parser.get_subcommands([](const CLI::App*) { return true; });
}

void SetHeadings(CLI::FormatterBase& formatter) {
  constexpr std::pair<const char*, const Text*> kHeadings[] = {
      {"Usage", &texts::kUsageHeading},     {"Positionals", &texts::kPositionalsHeading},
      {"SUBCOMMAND", &texts::kCommandWord}, {"OPTIONS", &texts::kOptionsWord},
      {"REQUIRED", &texts::kRequiredWord},  {"Excludes", &texts::kExcludesWord}};
  for (const auto& [heading, text] : kHeadings) formatter.label(heading, ToUtf8(text->Get()));
}

// The parser of every command, and what they fill.
class Parsers {
 public:
  Parsers() {
    top_.option_defaults()->group(ToUtf8(texts::kOptionsHeading.Get()));
    top_.set_help_flag("-h,-?,--help", ToUtf8(texts::kHelpHelp.Get()));
    top_.set_version_flag("--version", kVersionText, ToUtf8(texts::kVersionHelp.Get()));
    DeclareLanguage(top_, values_);
    SetHeadings(*top_.get_formatter());
    top_.require_subcommand(1);
    // A value name may begin with a slash.
    top_.allow_windows_style_options(false);
    for (const Command& command : AllCommands()) {
      const std::size_t blank = command.name.find(' ');
      CLI::App* const above = blank == std::string_view::npos
                                  ? &top_
                                  : top_.get_subcommand(std::string(command.name.substr(0, blank)));
      CLI::App* const parser =
          above->add_subcommand(std::string(command.name.substr(blank + 1)), ToUtf8(command.help.Get()));
      // The one option that does not take the others' defaults.
      parser->get_help_ptr()->group(ToUtf8(texts::kOptionsHeading.Get()));
      parser->group(command.options & kHidden ? std::string() : ToUtf8(texts::kSubcommandsHeading.Get()));
      DeclareOptions(*parser, command.options, values_);
      parsers_.emplace_back(&command, parser);
    }
    for (const auto& [command, parser] : parsers_) {
      if (command->run == nullptr && !AllBelow(*parser).empty()) parser->require_subcommand(1);
    }
  }

  CLI::App& Top() noexcept { return top_; }
  std::span<const std::pair<const Command*, CLI::App*>> All() const noexcept { return parsers_; }
  const OptionValues& Values() const noexcept { return values_; }

  // What the parser has come to: one below another comes later in the table. Null for no command.
  const std::pair<const Command*, CLI::App*>* Reached() const {
    const auto last = std::find_if(parsers_.rbegin(), parsers_.rend(),
                                   [](const auto& each) { return each.second->parsed(); });
    return last == parsers_.rend() ? nullptr : &*last;
  }

 private:
  CLI::App top_{ToUtf8(texts::kProgramHelp.Get()), "startupctl"};
  OptionValues values_;
  std::vector<std::pair<const Command*, CLI::App*>> parsers_;
};

std::vector<std::wstring> NamesBelow(const CLI::App& parser) {
  std::vector<std::wstring> names;
  for (const CLI::App* const each : AllBelow(parser)) {
    if (!each->get_group().empty()) names.push_back(Widened(each->get_name()));
  }
  return names;
}

std::vector<std::wstring> OptionNames(const CLI::App& parser) {
  std::vector<std::wstring> names;
  for (const CLI::Option* const option : parser.get_options()) {
    for (const std::string& name : option->get_lnames()) names.push_back(L"--" + Widened(name));
  }
  return names;
}

// The parser would only say that some command is missing.
void RefuseUnknownCommand(std::span<const std::wstring> arguments, const CLI::App& top) {
  if (arguments.empty()) throw UsageError(texts::kNoCommand);
  const std::wstring& name = arguments.front();
  const auto isIt = [bytes = ToUtf8(name)](const CLI::App* each) { return each->get_name() == bytes; };
  if (name.starts_with(L'-') || !top.get_subcommands(isIt).empty()) return;
  throw UsageError(Say(texts::kUnknownCommand, name, DidYouMean(name, NamesBelow(top))));
}

// What the parser says, unless an argument that it does not know explains it better.
HostError FaultOf(const CLI::App& parser, const CLI::ParseError& error) {
  const std::vector<std::string> unexpected = parser.remaining();
  if (unexpected.empty())
    return UsageError(Say(texts::kParserFault, Known(texts::kParserTexts, DecodeArgument(error.what()))));
  const std::wstring argument = DecodeArgument(unexpected.front());
  return UsageError(
      Say(texts::kNotExpected, argument,
          DidYouMean(argument, argument.starts_with(L'-') ? OptionNames(parser) : NamesBelow(parser))));
}

std::vector<CommandSyntax> SyntaxesOf(Parsers& parsers) {
  std::vector<CommandSyntax> syntaxes;
  const auto add = [&syntaxes](std::string_view name, const CLI::App& parser) {
    CommandSyntax& syntax =
        syntaxes.emplace_back(CommandSyntax{std::string(name), parser.get_description(), {}});
    for (const CLI::Option* const option : parser.get_options()) {
      if (option->get_lnames().empty()) continue;
      syntax.options.push_back(
          {"--" + option->get_lnames().front(), option->get_description(),
           option->get_items_expected_max() == 0 ? std::string() : option->get_type_name()});
    }
  };
  add({}, parsers.Top());
  for (const auto& [command, parser] : parsers.All()) {
    if (!(command->options & kHidden)) add(command->name, *parser);
  }
  return syntaxes;
}

// Behind the options that may stand in front of it.
std::size_t CommandPlace(std::span<const std::wstring> arguments) {
  constexpr std::wstring_view kOption = L"--language";
  std::size_t place = 0;
  while (place < arguments.size() && arguments[place].starts_with(kOption)) {
    place += arguments[place] == kOption ? 2 : 1;
  }
  return std::min(place, arguments.size());
}

std::variant<Invocation, std::wstring> Parse(Parsers& parsers, std::span<const std::wstring> arguments) {
  try {
    RefuseUnknownCommand(arguments, parsers.Top());
    parsers.Top().parse(EncodeArguments(arguments));
  } catch (const CLI::CallForHelp&) {
    return FromUtf8(parsers.Top().help());
  } catch (const CLI::CallForVersion&) {
    return Widened(kVersionText) + L"\n";
  } catch (const CLI::ParseError& error) {
    const auto* const reached = parsers.Reached();
    throw FaultOf(reached == nullptr ? parsers.Top() : *reached->second, error);
  }
  const auto* const reached = parsers.Reached();
  if (reached == nullptr) throw UsageError(texts::kNoCommand);
  const auto& [command, parser] = *reached;
  if (command->name == "help") return FromUtf8(parsers.Top().help());
  if (command->run == nullptr) return PowerShellCompletion(SyntaxesOf(parsers));
  return Invocation{command, TakeArguments(parsers.Values(), *parser, command->options)};
}

}  // namespace

std::variant<Invocation, std::wstring> ParseCommandLine(std::span<const std::wstring> arguments) {
  std::vector<std::wstring> words(arguments.begin(), arguments.end());
  const auto command = words.begin() + static_cast<std::ptrdiff_t>(CommandPlace(words));
  if (command != words.end() && *command == L"help") {
    words.erase(command);
    words.emplace_back(L"--help");
  }
  Parsers parsers;
  try {
    return Parse(parsers, words);
  } catch (const HostError& error) {
    const auto* const reached = parsers.Reached();
    throw WithHelpHint(error, reached == nullptr ? std::string_view() : reached->first->name);
  }
}

HostError WithHelpHint(HostError error, std::string_view command) {
  error.Add(command.empty() ? Phrase(texts::kSeeHelp) : Say(texts::kSeeCommandHelp, Widened(command)));
  return error;
}

std::vector<CommandSyntax> CommandSyntaxes() {
  Parsers parsers;
  return SyntaxesOf(parsers);
}

}  // namespace smh
