// Changes made by startupctl, looked up in both registry views, with backup checkpoints and without.
#include "tests/hosts/cli/startupctl_fixture.h"

namespace smh::test {

namespace {

class StartupctlChanges : public StartupctlTest, public testing::WithParamInterface<bool> {
 protected:
  StartupctlChanges() { UseCheckpoints(GetParam()); }
};
INSTANTIATE_TEST_SUITE_P(Checkpoints, StartupctlChanges, testing::Bool(),
                         [](const auto& parameter) { return parameter.param ? "On" : "Off"; });

TEST_P(StartupctlChanges, UserEntryFromAddToDelete) {
  const std::wstring name = L"ctl trip";
  Run({L"add", L"--location", L"sulRegistryUserRun", L"--name", name, L"--command", Command(L"one")});
  EXPECT_EQ(TextInBothViews(HKEY_CURRENT_USER, kRunKey, name), Command(L"one"));
  Run({L"disable", name});
  EXPECT_EQ(TextInBothViews(HKEY_CURRENT_USER, kRunKey, name), std::nullopt);
  EXPECT_EQ(TextInBothViews(HKEY_CURRENT_USER, kRunSide, name), Command(L"one"));
  Run({L"change", name, L"--command", Command(L"two")});
  EXPECT_EQ(TextInBothViews(HKEY_CURRENT_USER, kRunSide, name), Command(L"two"));
  Run({L"enable", name});
  EXPECT_EQ(TextInBothViews(HKEY_CURRENT_USER, kRunSide, name), std::nullopt);
  EXPECT_EQ(TextInBothViews(HKEY_CURRENT_USER, kRunKey, name), Command(L"two"));
  Run({L"delete", name});
  EXPECT_EQ(TextInBothViews(HKEY_CURRENT_USER, kRunKey, name), std::nullopt);
}

TEST_P(StartupctlChanges, EntryThatCannotBeWrittenStaysAsItIs) {
  SetRun(HKEY_CURRENT_USER, L"ctl fixed", Command(L"fixed"));
  {
    const LimitedKey limited(HKEY_CURRENT_USER, kRunKey, LimitedKey::Rights::kReadOnly);
    const std::vector<std::wstring> changes[] = {
        {L"disable", L"ctl fixed"},
        {L"delete", L"ctl fixed"},
        {L"change", L"ctl fixed", L"--command", Command(L"other")},
        {L"move", L"ctl fixed", L"--to", L"sulRegistryCommonRun"},
        {L"add", L"--location", L"sulRegistryUserRun", L"--name", L"ctl new", L"--command", Command(L"new")},
    };
    for (const auto& arguments : changes) {
      const StartupctlResult result = Run(arguments, 1);
      EXPECT_TRUE(result.errors.starts_with("startupctl: Cannot ")) << result.errors;
    }
  }
  EXPECT_EQ(TextInBothViews(HKEY_CURRENT_USER, kRunKey, L"ctl fixed"), Command(L"fixed"));
  EXPECT_EQ(TextInBothViews(HKEY_CURRENT_USER, kRunSide, L"ctl fixed"), std::nullopt);
  EXPECT_FALSE(GetValue(HKEY_CURRENT_USER, kRunKey, L"ctl new"));
  EXPECT_TRUE(Find("tray program").empty());
}

// A recorded write fails without a word: only looking the entry up tells.
TEST_P(StartupctlChanges, ChangeThatDidNotHappenIsAFailure) {
  SetRun(HKEY_CURRENT_USER, L"ctl stays", Command(L"stays"));
  MakeKey(HKEY_CURRENT_USER, kRunSide);
  {
    const LimitedKey limited(HKEY_CURRENT_USER, kRunSide, LimitedKey::Rights::kReadOnly);
    const StartupctlResult result = Run({L"disable", L"ctl stays"}, 1);
    EXPECT_TRUE(result.errors.starts_with("startupctl: Cannot disable ")) << result.errors;
  }
  EXPECT_EQ(TextInBothViews(HKEY_CURRENT_USER, kRunKey, L"ctl stays"), Command(L"stays"));
  EXPECT_EQ(TextInBothViews(HKEY_CURRENT_USER, kRunSide, L"ctl stays"), std::nullopt);
}

TEST_F(StartupctlTest, OneBadItemAmongSeveralChangesNothing) {
  SetRun(HKEY_CURRENT_USER, L"ctl good", Command(L"good"));
  SetRun(HKEY_CURRENT_USER, L"ctl better", Command(L"better"));
  SetValue(HKEY_CURRENT_USER, kRunKey + L"\\AutorunsDisabled", L"ctl side", Sz(Command(L"side")));
  for (const wchar_t* command : {L"disable", L"delete"}) {
    Run({command, L"ctl good", L"ctl better", L"ctl missing"}, 1);
  }
  EXPECT_TRUE(TextInBothViews(HKEY_CURRENT_USER, kRunKey, L"ctl good"));
  EXPECT_TRUE(TextInBothViews(HKEY_CURRENT_USER, kRunKey, L"ctl better"));
  Run({L"disable", L"ctl good", L"ctl better", L"ctl good"});
  EXPECT_TRUE(TextInBothViews(HKEY_CURRENT_USER, kRunSide, L"ctl good"));
  EXPECT_TRUE(TextInBothViews(HKEY_CURRENT_USER, kRunSide, L"ctl better"));
  Run({L"enable", L"ctl side", L"ctl good"});
  EXPECT_TRUE(TextInBothViews(HKEY_CURRENT_USER, kRunKey, L"ctl side"));
}

TEST_F(StartupctlTest, ChangesThatAreNone) {
  SetRun(HKEY_CURRENT_USER, L"ctl still", Command(L"Still"));
  const std::vector<std::wstring> nothingToDo[] = {
      {L"enable", L"ctl still"},
      {L"change", L"ctl still", L"--command", Command(L"Still")},
      {L"move", L"ctl still", L"--to", L"sulRegistryUserRun"},
      {L"add", L"--location", L"sulRegistryUserRun", L"--name", L"ctl still", L"--command",
       Command(L"Still")},
  };
  for (const auto& arguments : nothingToDo) {
    EXPECT_NE(Run(arguments).errors.find("already"), std::string::npos) << ToUtf8(arguments[0]);
  }
  // Neither overwritten nor taken for a change.
  Run({L"add", L"--location", L"sulRegistryUserRun", L"--name", L"ctl still", L"--command", Command(L"x")},
      1);
  Run({L"change", L"ctl still", L"--command", Command(L"STILL")}, 1);
  EXPECT_EQ(TextInBothViews(HKEY_CURRENT_USER, kRunKey, L"ctl still"), Command(L"Still"));
}

// What is more than was named wants to be agreed to; nobody can be asked here.
TEST_F(StartupctlTest, PatternsFiltersAndFilesWantAgreement) {
  for (const wchar_t* const name : {L"ctl many 1", L"ctl many 2", L"ctl many 3"}) {
    SetRun(HKEY_CURRENT_USER, name, Command(name));
  }
  const auto isOn = [](const wchar_t* name) {
    return TextInBothViews(HKEY_CURRENT_USER, kRunKey, name).has_value();
  };
  const std::wstring file = Folder().Write(
      L"ids.txt", "\xEF\xBB\xBF" + Find("ctl many 1")[0]["id"].get<std::string>() + "\r\n\r\nctl many 2\r\n");
  for (const std::vector<std::wstring>& which :
       std::vector<std::vector<std::wstring>>{{L"ctl many*"}, {L"--match", L"ctl many"}, {L"--from", file}}) {
    std::vector<std::wstring> arguments = {L"disable"};
    arguments.insert(arguments.end(), which.begin(), which.end());
    EXPECT_NE(Run(arguments, 1).errors.find("--yes"), std::string::npos);
    EXPECT_TRUE(isOn(L"ctl many 1") && isOn(L"ctl many 2"));
    arguments.push_back(L"--yes");
    Run(arguments);
    EXPECT_FALSE(isOn(L"ctl many 1") || isOn(L"ctl many 2"));
    Run({L"enable", L"ctl many 1", L"ctl many 2", L"ctl many 3"});
  }
  Run({L"delete", L"--missing", L"--location", L"UserRun", L"--match", L"ctl many", L"--yes"});
  EXPECT_TRUE(isOn(L"ctl many 1")) << "none is missing";
  Run({L"delete"}, 2);
}

// A preview changes nothing and says what an undo would; one refusal does not hide what was done.
TEST_F(StartupctlTest, PreviewsAndOutcomesForScripts) {
  SetRun(HKEY_CURRENT_USER, L"ctl plan", Command(L"plan"));
  SetRun(HKEY_CURRENT_USER, L"ctl plan 2", Command(L"two"));
  SetRun(HKEY_LOCAL_MACHINE, L"ctl fixed", Command(L"fixed"), OwnView());
  const std::string plan = Run({L"disable", L"ctl plan", L"--dry-run"}).output;
  EXPECT_NE(plan.find("  Write the value \"ctl plan\" of the key"), std::string::npos) << plan;
  EXPECT_NE(plan.find("  Delete the value \"ctl plan\" of the key"), std::string::npos) << plan;
  const LimitedKey limited(HKEY_LOCAL_MACHINE, kRunKey, LimitedKey::Rights::kReadOnly, OwnView());
  const std::vector<std::wstring> all = {L"disable", L"ctl plan*", L"ctl fixed",
                                         L"--json",  L"--yes",     L"--quiet"};
  std::vector<std::wstring> preview = all;
  preview.push_back(L"--dry-run");
  Json outcomes = Json::parse(Run(preview, 3).output);
  EXPECT_EQ(outcomes[0]["outcome"], "planned");
  EXPECT_EQ(outcomes[0]["steps"].size(), 2u);
  EXPECT_EQ(outcomes[2]["outcome"], "refused");
  EXPECT_TRUE(TextInBothViews(HKEY_CURRENT_USER, kRunKey, L"ctl plan")) << "only said";

  const StartupctlResult result = Run(all, 3);
  EXPECT_EQ(result.errors.find("Disabled"), std::string::npos) << result.errors;
  EXPECT_NE(result.errors.find("Cannot disable \"ctl fixed\""), std::string::npos) << result.errors;
  outcomes = Json::parse(result.output);
  EXPECT_EQ(outcomes[1]["outcome"], "done");
  EXPECT_EQ(outcomes[1]["newId"], Find("ctl plan 2")[0]["id"]);
  EXPECT_EQ(outcomes[1]["newName"], Find("ctl plan 2")[0]["name"]);
  EXPECT_EQ(outcomes[2]["action"], "disable");
  EXPECT_EQ(outcomes[2]["newId"], nullptr);
}

// One that was disabled before and came back: only one of the two can be meant.
TEST_F(StartupctlTest, AChangeMeansTheEntryThatNeedsIt) {
  SetRun(HKEY_CURRENT_USER, L"ctl twice", Command(L"new"));
  SetValue(HKEY_CURRENT_USER, kRunSide, L"ctl twice", Sz(Command(L"old")));
  Run({L"delete", L"ctl twice"}, 1);
  Run({L"disable", L"ctl twice"});
  EXPECT_EQ(TextInBothViews(HKEY_CURRENT_USER, kRunKey, L"ctl twice"), std::nullopt);
  EXPECT_EQ(TextInBothViews(HKEY_CURRENT_USER, kRunSide, L"ctl twice (1)"), Command(L"new"));
  EXPECT_EQ(TextInBothViews(HKEY_CURRENT_USER, kRunSide, L"ctl twice"), Command(L"old"));
}

// The very same key stands in the side place: the handler goes into it.
TEST_F(StartupctlTest, AHandlerGoesIntoItsTwin) {
  const std::wstring classes = L"Software\\Classes\\";
  const std::wstring handlers = classes + L"*\\shellex\\ContextMenuHandlers";
  const std::wstring server = L"{11111111-2222-3333-4444-555555555555}";
  const std::wstring places[] = {handlers + L"\\ctl twin", handlers + L"\\AutorunsDisabled\\ctl twin"};
  const SavedKey saved[] = {{HKEY_CURRENT_USER, handlers},
                            {HKEY_LOCAL_MACHINE, classes + L"CLSID\\" + server, OwnView()}};
  SetValue(HKEY_LOCAL_MACHINE, classes + L"CLSID\\" + server + L"\\InprocServer32", L"", Sz(Program()),
           OwnView());
  for (const std::wstring& place : places) SetValue(HKEY_CURRENT_USER, place, L"", Sz(server));
  for (const Json& item : List()) {
    if (item["key"] == ToUtf8(places[0])) Run({L"disable", FromUtf8(item["name"].get<std::string>())});
  }
  EXPECT_FALSE(GetValue(HKEY_CURRENT_USER, places[0], L""));
  EXPECT_TRUE(GetValue(HKEY_CURRENT_USER, places[1], L""));
}

TEST_F(StartupctlTest, RefusedMovesSayWhy) {
  SetRun(HKEY_CURRENT_USER, L"ctl refused", Command(L"refused"));
  for (const wchar_t* target : {L"sulRegistryShellExtApproved", L"sulRegistryIEBrowserObjects"}) {
    const StartupctlResult result = Run({L"move", L"ctl refused", L"--to", target}, 1);
    EXPECT_NE(result.errors.find(ToUtf8(target)), std::string::npos) << result.errors;
  }
  EXPECT_TRUE(TextInBothViews(HKEY_CURRENT_USER, kRunKey, L"ctl refused"));
}

}  // namespace
}  // namespace smh::test
