// snapshot and compare on the real locations.
#include "tests/hosts/cli/startupctl_fixture.h"
#include "tests/support/startup_folders.h"

namespace smh::test {

namespace {

class SnapshotCommands : public StartupctlTest {
 protected:
  SnapshotCommands() {
    SetRun(HKEY_CURRENT_USER, L"ctl on", Command(L"on"));
    SetValue(HKEY_CURRENT_USER, kRunSide, L"ctl off", Sz(Command(L"off")));
    Run({L"add", L"--location", L"FolderUser", L"--name", L"ctl file", L"--command", Command(L"file")});
    Run({L"snapshot", file});
  }

  // "difference name" of every one, by names.
  Json Compared(const std::vector<std::wstring>& files, DWORD exitCode) const {
    std::vector<std::wstring> arguments = {L"compare", L"--json"};
    arguments.insert(arguments.end(), files.begin(), files.end());
    Json texts = Json::array();
    for (const Json& each : Json::parse(Run(arguments, exitCode).output)) {
      texts.push_back(each["difference"].get<std::string>() + " " + each["name"].get<std::string>());
    }
    return texts;
  }

  const StartupPlaces user{StartupPlaces::Whose::kUser};
  const std::wstring file = Folder().File(L"a snapshot.json");
};

TEST_F(SnapshotCommands, CompareTellsWhatDiffersAndExitsWithFour) {
  EXPECT_EQ(Compared({file}, 0), Json::array());
  EXPECT_EQ(Run({L"compare", file}).output, "");
  const std::string bytes = ReadFileBytes(file);
  SetValue(HKEY_CURRENT_USER, kRunKey, L"ctl on", ExpandSz(Command(L"on")));
  EXPECT_EQ(Compared({file}, 0), Json::array()) << "types do not count";
  SetRun(HKEY_CURRENT_USER, L"ctl on", Command(L"other"));
  SetRun(HKEY_CURRENT_USER, L"ctl new", Command(L"new"));
  Run({L"enable", L"ctl off"});
  Run({L"delete", L"ctl file"});
  const Json differences = {"removed ctl file.lnk", "added ctl new", "switched ctl off", "changed ctl on"};
  EXPECT_EQ(Compared({file}, 4), differences);
  const std::wstring later = Folder().Write(L"later.json", "replaced");
  Run({L"snapshot", later});
  EXPECT_EQ(Compared({file, later}, 4), differences);
  EXPECT_EQ(ReadFileBytes(file), bytes);
  const StartupctlResult table = Run({L"compare", file, later}, 4);
  EXPECT_NE(table.output.find("disabled: " + ToUtf8(Command(L"off"))), std::string::npos) << table.output;
  EXPECT_EQ(table.errors, "startupctl: 4 entries differ.\n");
}

TEST_F(SnapshotCommands, ApplyBringsTheStateBackAsOneActionAndUndoTakesItBack) {
  UseCheckpoints(true);
  Run({L"delete", L"ctl file", L"ctl off"});
  SetRun(HKEY_CURRENT_USER, L"ctl on", Command(L"other"));
  SetRun(HKEY_CURRENT_USER, L"ctl new", Command(L"new"));
  const std::wstring turned = Folder().File(L"turned.json");
  Run({L"snapshot", turned});
  // Previewed or not agreed to, nothing changes.
  const Json planned = Json::parse(Run({L"apply", file, L"--dry-run", L"--json"}).output);
  EXPECT_EQ(planned.size(), 3u);
  Run({L"apply", file}, 1);
  EXPECT_EQ(Compared({turned}, 0), Json::array());

  Run({L"apply", file, L"--yes"});
  EXPECT_EQ(Compared({file}, 4), Json({"added ctl new"}));
  EXPECT_EQ(GetValue(HKEY_CURRENT_USER, kRunKey, L"ctl off"), std::nullopt);
  Run({L"apply", file, L"--yes", L"--delete-others"});
  EXPECT_EQ(Compared({file}, 0), Json::array());
  EXPECT_NE(Run({L"apply", file, L"--delete-others"}).errors.find("already"), std::string::npos);
  Run({L"undo"});
  Run({L"undo"});
  EXPECT_EQ(Compared({turned}, 0), Json::array());
}

TEST_F(SnapshotCommands, ApplyDoesWhatItCanAndTellsTheRest) {
  std::string text = ReadFileBytes(file);
  text.insert(text.find("\"entries\":[") + 11,
              R"({"location":"sulRegistryAllRegContextMenuHandlers","root":"HKEY_CURRENT_USER","view":64,)"
              R"("key":"Software\\Classes\\*\\shellex\\ContextMenuHandlers\\ctl menu","valueName":null,)"
              R"("command":"C:\\menu.dll","enabled":true},)");
  const std::wstring more = Folder().Write(L"more.json", text);
  Run({L"disable", L"ctl on"});
  for (int i = 0; i < 2; ++i) {
    const StartupctlResult result = Run({L"apply", more, L"--yes"}, 3);
    EXPECT_NE(result.errors.find("Cannot add \"ctl menu\""), std::string::npos) << result.errors;
    EXPECT_EQ(Compared({file}, 0), Json::array());
  }
}

TEST_F(SnapshotCommands, FailuresAreNamedAndLeaveTheFileThatIsThere) {
  const std::wstring broken = Folder().Write(L"broken.json", ReadFileBytes(file).substr(0, 100));
  const std::wstring large = Folder().Write(L"large.json", std::string((32u << 20) + 1, ' '));
  const std::pair<std::vector<std::wstring>, const char*> rows[] = {
      {{L"compare", broken}, "not valid JSON"},
      {{L"compare", file, broken}, "broken.json"},
      {{L"compare", large}, "more than 32 MB"},
      {{L"compare", Folder().Path()}, "There is no file"},
      {{L"compare", L""}, "There is no file"},
      {{L"snapshot", Folder().Path()}, "Cannot write"},
      {{L"snapshot", L"Z:\\no such folder\\x"}, "Cannot write"},
  };
  for (const auto& [arguments, reason] : rows) {
    const StartupctlResult result = Run(arguments, 1);
    EXPECT_NE(result.errors.find(reason), std::string::npos) << result.errors;
    EXPECT_EQ(result.output, "");
  }
  EXPECT_EQ(Compared({file}, 0), Json::array());
}

}  // namespace
}  // namespace smh::test
