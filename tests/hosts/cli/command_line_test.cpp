#include "hosts/cli/command_line.h"
#include "hosts/common/host_error.h"

#include <gtest/gtest.h>

namespace smh::test {

namespace {

using Words = std::vector<std::wstring>;

Invocation Parse(const Words& words) {
  return std::get<Invocation>(ParseCommandLine(words));
}

void ExpectUsageError(const Words& words) {
  try {
    ParseCommandLine(words);
    ADD_FAILURE() << "accepted";
  } catch (const HostError& error) {
    EXPECT_EQ(error.Code(), ExitCode::kUsage);
    EXPECT_FALSE(error.Message().empty());
  }
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
      {L"list", L"stray"},
      {L"list", L"--json", L"--csv"},
      {L"list", L"--enabled", L"--disabled"},
      {L"list", L"--location"},
      {L"list", L"--location", L"sulNone"},
      {L"list", L"/all"},
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
      {L"clients", L"--csv"},
      {L"clients", L"--add", L" "},
      {L"clients", L"--add", L"one", L"two"},
  };
  for (const Words& words : wrong) {
    SCOPED_TRACE(testing::PrintToString(words));
    ExpectUsageError(words);
  }
}

TEST(CommandLine, HelpIsNoError) {
  const auto top = ParseCommandLine(Words{L"--help"});
  const std::wstring& text = std::get<std::wstring>(top);
  for (const Command& command : AllCommands()) {
    const bool hidden = (command.options & kHidden) != 0;
    const std::size_t place =
        text.find(L"  " + std::wstring(command.name.begin(), command.name.end()) + L" ");
    EXPECT_EQ(place == std::wstring::npos, hidden) << command.name;
    const Words words = {std::wstring(command.name.begin(), command.name.end()), L"--help"};
    EXPECT_TRUE(std::holds_alternative<std::wstring>(ParseCommandLine(words)));
  }
}

}  // namespace
}  // namespace smh::test
