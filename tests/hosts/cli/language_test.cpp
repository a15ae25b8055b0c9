// The language of startupctl: people are told in it, programs and the journal never.
#include "hosts/cli/command_line.h"
#include "hosts/common/text_encoding.h"
#include "tests/hosts/cli/startupctl_fixture.h"
#include "tests/support/language_scope.h"

namespace smh::test {
namespace {

class StartupctlLanguageTest : public StartupctlTest {
 protected:
  StartupctlLanguageTest() {
    SetRun(HKEY_CURRENT_USER, L"ctl tongue", Command(L"tongue"));
    SetRun(HKEY_CURRENT_USER, L"ctl speech", Command(L"speech"));
    SetRun(HKEY_LOCAL_MACHINE, L"ctl gone", L"Z:\\no such folder\\gone.exe");
    ClearJournal();
  }

  static StartupctlResult RunIn(const std::wstring& language, std::vector<std::wstring> arguments,
                                DWORD exitCode = 0) {
    arguments.insert(arguments.end(), {L"--language", language});
    return Run(arguments, exitCode);
  }

 private:
  const SavedKey settings_{HKEY_CURRENT_USER, L"Software\\Quillmark\\Startup Manager\\Settings"};
};

bool Holds(const std::string& text, const std::wstring& part) {
  return text.find(ToUtf8(part)) != std::string::npos;
}

TEST_F(StartupctlLanguageTest, IsChosenByOptionOrSetting) {
  EXPECT_TRUE(Holds(Run({L"--language", L"de", L"list"}).output, L"Einstufung")) << "in front of the command";
  EXPECT_TRUE(Holds(Run({L"list", L"--language=he-IL"}).output, L"דירוג")) << "and behind it, with a region";
  const StartupctlResult wrong = Run({L"list", L"--language", L"tlh"}, 2);
  EXPECT_TRUE(Holds(wrong.errors, L"\"tlh\"") && Holds(wrong.errors, L"startupctl --help"));
  EXPECT_EQ(wrong.output, "");
  SetValue(HKEY_CURRENT_USER, L"Software\\Quillmark\\Startup Manager\\Settings", L"Language", Sz(L"de"));
  EXPECT_TRUE(Holds(Run({L"frobnicate"}, 2).errors, L"Es gibt keinen Befehl")) << "what was saved";
  EXPECT_TRUE(Holds(RunIn(L"en", {L"list"}).output, L"Rating")) << "the option goes over it";
}

std::wstring HelpOf(std::string_view name) {
  std::vector<std::wstring> words;
  for (const std::string_view part :
       {name.substr(0, name.find(' ')), name.substr(std::min(name.size(), name.find(' ')))}) {
    const std::string_view word = part.substr(part.starts_with(' ') ? 1 : 0);
    if (!word.empty()) words.emplace_back(word.begin(), word.end());
  }
  words.emplace_back(L"--help");
  return std::get<std::wstring>(ParseCommandLine(words));
}

TEST_F(StartupctlLanguageTest, HelpLeavesNoEnglishWord) {
  for (const Language language : {Language::kGerman, Language::kHebrew}) {
    const LanguageScope scope(language);
    for (const smh::Command& command : AllCommands()) {
      if (command.name == "help") continue;
      const std::wstring help = HelpOf(command.name);
      for (const std::wstring_view english :
           {L"Usage", L"Options:", L"Subcommands", L"Positionals", L"REQUIRED", L"Excludes", L"SUBCOMMAND",
            L"entries", L"Only ", L" the "}) {
        EXPECT_EQ(help.find(english), std::wstring::npos) << ToUtf8(english) << "\n" << ToUtf8(help);
      }
    }
  }
  EXPECT_TRUE(Holds(RunIn(L"de", {L"move", L"x"}, 2).errors, L"--to ist nötig"));
  EXPECT_TRUE(Holds(RunIn(L"de", {L"undo", L"1", L"2"}, 2).errors, L"höchstens 1, nicht 2"));
  EXPECT_TRUE(Holds(Run({L"--language", L"de", L"help", L"show"}).output, L"Aufruf: startupctl show"));
  EXPECT_TRUE(
      Holds(Run({L"--language", L"he", L"--language=de", L"help"}).output, L"Aufruf: startupctl [OPTIONEN]"))
      << "the last one counts";
}

TEST_F(StartupctlLanguageTest, ProgramsReadTheSameInAllLanguages) {
  const std::vector<std::vector<std::wstring>> kCommands = {
      {L"list", L"--all", L"--json"},
      {L"list", L"--all", L"--csv"},
      {L"locations", L"--json"},
      {L"clients", L"--json"},
      {L"switches", L"--json"},
      {L"dsc", L"export"},
      {L"dsc", L"schema"},
      {L"checkpoints", L"--csv"},
      {L"enable", L"ctl tongue", L"--json"},
      {L"disable", L"ctl*", L"--json", L"--dry-run"},
      {L"move", L"ctl gone", L"--to", L"CommonRun", L"--json"},
  };
  for (const std::vector<std::wstring>& command : kCommands) {
    const std::string english = RunIn(L"en", command).output;
    EXPECT_NE(english, "");
    for (const wchar_t* const language : {L"de", L"he"}) {
      EXPECT_EQ(RunIn(language, command).output, english) << ToUtf8(command.front()) << ToUtf8(language);
    }
  }
}

TEST_F(StartupctlLanguageTest, TheJournalIsEnglishAndToldInTheLanguage) {
  const StartupctlResult done = RunIn(L"de", {L"disable", L"ctl*", L"--yes"});
  EXPECT_TRUE(Holds(done.errors, L"Deaktiviert: „ctl speech“ in sulRegistryUserRun")) << done.errors;
  EXPECT_TRUE(Holds(RunIn(L"de", {L"disable", L"ctl speech"}).errors, L"ist schon deaktiviert."));
  const Json action = Json::parse(Run({L"checkpoints", L"--json"}).output)[0];
  EXPECT_EQ(action["title"], "Disabling 3 entries");
  EXPECT_EQ(action["state"], "done");
  EXPECT_TRUE(Holds(RunIn(L"de", {L"checkpoints"}).output, L"Deaktivieren von 3 Einträgen"));
  const std::string id = action["id"].dump();
  const std::string parts = RunIn(L"de", {L"checkpoints", L"show", FromUtf8(id)}).output;
  EXPECT_TRUE(Holds(parts, L"Startup Manager: Deaktivieren: ctl speech")) << parts;

  const std::string steps = RunIn(L"de", {L"undo", L"--show"}).output;
  EXPECT_TRUE(Holds(steps, L"rückgängig")) << steps;
  EXPECT_TRUE(Holds(steps, L"wiederherstellen")) << steps;
  for (const std::string english : {"undo ", "Restore", "Delete", "Remove", "Give"}) {
    EXPECT_EQ(steps.find(english), std::string::npos) << steps;
  }
  EXPECT_TRUE(Holds(RunIn(L"he", {L"undo"}).errors, L"בוטל: "));
  EXPECT_EQ(Json::parse(Run({L"checkpoints", L"--json"}).output)[0]["title"], "Undo: Disabling 3 entries");
}

}  // namespace
}  // namespace smh::test
