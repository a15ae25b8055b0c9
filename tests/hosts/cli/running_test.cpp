// Commands that run something or run on: execute, locate, watch.
#include "tests/hosts/cli/json_schema.h"
#include "tests/hosts/cli/startupctl_fixture.h"
#include "tests/support/test_main.h"
#include "tests/support/waiting.h"

namespace smh::test {

namespace {

SMH_CHILD(LeaveMark) {
  WriteFileBytes(arguments.at(0), "was here");
  return 0;
}

TEST_F(StartupctlTest, ExecuteStartsTheCommandWithItsArguments) {
  const std::wstring mark = Folder().File(L"mark file");
  SetRun(HKEY_CURRENT_USER, L"ctl mark", L"\"" + ThisProgram() + L"\" --child=LeaveMark \"" + mark + L"\"");
  Run({L"execute", L"ctl mark"});
  EXPECT_TRUE(WaitUntil([&] { return GetFileAttributesW(mark.c_str()) != INVALID_FILE_ATTRIBUTES; }));
}

TEST_F(StartupctlTest, ExecuteFailsWithoutABoxThatWaits) {
  Folder().Write(L"broken.exe", "no program");
  SetRun(HKEY_CURRENT_USER, L"ctl missing", L"C:\\no folder\\nothing.exe /x");
  SetRun(HKEY_CURRENT_USER, L"ctl broken", L"\"" + Folder().File(L"broken.exe") + L"\"");
  SetRun(HKEY_CURRENT_USER, L"ctl text", L"\"" + Folder().Write(L"notes.unknown", "text") + L"\"");
  SetValue(HKEY_CURRENT_USER, kRunKey, L"ctl number", Dword(3));
  for (const wchar_t* item : {L"ctl missing", L"ctl broken", L"ctl text", L"ctl number"}) {
    const StartupctlResult result = Run({L"execute", item}, 1);
    EXPECT_TRUE(result.errors.starts_with("startupctl: Cannot execute ")) << result.errors;
  }
}

// The prefix of this suite lacks the starter of the registry editor.
TEST_F(StartupctlTest, LocateTellsThePlaceWithoutTheEditor) {
  SetRun(HKEY_CURRENT_USER, L"ctl\\place", Command(L"here"));
  const StartupctlResult result = Run({L"locate", L"ctl\\place"}, 1);
  for (const std::string& part :
       {std::string("HKEY_CURRENT_USER\n"), ToUtf8(kRunKey) + "\n",
        std::string(HasTwoViews() ? "64-bit" : "32-bit"), std::string(" ctl\\place\n")}) {
    EXPECT_NE(result.output.find(part), std::string::npos) << part << " in " << result.output;
  }
  EXPECT_NE(result.errors.find("the registry editor cannot be started"), std::string::npos) << result.errors;
}

class Watching : public StartupctlTest {
 protected:
  // Starts to watch; the first look is over when this returns.
  void Start(const std::vector<std::wstring>& options) {
    std::vector<std::wstring> arguments = {L"watch"};
    arguments.insert(arguments.end(), options.begin(), options.end());
    process_.emplace(arguments);
    ASSERT_TRUE(
        WaitUntil([this] { return process_->Errors().find("Watching") != std::string::npos; }, 30'000));
  }
  StartupctlProcess& Process() { return *process_; }
  std::vector<Json> Events() const {
    std::vector<Json> events;
    const std::string output = process_->Output();
    for (std::size_t start = 0; start < output.size();) {
      const std::size_t end = output.find('\n', start);
      if (end == std::string::npos) break;
      events.push_back(Json::parse(output.substr(start, end - start)));
      start = end + 1;
    }
    return events;
  }
  bool WaitForEvents(std::size_t count, DWORD milliseconds) {
    return WaitUntil([this, count] { return Events().size() >= count; }, milliseconds);
  }

 private:
  std::optional<StartupctlProcess> process_;
};

TEST_F(Watching, TellsAChangedCommandWithinTwoSecondsAndWhatComesAndGoes) {
  SetRun(HKEY_CURRENT_USER, L"ctl watched", Command(L"before"));
  Start({L"--json", L"--seconds", L"60"});
  const std::string name = Find("ctl watched")[0]["name"];
  ASSERT_TRUE(Events().empty());
  SetRun(HKEY_CURRENT_USER, L"ctl watched", Command(L"after"));
  ASSERT_TRUE(WaitForEvents(1, 2'000));
  const Json event = Events()[0];
  EXPECT_EQ(event["event"], "changed");
  EXPECT_EQ(event["name"], name);
  EXPECT_EQ(event["command"], ToUtf8(Command(L"after")));
  EXPECT_EQ(event["changes"],
            Json::parse(R"([{"key":"command","old":)" + Json(ToUtf8(Command(L"before"))).dump() +
                        R"(,"new":)" + Json(ToUtf8(Command(L"after"))).dump() + "}]"));
  const JsonSchema schema(Json::parse(ReadFileBytes(ThisFolder() + L"startupctl.schema.json")));
  EXPECT_EQ(schema.FaultIn(event, "watch"), "");

  SetRun(HKEY_CURRENT_USER, L"ctl coming", Command(L"coming"));
  ASSERT_TRUE(WaitForEvents(2, 5'000));
  RemoveValue(HKEY_CURRENT_USER, kRunKey, L"ctl coming");
  ASSERT_TRUE(WaitForEvents(3, 5'000));
  const std::vector<Json> events = Events();
  EXPECT_EQ(events[1]["event"], "added");
  EXPECT_EQ(events[1]["company"], "Northlight Audio Ltd.");
  EXPECT_EQ(events[2]["event"], "removed");
  EXPECT_EQ(events[2]["name"], events[1]["name"]);
  // This program switches it: one event, with both names.
  Run({L"disable", L"ctl watched"});
  ASSERT_TRUE(WaitForEvents(4, 5'000));
  const Json last = Events()[3];
  EXPECT_EQ(last["event"], "disabled");
  EXPECT_EQ(last["changes"][1], Json::parse(R"({"key":"name","old":)" + Json(name).dump() + R"(,"new":)" +
                                            last["name"].dump() + "}"));
}

TEST_F(Watching, TellsTheLastSecondToo) {
  SetRun(HKEY_CURRENT_USER, L"ctl late", Command(L"late"));
  Start({L"--json", L"--seconds", L"2"});
  Sleep(1'900);
  SetValue(HKEY_CURRENT_USER, kRunKey, L"ctl late", Sz(Command(L"last")));
  Process().Finish(10'000);
  const std::vector<Json> events = Events();
  ASSERT_EQ(events.size(), 1u);
  EXPECT_EQ(events[0]["command"], ToUtf8(Command(L"last")));
}

TEST_F(Watching, EndsByTimeAndByBreak) {
  SetRun(HKEY_CURRENT_USER, L"ctl known", Command(L"known"));
  Start({L"--csv", L"--seconds", L"1"});
  const StartupctlResult timed = Process().Finish(10'000);
  EXPECT_EQ(timed.exitCode, 0u);
  EXPECT_TRUE(timed.output.starts_with("event,time,changes,id,index,"));
  EXPECT_EQ(timed.output.find("ctl known"), std::string::npos) << "the first look makes no events";
  Start({});
  Process().Break();
  const StartupctlResult broken = Process().Finish(10'000);
  EXPECT_EQ(broken.exitCode, 0u) << broken.errors;
}

}  // namespace
}  // namespace smh::test
