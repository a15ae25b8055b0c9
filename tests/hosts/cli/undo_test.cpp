// Changes made by startupctl, looked at and taken back by startupctl.
#include "infra/files/file_facts.h"
#include "tests/hosts/cli/startupctl_fixture.h"
#include "tests/support/startup_folders.h"
#include "tests/support/state_dump.h"

#include <shlobj.h>

#include <filesystem>

namespace smh::test {

namespace {

namespace fs = std::filesystem;

class StartupctlUndo : public StartupctlTest {
 protected:
  StartupctlUndo() {
    UseCheckpoints(true);
    Clear();
  }
  ~StartupctlUndo() override { Clear(); }

  // Tests run with administrators' rights.
  static fs::path JournalFolder() {
    return fs::path(ShellFolder(CSIDL_COMMON_APPDATA)) / L"Quillmark\\Startup Manager\\Journal";
  }
  static Json Checkpoints() { return Json::parse(Run({L"checkpoints", L"--json"}).output); }
  static std::string DumpRunKeys() {
    std::string dump = DumpKey(HKEY_CURRENT_USER, kRunKey) + DumpKey(HKEY_LOCAL_MACHINE, kRunKey);
    return HasTwoViews() ? dump + DumpKey(HKEY_LOCAL_MACHINE, kRunKey, KEY_WOW64_64KEY) : dump;
  }

 private:
  static void Clear() {
    std::error_code ignored;
    fs::remove_all(JournalFolder(), ignored);
  }
};

TEST_F(StartupctlUndo, OneOfThreeChangesIsTakenBack) {
  for (const wchar_t* name : {L"ctl one", L"ctl two", L"ctl three"})
    SetRun(HKEY_CURRENT_USER, name, Command(name));
  const std::string before = DumpRunKeys();
  EXPECT_EQ(Checkpoints(), Json::array());
  Run({L"disable", L"ctl one", L"ctl two", L"ctl three"});

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
  Run({L"undo"}, 1);
  Run({L"undo", L"4711"}, 1);
  for (const auto& wrong : {std::vector<std::wstring>{L"undo", L"0"}, {L"undo", L"--show", L"--force"}}) {
    Run(wrong, 2);
  }
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

TEST_F(StartupctlUndo, InterruptedChangesAreNamedAtEveryStart) {
  SetRun(HKEY_CURRENT_USER, L"ctl cut", Command(L"cut"));
  Run({L"delete", L"ctl cut"});
  const fs::path file = JournalFolder() / L"00000001.journal";
  // Without its end, which is the last 13 bytes, it is as its owner's death leaves it.
  fs::resize_file(file, fs::file_size(file) - 13);
  fs::rename(file, JournalFolder() / L"00000001.open");
  EXPECT_EQ(Run({L"locations"}).errors,
            "startupctl: Interrupted: checkpoint 1 \"Startup Manager: Deleting ctl cut\". \"startupctl undo "
            "ID\" takes "
            "one back.\n");
  Run({L"undo"});
  EXPECT_EQ(TextInBothViews(HKEY_CURRENT_USER, kRunKey, L"ctl cut"), Command(L"cut"));
  EXPECT_EQ(Run({L"locations"}).errors, "");
}

}  // namespace
}  // namespace smh::test
