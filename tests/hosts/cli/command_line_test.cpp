#include "hosts/cli/command_line.h"
#include "hosts/cli/completion.h"
#include "hosts/common/host_error.h"
#include "hosts/common/text_encoding.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace smh::test {

namespace {

using Words = std::vector<std::wstring>;

Invocation Parse(const Words& words) {
  return std::get<Invocation>(ParseCommandLine(words));
}

std::wstring UsageErrorOf(const Words& words) {
  try {
    ParseCommandLine(words);
    ADD_FAILURE() << "accepted";
  } catch (const HostError& error) {
    EXPECT_EQ(error.Code(), ExitCode::kUsage);
    return error.Message();
  }
  return {};
}

TEST(CommandLine, ListTakesFiltersAndFormats) {
  const Invocation list = Parse({L"list", L"--all", L"--location", L"sulRegistryUserRun", L"--location",
                                 L"commonrun", L"--disabled", L"--json"});
  EXPECT_EQ(list.command->name, "list");
  EXPECT_TRUE(list.arguments.all);
  EXPECT_EQ(list.arguments.locations, (std::vector<std::int32_t>{sulRegistryUserRun, sulRegistryCommonRun}));
  EXPECT_EQ(list.arguments.enabled, std::optional(false));
  EXPECT_EQ(list.arguments.format, OutputFormat::kJson);
  EXPECT_EQ(Parse({L"list"}).arguments.enabled, std::nullopt);
  EXPECT_EQ(Parse({L"watch", L"--csv", L"--seconds", L"0"}).arguments.seconds, std::optional(0u));
  EXPECT_EQ(Parse({L"watch"}).arguments.seconds, std::nullopt);
}

TEST(CommandLine, ItemsAndValuesArriveAsTheyAre) {
  const Words odd = {L"[a,b]",       L"",    L"\x01x", L"/all",
                     L"list",        L"a=b", L"\"q\"", std::wstring(L"s") + static_cast<wchar_t>(0xD800),
                     L"\u00E4\u4E2D"};
  Words words = {L"disable"};
  words.insert(words.end(), odd.begin(), odd.end());
  EXPECT_EQ(Parse(words).arguments.items, odd);
  EXPECT_EQ(Parse({L"show", L"--", L"-dash"}).arguments.items, Words{L"-dash"});
  for (const Words& command : {Words{L"--command", L"-x --all"}, Words{L"--command=-x --all"}}) {
    Words change = {L"change", L"item"};
    change.insert(change.end(), command.begin(), command.end());
    EXPECT_EQ(Parse(change).arguments.command, L"-x --all");
    EXPECT_EQ(Parse(change).arguments.items, Words{L"item"});
  }
  EXPECT_EQ(Parse({L"resolve", L"\"a b\" c"}).arguments.items, Words{L"\"a b\" c"});
  EXPECT_EQ(Parse({L"clients", L"--add", L"a b", L"--json", L"--add", L"[c,d]"}).arguments.paths,
            (Words{L"a b", L"[c,d]"}));
}

TEST(CommandLine, LocationOptionTakesOneWordOnly) {
  const Invocation show = Parse({L"show", L"--location", L"sulRegistryUserRun", L"item"});
  EXPECT_EQ(show.arguments.Location(), std::optional<std::int32_t>(sulRegistryUserRun));
  EXPECT_EQ(show.arguments.items, Words{L"item"});
  EXPECT_EQ(Parse({L"move", L"item", L"--to", L"sulRegistryCommonRun"}).arguments.target,
            std::optional<std::int32_t>(sulRegistryCommonRun));
}

TEST(CommandLine, WrongUsageIsRefused) {
  const Words wrong[] = {
      {},
      {L"frob"},
      {L"log", L"stray"},
      {L"list", L"--json", L"--csv"},
      {L"list", L"--enabled", L"--disabled"},
      {L"list", L"--location"},
      {L"list", L"--location", L"sulNone"},
      {L"list", L"--rating", L"fine"},
      {L"list", L"--since", L"soon"},
      {L"list", L"--match", L""},
      {L"show"},
      {L"show", L"one", L"two"},
      {L"show", L"one", L"--location", L"sulRegistryUserRun", L"--location", L"sulRegistryUserRunOnce"},
      {L"enable"},
      {L"add", L"--name", L"n", L"--command", L"c"},
      {L"add", L"--location", L"sulRegistryUserRun", L"--command", L"c"},
      {L"add", L"--location", L"sulRegistryUserRun", L"--name", L"n"},
      {L"add", L"--location", L"sulRegistryUserRun", L"--name=", L"--command", L"c"},
      {L"change", L"item", L"--command="},
      {L"move", L"item"},
      {L"move", L"item", L"--to", L"nowhere"},
      {L"watch", L"--seconds", L"-1"},
      {L"clients", L"stray"},
      {L"undo", L"1", L"2"},
      {L"undo", L"4294967296"},
      {L"list", L"--output="},
      {L"completion"},
      {L"clients", L"--add", L" "},
      {L"clients", L"--add", L"one", L"two"},
  };
  for (const Words& words : wrong) {
    SCOPED_TRACE(testing::PrintToString(words));
    EXPECT_NE(UsageErrorOf(words).find(L"\nSee startupctl "), std::wstring::npos);
  }
}

TEST(CommandLine, ErrorsNameWhatWasMeantAndTheHelpToRead) {
  const std::pair<Words, std::wstring> cases[] = {
      {{L"lsit"}, L"There is no command \"lsit\". Did you mean \"list\"?\nSee startupctl --help."},
      {{L"xyzzy"}, L"There is no command \"xyzzy\".\nSee startupctl --help."},
      {{L"show", L"--jsno"},
       L"\"--jsno\" is not expected here. Did you mean \"--json\"?\nSee startupctl show --help."},
      {{L"completion", L"powershel"},
       L"\"powershel\" is not expected here. Did you mean \"powershell\"?\nSee startupctl completion "
       L"--help."},
      {{L"list", L"--location", L"sulRegistryUsrRun"},
       L"There is no location \"sulRegistryUsrRun\"; the command locations lists them. Did you mean "
       L"\"sulRegistryUserRun\"?\nSee startupctl list --help."},
      {{L"undo", L"a\nbc"},
       L"\"a\\u{a}bc\" is not a number; the command checkpoints lists those of checkpoints.\nSee startupctl "
       L"undo --help."},
  };
  for (const auto& [words, message] : cases) EXPECT_EQ(UsageErrorOf(words), message);
}

TEST(CommandLine, HelpIsNoError) {
  const auto top = ParseCommandLine(Words{L"--help"});
  const std::wstring& text = std::get<std::wstring>(top);
  for (const Command& command : AllCommands()) {
    const bool hidden = (command.options & kHidden) != 0;
    const std::size_t place =
        text.find(L"  " + std::wstring(command.name.begin(), command.name.end()) + L" ");
    const bool isBelow = command.name.find(' ') != std::string_view::npos;
    EXPECT_EQ(place == std::wstring::npos, hidden || isBelow) << command.name;
  }
  const std::wstring show = std::get<std::wstring>(ParseCommandLine(Words{L"help", L"show"}));
  EXPECT_NE(show.find(L"Show everything known"), std::wstring::npos);
  for (const Words& words : {Words{L"show", L"--help"}, {L"show", L"-?"}, {L"show", L"item", L"-?"}}) {
    EXPECT_EQ(std::get<std::wstring>(ParseCommandLine(words)), show);
  }
  EXPECT_EQ(std::get<std::wstring>(ParseCommandLine(Words{L"help"})), text);
  EXPECT_EQ(std::get<std::wstring>(ParseCommandLine(Words{L"--version"})), L"startupctl 1.0.0\n");
}

TEST(CommandLine, CompletionOffersEveryCommandAndOption) {
  const std::vector<CommandSyntax> commands = CommandSyntaxes();
  const std::wstring script = PowerShellCompletion(commands);
  EXPECT_EQ(std::ranges::count(script, L'\'') % 2, 0);
  EXPECT_EQ(std::ranges::count(script, L'{'), std::ranges::count(script, L'}'));
  EXPECT_EQ(commands.size(), AllCommands().size());  // one is hidden, and there are the options of none
  for (const CommandSyntax& command : commands) {
    const std::size_t table = script.find(L"\n    '" + FromUtf8(command.name) + L"' = [ordered]@{\n");
    ASSERT_NE(table, std::wstring::npos) << command.name;
    for (const OptionSyntax& option : command.options) {
      EXPECT_LT(script.find(L"'" + FromUtf8(option.name) + L"' = '", table), script.find(L"\n    }", table));
    }
  }
  for (const wchar_t* part : {L"'powershell' = ", L"'sulRegistryUserRun'", L"'--location' = "}) {
    EXPECT_NE(script.find(part), std::wstring::npos);
  }
}

}  // namespace
}  // namespace smh::test
