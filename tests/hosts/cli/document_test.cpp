// What docs/startupctl.md and docs/startupctl.schema.json promise.
#include "hosts/cli/command_line.h"
#include "tests/hosts/cli/json_schema.h"
#include "tests/hosts/cli/startupctl_fixture.h"
#include "tests/support/waiting.h"

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

struct Example {
  std::vector<std::wstring> words;
  DWORD exitCode = 0;  // "  # 4: ..." behind it
};

std::vector<Example> Examples() {
  std::istringstream document(ReadFileBytes(ThisFolder() + L"startupctl.md"));
  std::vector<Example> examples;
  for (std::string line; std::getline(document, line);) {
    if (!line.starts_with("    $ startupctl ")) continue;
    const std::size_t comment = line.find("  # ");
    Example& example = examples.emplace_back();
    if (comment != std::string::npos) example.exitCode = static_cast<DWORD>(line[comment + 4] - '0');
    example.words = WordsOf(line.substr(6, std::min(comment, line.find(" | ")) - 6));
  }
  return examples;
}

// The machine of the examples. Their relative files lie in a folder of the test's own, the others on drive
// C:.
class StartupctlDocument : public StartupctlTest {
 protected:
  StartupctlDocument() {
    // A Windows whose Task Manager has switches.
    pretended_.Set(L"", L"Version", Sz(L"win10"));
    std::filesystem::create_directory(kTools);
    CopyFileW(Program().c_str(), (kTools + L"\\inkwell.exe").c_str(), FALSE);
    GetCurrentDirectoryW(MAX_PATH, before_);
    SetCurrentDirectoryW(Folder().Path().c_str());
    Folder().Write(L"ids.txt", "Inkwell\r\n");
    UseCheckpoints(true);
    Reset();
    Run({L"snapshot", L"C:\\monday.json"});
    RemoveValue(HKEY_CURRENT_USER, kRunKey, L"Inkwell");
    Run({L"snapshot", L"C:\\friday.json"});
  }
  ~StartupctlDocument() override {
    SetCurrentDirectoryW(before_);
    ClearJournal();
    std::error_code ignored;
    std::filesystem::remove_all(kTools, ignored);
    for (const wchar_t* file : {L"C:\\monday.json", L"C:\\friday.json", L"C:\\baseline.json"})
      DeleteFileW(file);
  }

  void Reset() const {
    ClearJournal();
    for (const std::wstring& key : {kRunKey, kRunSide, kSwitches + L"\\Run"}) {
      for (const HKEY root : {HKEY_CURRENT_USER, HKEY_LOCAL_MACHINE}) {
        for (const std::wstring& name : Values(root, key)) smh::test::RemoveValue(root, key, name);
        for (const std::wstring& name : Values(root, key, OwnView()))
          smh::test::RemoveValue(root, key, name, OwnView());
      }
    }
    for (const wchar_t* name : {L"Inkwell", L"Aurora Mixer", L"Card Watch", L"Tide Gauge"})
      SetRun(HKEY_CURRENT_USER, name, L"C:\\Tools\\inkwell.exe /old");
    SetRun(HKEY_LOCAL_MACHINE, L"Gone", L"C:\\no folder\\gone.exe", OwnView());
  }

  // The machine as before the example, which names one id and one checkpoint for all.
  void Prepare(Example& example) const {
    Reset();
    const std::wstring& command = example.words.front();
    if (command == L"compare" && example.exitCode == 4) RemoveValue(HKEY_CURRENT_USER, kRunKey, L"Inkwell");
    const bool isOfJournal = command == L"checkpoints" || command == L"undo" || command == L"redo";
    if (isOfJournal) Run({L"disable", L"Aurora Mixer", L"Inkwell"});
    if (isOfJournal) Run({L"delete", L"Card Watch"});
    if (command == L"redo") Run({L"undo"});
    for (std::wstring& word : example.words) {
      if (word == L"12" || word == L"3") word = L"1";
      if (word == L"4") word = L"2";
      if (word == L"1a2b3c4d") word = FromUtf8(Find("Inkwell")[0]["id"].get<std::string>());
    }
  }

 private:
  inline static const std::wstring kTools = L"C:\\Tools";
  inline static const std::wstring kSwitches =
      L"Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\StartupApproved";
  const EmptiedKeys switches_{{kSwitches}};
  const RegistryTree pretended_{L"Software\\Wine\\AppDefaults\\startupctl.exe"};
  wchar_t before_[MAX_PATH] = {};
};

TEST_F(StartupctlDocument, EveryExampleRunsAndEveryCommandOptionAndExitCodeHasOne) {
  std::set<std::string> told;
  for (Example example : Examples()) {
    std::vector<std::wstring>& words = example.words;
    told.insert(ToUtf8(words[0]));
    if (words.size() > 1) told.insert(ToUtf8(words[0] + L" " + words[1]));
    for (const std::wstring& word : words) {
      if (word.starts_with(L"--")) told.insert(ToUtf8(word));
    }
    told.insert(std::to_string(example.exitCode));
    Prepare(example);
    StartupctlProcess process(words);
    if (words[0] == L"watch") {
      EXPECT_TRUE(WaitUntil([&] { return process.Errors().find("Watching") != std::string::npos; }, 30'000));
      process.Break();
    }
    const StartupctlResult result = process.Finish();
    std::string line;
    for (const std::wstring& word : words) line += ToUtf8(word) + ' ';
    // The prefix lacks the starter of the registry editor.
    const DWORD expected = words[0] == L"locate" ? 1 : example.exitCode;
    EXPECT_EQ(result.exitCode, expected) << line << ": " << result.errors;
  }
  for (const CommandSyntax& syntax : CommandSyntaxes()) {
    EXPECT_TRUE(syntax.name.empty() || told.contains(syntax.name)) << syntax.name;
    for (const OptionSyntax& option : syntax.options) EXPECT_TRUE(told.contains(option.name)) << option.name;
  }
  for (const char* exitCode : {"0", "1", "2", "3", "4"}) EXPECT_TRUE(told.contains(exitCode)) << exitCode;
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
