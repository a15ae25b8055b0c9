// Changes made by startupctl, looked at and taken back by startupctl.
#include "core/contracts/intf_safeguard.h"
#include "hosts/common/journal.h"
#include "hosts/common/library.h"
#include "tests/hosts/cli/json_schema.h"
#include "tests/hosts/cli/startupctl_fixture.h"
#include "tests/support/startup_folders.h"
#include "tests/support/state_dump.h"
#include "tests/support/test_main.h"

namespace smh::test {

namespace {

class StartupctlUndo : public StartupctlTest {
 protected:
  StartupctlUndo() {
    UseCheckpoints(true);
    ClearJournal();
  }
  ~StartupctlUndo() override { ClearJournal(); }

  static Json Checkpoints() { return Json::parse(Run({L"checkpoints", L"--json"}).output); }
  static std::string DumpRunKeys() {
    std::string dump = DumpKey(HKEY_CURRENT_USER, kRunKey) + DumpKey(HKEY_LOCAL_MACHINE, kRunKey);
    return HasTwoViews() ? dump + DumpKey(HKEY_LOCAL_MACHINE, kRunKey, KEY_WOW64_64KEY) : dump;
  }
};

TEST_F(StartupctlUndo, OneOfThreeChangesIsTakenBack) {
  for (const wchar_t* name : {L"ctl one", L"ctl two", L"ctl three"})
    SetRun(HKEY_CURRENT_USER, name, Command(name));
  const std::string before = DumpRunKeys();
  EXPECT_EQ(Checkpoints(), Json::array());
  for (const wchar_t* name : {L"ctl one", L"ctl two", L"ctl three"}) Run({L"disable", name});

  const Json list = Checkpoints();
  ASSERT_EQ(list.size(), 3u);
  EXPECT_EQ(list[1]["title"], "Startup Manager: Disabling ctl two");
  EXPECT_EQ(list[1]["state"], "done");
  EXPECT_EQ(list[1]["undoes"], nullptr);
  EXPECT_EQ(list[1]["time"].get<std::string>().size(), 25u);
  const std::wstring second = std::to_wstring(list[1]["id"].get<int>());
  const std::string shown = Run({L"undo", L"--show", second}).output;
  EXPECT_NE(shown.find("Restore the value \"ctl two\""), std::string::npos) << shown;
  EXPECT_EQ(Find("ctl two")[0]["enabled"], false);

  Run({L"undo", second});
  EXPECT_EQ(Find("ctl one")[0]["enabled"], false);
  EXPECT_EQ(Find("ctl two")[0]["enabled"], true);
  EXPECT_EQ(Checkpoints()[2]["state"], "undone");
  EXPECT_EQ(Json::parse(Run({L"checkpoints", L"--json", L"--limit", L"1"}).output).at(0)["undoes"],
            list[1]["id"]);
  Run({L"undo", second}, 1);
  Run({L"redo"});
  Run({L"redo"}, 1);
  EXPECT_EQ(Find("ctl two")[0]["enabled"], false);
  Run({L"redo", second}, 1);
  for (int i = 0; i < 3; ++i) Run({L"undo"});
  EXPECT_EQ(DumpRunKeys(), before);
  EXPECT_EQ(Run({L"undo"}, 1).errors, "startupctl: There is nothing to undo.\n");
  EXPECT_EQ(Run({L"undo", L"4711"}, 1).errors, "startupctl: Cannot undo: there is no such checkpoint.\n");
  for (const auto& wrong : {std::vector<std::wstring>{L"undo", L"0"}, {L"undo", L"--show", L"--force"}}) {
    Run(wrong, 2);
  }
  Run({L"disable", L"ctl one", L"ctl two", L"ctl three"});
  EXPECT_EQ(Checkpoints()[0]["title"], "Disabling 3 entries") << "one command, one undo";
  Run({L"undo"});
  EXPECT_EQ(DumpRunKeys(), before);
}

TEST_F(StartupctlUndo, ConflictIsNamedAndForced) {
  SetRun(HKEY_CURRENT_USER, L"ctl late", Command(L"old"));
  Run({L"change", L"ctl late", L"--command", Command(L"new")});
  SetRun(HKEY_CURRENT_USER, L"ctl late", Command(L"newer"));
  const StartupctlResult refused = Run({L"undo"}, 1);
  EXPECT_NE(refused.errors.find("\nconflict     Give the value \"ctl late\""), std::string::npos)
      << refused.errors;
  EXPECT_EQ(TextInBothViews(HKEY_CURRENT_USER, kRunKey, L"ctl late"), Command(L"newer"));
  const StartupctlResult forced = Run({L"undo", L"--force"});
  EXPECT_NE(forced.errors.find("\noverwritten  "), std::string::npos) << forced.errors;
  EXPECT_EQ(TextInBothViews(HKEY_CURRENT_USER, kRunKey, L"ctl late"), Command(L"old"));
}

// Adds Run values, each in a part of its own, in one action; without "end" as the first argument it dies in
// that.
SMH_CHILD(AddInOneAction) {
  const Journal journal;
  const ScopedModule library = LoadFromOwnFolder(ISafeguard::kLibrary);
  auto& safeguard = AskService<ISafeguard>(library.Get());
  ComPtr<IRegAccess> access;
  HKEY key = nullptr;
  journal.BeginAction(L"Startup Manager: Adding entries");
  if (safeguard.GetRegAccess(access.Put()) != S_OK) return 1;
  if (access->OpenKey(HKEY_CURRENT_USER, kRunKey.c_str(), &key, KEY_ALL_ACCESS, 0) != ERROR_SUCCESS) return 1;
  for (std::size_t i = 1; i < arguments.size(); ++i) {
    safeguard.BeginCheckpoint((L"Startup Manager: Adding " + arguments[i]).c_str());
    if (access->SetValue(key, arguments[i].c_str(), 4, L"c", REG_SZ, 0) != ERROR_SUCCESS) return 1;
    safeguard.EndCheckpoint();
  }
  if (arguments[0] != L"end") TerminateProcess(GetCurrentProcess(), 0);
  access->CloseKey(key);
  return journal.EndAction() == 0 ? 1 : 0;
}

TEST_F(StartupctlUndo, PartsAreShownTakenBackAndForgotten) {
  ASSERT_EQ(RunChild(L"AddInOneAction", {L"end", L"ctl one", L"ctl two", L"ctl three"}).exitCode, 0u);
  ASSERT_EQ(Checkpoints().size(), 1u);
  EXPECT_EQ(Checkpoints()[0]["parts"], 3);
  const auto details = [] { return Json::parse(Run({L"checkpoints", L"show", L"1", L"--json"}).output); };
  const JsonSchema schema(Json::parse(ReadFileBytes(ThisFolder() + L"startupctl.schema.json")));
  EXPECT_EQ(schema.FaultIn(details(), "checkpoints show"), "");
  EXPECT_EQ(details()["partList"][1]["title"], "Startup Manager: Adding ctl two");

  const auto left = [] {
    std::vector<std::wstring> names;
    for (const wchar_t* name : {L"ctl one", L"ctl two", L"ctl three"}) {
      if (GetValue(HKEY_CURRENT_USER, kRunKey, name)) names.emplace_back(name);
    }
    return names;
  };
  using Names = std::vector<std::wstring>;
  Run({L"undo", L"1", L"--only", L"CTL TWO"});
  Run({L"undo", L"2", L"--only", L"ctl two"});
  EXPECT_EQ(left().size(), 3u) << "a part of an undo goes by the same name";
  EXPECT_EQ(Run({L"undo", L"1", L"--only", L"CTL TWO"}).errors,
            "startupctl: Undid one part of checkpoint 1 \"Startup Manager: Adding entries\".\n");
  EXPECT_EQ(left(), (Names{L"ctl one", L"ctl three"}));
  EXPECT_EQ(details()["partList"][1]["state"], "undone");
  EXPECT_EQ(details()["state"], "partly done");
  const std::string shown = Run({L"undo", L"1", L"--only", L"3", L"--show"}).output;
  EXPECT_NE(shown.find("ctl three"), std::string::npos);
  EXPECT_EQ(shown.find("ctl one"), std::string::npos);
  Run({L"undo", L"1", L"--only", L"two"}, 1);
  Run({L"undo", L"--only", L"1"}, 2);
  Run({L"undo", L"1", L"--only", L"3", L"--only", L"ctl three"});
  EXPECT_EQ(left(), Names{L"ctl one"});
  Run({L"undo"});
  EXPECT_EQ(left(), Names());

  Run({L"checkpoints", L"prune"}, 2);
  Run({L"checkpoints", L"prune", L"--keep", L"0"}, 1);  // nobody can be asked
  EXPECT_NE(Run({L"checkpoints", L"prune", L"--keep", L"0", L"--dry-run"}).output.find("Adding entries"),
            std::string::npos);
  Run({L"checkpoints", L"prune", L"--keep", L"1", L"--yes"});
  Run({L"checkpoints", L"prune", L"--days", L"4000000000", L"--yes"});
  EXPECT_EQ(details()["state"], "undone");
  Run({L"checkpoints", L"prune", L"4711"}, 1);
  Run({L"checkpoints", L"prune", L"--keep", L"0", L"--yes"});
  EXPECT_EQ(Checkpoints(), Json::array());
}

// One change that would push out what the user can undo now is asked about, too.
TEST_F(StartupctlUndo, WhatWouldPushOthersOutIsAskedAbout) {
  const StartupPlaces user(StartupPlaces::Whose::kUser);
  SetValue(HKEY_CURRENT_USER, kSettings, L"KeptMegabytes", Dword(1));
  for (const char fill : {'1', '2'}) {
    const std::wstring file = user.startup + L"ctl large.exe";
    WriteFileBytes(file, std::string(700'000, fill));
    if (fill == '2') {
      const std::string refused = Run({L"delete", L"ctl large"}, 1).errors;
      EXPECT_NE(refused.find("Deleting ctl large"), std::string::npos) << refused;
      EXPECT_TRUE(std::filesystem::exists(file));
    }
    Run({L"delete", L"ctl large", L"--yes"});
  }
  EXPECT_EQ(Checkpoints()[1]["state"], "dropped");
}

TEST_F(StartupctlUndo, InterruptedChangesAreNamedAtEveryStart) {
  ASSERT_EQ(RunChild(L"AddInOneAction", {L"die", L"ctl cut"}).exitCode, 0u);
  EXPECT_EQ(
      Run({L"locations"}).errors,
      "startupctl: Interrupted: checkpoint 1 \"Startup Manager: Adding entries\". \"startupctl undo ID\" "
      "takes one back.\n");
  Run({L"undo"});
  EXPECT_FALSE(GetValue(HKEY_CURRENT_USER, kRunKey, L"ctl cut"));
  EXPECT_EQ(Run({L"locations"}).errors, "");
}

}  // namespace
}  // namespace smh::test
