// What docs/startupctl.md and docs/startupctl.schema.json promise.
#include "hosts/cli/command_line.h"
#include "tests/hosts/cli/json_schema.h"
#include "tests/hosts/cli/startupctl_fixture.h"

#include <shellapi.h>

#include <algorithm>
#include <set>
#include <sstream>

namespace smh::test {

namespace {

std::vector<std::wstring> WordsOf(const std::string& line) {
  int count = 0;
  wchar_t** const words = CommandLineToArgvW(FromUtf8(line).c_str(), &count);
  std::vector<std::wstring> result(words + 1, words + count);
  LocalFree(words);
  return result;
}

TEST(StartupctlDocument, EveryExampleParsesAndEveryCommandAndOptionHasOne) {
  std::istringstream document(ReadFileBytes(ThisFolder() + L"startupctl.md"));
  const std::vector<CommandSyntax> syntaxes = CommandSyntaxes();
  std::set<std::string> examples;
  for (std::string line; std::getline(document, line);) {
    if (!line.starts_with("    $ startupctl ")) continue;
    line = line.substr(6, std::min(line.find("  #"), line.find(" | ")) - 6);
    std::vector<std::wstring> words = WordsOf(line);
    SCOPED_TRACE(line);
    ASSERT_NO_THROW(ParseCommandLine(words));
    examples.insert(ToUtf8(words[0]));
    if (words.size() > 1) examples.insert(ToUtf8(words[0] + L" " + words[1]));
    for (const std::wstring& word : words) {
      if (word.starts_with(L"--")) examples.insert(ToUtf8(word));
    }
  }
  for (const CommandSyntax& syntax : syntaxes) {
    EXPECT_TRUE(syntax.name.empty() || examples.contains(syntax.name)) << syntax.name;
    for (const OptionSyntax& option : syntax.options)
      EXPECT_TRUE(examples.contains(option.name)) << option.name;
  }
}

TEST_F(StartupctlTest, JsonIsAsItsSchemaSays) {
  const JsonSchema schema(Json::parse(ReadFileBytes(ThisFolder() + L"startupctl.schema.json")));
  SetRun(HKEY_CURRENT_USER, L"ctl schema", Command(L"/x"));
  SetRun(HKEY_CURRENT_USER, L"ctl gone", L"C:\\no folder\\gone.exe");
  SetValue(HKEY_CURRENT_USER, kRunSide, L"ctl off", Sz(L"rundll32.exe nothing.dll,Start"));
  UseCheckpoints(true);
  // Titles of before may hold what only a lenient reader of JSON takes.
  Run({L"checkpoints", L"prune", L"--keep", L"0", L"--yes"});
  Run({L"delete", L"ctl gone"});
  Run({L"undo"});
  const std::vector<std::vector<std::wstring>> commands = {
      {L"list", L"--all"},
      {L"show", L"ctl schema"},
      {L"clients", L"--add", Program()},
      {L"locations"},
      {L"checkpoints"},
      {L"disable", L"ctl *", L"--dry-run"},
      {L"disable", L"ctl schema"},
      {L"add", L"--location", L"UserRun", L"--name", L"ctl new", L"--command", Command(L"/y")}};
  for (std::vector<std::wstring> command : commands) {
    const std::string definition = ToUtf8(command[0]);
    command.push_back(L"--json");
    const Json output = Json::parse(Run(command).output);
    EXPECT_FALSE(output.empty()) << definition;
    EXPECT_EQ(schema.FaultIn(output, definition), "");
    Json broken = output;
    (broken.is_array() ? broken[0] : broken)["more"] = 1;
    EXPECT_NE(schema.FaultIn(broken, definition), "");
  }
}

}  // namespace
}  // namespace smh::test
