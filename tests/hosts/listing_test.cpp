// What startupctl prints about the entries of the Run keys.
#include "startupctl_fixture.h"

#include "support/child_process.h"
#include "text_encoding.h"

#include <algorithm>

namespace smh::test {
namespace {

const std::wstring kLone(1, static_cast<wchar_t>(0xD83D));

TEST_F(StartupctlTest, ListsAnEntryWithItsDetails) {
  SetRun(HKEY_CURRENT_USER, L"ctl tray", Command(L"/tray"));
  const Json found = Find("ctl tray");
  ASSERT_EQ(found.size(), 1u);
  const Json& item = found[0];
  EXPECT_EQ(item["location"], "sulRegistryUserRun");
  EXPECT_EQ(item["command"], ToUtf8(Command(L"/tray")));
  EXPECT_EQ(item["file"], ToUtf8(Program()));
  EXPECT_EQ(item["fileFound"], true);
  EXPECT_EQ(item["company"], "Northlight Audio Ltd.");
  EXPECT_EQ(item["fileVersion"], "4.2.0.118");
  EXPECT_EQ(item["fileSize"], ReadFileBytes(Program()).size());
  EXPECT_EQ(item["lastWriteTime"].get<std::string>().size(), std::string("2024-05-31T12:00:00").size());
  EXPECT_EQ(item["can"], Json::parse(R"(["delete","disable","move","changeCommand","execute",)"
                                     R"("showDetails","showLocation"])"));
  const std::string sheet = Run({L"show", L"ctl tray"}).output;
  EXPECT_NE(sheet.find("Aurora Mixer tray icon"), std::string::npos);
  EXPECT_EQ(Json::parse(Run({L"show", L"ctl tray", L"--json"}).output), item);
}

TEST_F(StartupctlTest, FiltersByLocationAndState) {
  SetRun(HKEY_CURRENT_USER, L"ctl on", Command(L"1"));
  SetValue(HKEY_CURRENT_USER, kRunSide, L"ctl off", Sz(Command(L"2")));
  SetRun(HKEY_LOCAL_MACHINE, L"ctl common", Command(L"3"), OwnView());
  const auto captions = [](std::vector<std::wstring> arguments) {
    arguments.insert(arguments.begin(), {L"list", L"--json"});
    std::vector<std::string> texts;
    for (const Json& item : Json::parse(Run(arguments).output)) {
      if (item["caption"].get<std::string>().starts_with("ctl ")) texts.push_back(item["caption"]);
    }
    return texts;
  };
  using Texts = std::vector<std::string>;
  EXPECT_EQ(captions({}), (Texts{"ctl on", "ctl off", "ctl common"}));
  EXPECT_EQ(captions({L"--enabled"}), (Texts{"ctl on", "ctl common"}));
  EXPECT_EQ(captions({L"--disabled"}), Texts{"ctl off"});
  EXPECT_EQ(captions({L"--location", L"sulRegistryCommonRun"}), Texts{"ctl common"});
  EXPECT_EQ(captions({L"--location", L"sulRegistryRunServices"}), Texts());
}

TEST_F(StartupctlTest, OddNamesSurviveEveryOutputAndSelectTheirEntry) {
  struct OddName {
    std::wstring name;
    std::string inJson;
    std::string inTable;
  };
  const OddName names[] = {
      {L"ctl \"quoted\"", R"(ctl \"quoted\")", "ctl \"quoted\""},
      {L"ctl back\\slash", R"(ctl back\\slash)", "ctl back\\slash"},
      {L"ctl \x01 control", R"(ctl \u0001 control)", "ctl \\u{1} control"},
      {L"ctl " + kLone + L" lone", R"(ctl \ud83d lone)", "ctl \\u{d83d} lone"},
      {L"ctl \u4E2D\u00E4", "ctl \xE4\xB8\xAD\xC3\xA4", "ctl \xE4\xB8\xAD\xC3\xA4"},
      {L"-ctl dash", "-ctl dash", "-ctl dash"},
  };
  for (const OddName& odd : names) SetRun(HKEY_CURRENT_USER, odd.name, Command(L"x"));
  const std::string json = Run({L"list", L"--json"}).output;
  const std::string table = Run({L"list"}).output;
  EXPECT_NE(table.find(ToUtf8(Program())), std::string::npos) << "cut without a console";
  EXPECT_NE(Run({L"list", L"--csv"}).output.find(",\"ctl \"\"quoted\"\"\",true,"), std::string::npos);
  for (const OddName& odd : names) {
    SCOPED_TRACE(odd.inTable);
    EXPECT_NE(json.find("\"caption\":\"" + odd.inJson + "\""), std::string::npos);
    EXPECT_NE(table.find(odd.inTable), std::string::npos);
    EXPECT_NE(Run({L"show", L"--", FromUtf8(odd.inTable)}).output.find("enabled:"), std::string::npos);
  }
  Run({L"disable", L"ctl \\ud83d lone", L"ctl \\u0001 control"});
  EXPECT_FALSE(GetValue(HKEY_CURRENT_USER, kRunKey, names[3].name));
  EXPECT_TRUE(GetValue(HKEY_CURRENT_USER, kRunSide, names[3].name));
  EXPECT_TRUE(GetValue(HKEY_CURRENT_USER, kRunSide, names[2].name));
}

TEST_F(StartupctlTest, LocationsAreAllNamedAndCounted) {
  SetRun(HKEY_CURRENT_USER, L"ctl a", Command(L"a"));
  SetValue(HKEY_CURRENT_USER, kRunSide, L"ctl b", Sz(Command(L"b")));
  const Json locations = Json::parse(Run({L"locations", L"--json"}).output);
  ASSERT_EQ(locations.size(), 39u);
  const Json& user = locations[4];
  EXPECT_EQ(user["location"], "sulRegistryUserRun");
  EXPECT_EQ(user["enabled"], 1);
  EXPECT_EQ(user["disabled"], 1);
  EXPECT_EQ(user["family"], "Run key");
  EXPECT_EQ(user["place"], "HKEY_CURRENT_USER\\Software\\Microsoft\\Windows\\CurrentVersion\\Run");
  EXPECT_EQ(user["can"].size(), 6u);
  EXPECT_EQ(locations[0]["family"], "Startup folder");
  EXPECT_EQ(locations[10]["family"], "Shell extension handlers");
  EXPECT_EQ(locations[35]["family"], "Approved shell extensions");
  EXPECT_EQ(locations[10]["place"], "Software\\Classes\\*\\shellex\\ContextMenuHandlers");
  EXPECT_EQ(locations[10]["can"], Json({"enable", "disable", "delete"}));
  const std::string table = Run({L"locations"}).output;
  EXPECT_EQ(std::count(table.begin(), table.end(), '\n'), 40);
}

TEST_F(StartupctlTest, ResolvesCommandLines) {
  EXPECT_EQ(Run({L"resolve", Command(L"/x")}).output, ToUtf8(Program()) + "\n");
  EXPECT_EQ(Run({L"resolve", Program() + L" /x"}).output, ToUtf8(Program()) + "\n");
  Run({L"resolve", L""}, 1);
}

TEST_F(StartupctlTest, LogIsWhereTheCommandSays) {
  SetRun(HKEY_CURRENT_USER, L"ctl logged", Command(L"logged"));
  Run({L"list"});
  const std::string path = Run({L"log"}).output;
  ASSERT_TRUE(path.ends_with("\\Quillmark\\Startup Manager\\Logs\\StartupManager.log\n")) << path;
  const std::vector<std::wstring> lines = ReadUtf16Lines(FromUtf8(path.substr(0, path.size() - 1)));
  EXPECT_EQ(std::ranges::count(lines, L"ctl logged (REG_SZ) = \"" + Command(L"logged") + L'"'),
            HasTwoViews() ? 2 : 1);
}

TEST_F(StartupctlTest, ExitCodesAndStreams) {
  const StartupctlResult help = Run({L"--help"});
  EXPECT_NE(help.output.find("Usage: startupctl"), std::string::npos);
  EXPECT_TRUE(help.errors.empty());
  const StartupctlResult wrong = Run({L"list", L"--frob"}, 2);
  EXPECT_TRUE(wrong.output.empty());
  EXPECT_TRUE(wrong.errors.starts_with("startupctl: "));
  const StartupctlResult missing = Run({L"show", L"ctl nothing of that name"}, 1);
  EXPECT_NE(missing.errors.find("ctl nothing of that name"), std::string::npos);
}

TEST_F(StartupctlTest, MissingSiblingIsNamed) {
  const std::wstring copy = Folder().File(L"startupctl.exe");
  WriteFileBytes(copy, ReadFileBytes(ThisFolder() + L"startupctl.exe"));
  for (const wchar_t* present : {L"", L"basekit.dll", L"prefkit.dll", L"raterkit.dll"}) {
    if (*present != 0) WriteFileBytes(Folder().File(present), ReadFileBytes(ThisFolder() + present));
    const StartupctlResult result = StartupctlProcess({L"list"}, copy).Finish();
    EXPECT_EQ(result.exitCode, 1u);
    EXPECT_NE(result.errors.find("is missing"), std::string::npos) << result.errors;
  }
  // A file of that name that is no library.
  WriteFileBytes(Folder().File(L"guardkit.dll"), "no library");
  const StartupctlResult broken = StartupctlProcess({L"list"}, copy).Finish();
  EXPECT_EQ(broken.exitCode, 1u);
  EXPECT_NE(broken.errors.find("guardkit.dll"), std::string::npos) << broken.errors;
}

}  // namespace
}  // namespace smh::test
