// What startupctl prints about the entries of the Run keys and about the default programs.
#include "core/contracts/location_table.h"
#include "tests/hosts/cli/startupctl_fixture.h"

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
  EXPECT_EQ(item["lastWriteTime"].get<std::string>().size(), std::string("2024-05-31T12:00:00+02:00").size());
  EXPECT_EQ(item["can"], Json::parse(R"(["delete","disable","move","changeCommand","execute",)"
                                     R"("showDetails","showLocation"])"));
  const std::string sheet = Run({L"show", L"ctl tray"}).output;
  EXPECT_NE(sheet.find("Aurora Mixer tray icon"), std::string::npos);
  EXPECT_EQ(Json::parse(Run({L"show", L"ctl tray", L"--json"}).output),
            Json::parse(Run({L"list", L"ctl tray", L"--verify", L"--json"}).output).at(0));
  EXPECT_EQ(item["imageIndex"], 3) << "nobody sees icons here, so none are asked for";
}

TEST_F(StartupctlTest, TellsPlacesAndTheLibraryOfAProgramThatServesOne) {
  const std::wstring library = Folder().Write(L"served lib.dll", ReadFileBytes(Program()));
  SetRun(HKEY_CURRENT_USER, L"ctl a\\b", L"rundll32.exe \"" + library + L"\",Start");
  SetValue(HKEY_CURRENT_USER, kRunSide, L"ctl off", Sz(L"C:\\gone.exe"));
  const Json item = Find("ctl a\\b").at(0);
  EXPECT_TRUE(item["file"].get<std::string>().ends_with("\\rundll32.exe")) << item["file"];
  for (const char* key : {"servedFile", "describedFile"}) EXPECT_EQ(item[key], ToUtf8(library));
  EXPECT_EQ(item["startedThrough"], item["file"]);
  EXPECT_EQ(item["company"], "Northlight Audio Ltd.");
  EXPECT_EQ(item["root"], "HKEY_CURRENT_USER");
  EXPECT_EQ(item["view"], HasTwoViews() ? 64 : 32);
  EXPECT_EQ(item["key"], ToUtf8(kRunKey));
  EXPECT_EQ(item["valueName"], "ctl a\\b");
  EXPECT_EQ(item["reachability"], "found");
  EXPECT_TRUE(item["disabledBy"].is_null());
  EXPECT_EQ(item["twin"], HasTwoViews() ? Json("same") : Json());
  EXPECT_EQ(item["twinCommand"], nullptr);
  const Json off = Find("ctl off").at(0);
  EXPECT_EQ(off["disabledBy"], "own");
  EXPECT_EQ(off["reachability"], "missing");
  EXPECT_TRUE(off["servedFile"].is_null());
  const std::string table = Run({L"list"}).output;
  EXPECT_NE(table.find(ToUtf8(library)), std::string::npos) << table;
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

// How odd names are written and selected is tested with the formats and the selector; here that they arrive.
TEST_F(StartupctlTest, OddNamesSelectTheirEntry) {
  SetRun(HKEY_CURRENT_USER, L"ctl " + kLone + L" \u4E2D", Command(L"x"));
  EXPECT_NE(Run({L"list"}).output.find(ToUtf8(Program())), std::string::npos) << "cut without a console";
  EXPECT_NE(Run({L"list", L"--csv"}).output.find(",ctl \\u{d83d} \xE4\xB8\xAD,true,"), std::string::npos);
  Run({L"disable", L"--", L"ctl \\ud83d \u4E2D"});
  EXPECT_TRUE(GetValue(HKEY_CURRENT_USER, kRunSide, L"ctl " + kLone + L" \u4E2D"));
}

TEST_F(StartupctlTest, AnotherTwinIsShownWithItsCommand) {
  if (!HasTwoViews()) GTEST_SKIP() << "one view";
  SetRun(HKEY_LOCAL_MACHINE, L"ctl twin", Command(L"main"), OwnView());
  SetRun(HKEY_LOCAL_MACHINE, L"ctl twin", Command(L"other"));
  const Json item = Find("ctl twin").at(0);
  EXPECT_EQ(item["twin"], "other");
  EXPECT_EQ(item["twinCommand"], ToUtf8(Command(L"other")));
}

TEST_F(StartupctlTest, CsvHasAMarkInAFileOnlyAndColumnsOnRequest) {
  SetRun(HKEY_CURRENT_USER, L"ctl a\nb", Command(L"x"));
  const std::vector<std::wstring> arguments = {L"list",  L"--location", L"UserRun",
                                               L"--csv", L"--columns",  L"caption,enabled"};
  const std::string expected = "caption,enabled\r\nctl a\\u{a}b,true\r\n";
  EXPECT_EQ(Run(arguments).output, expected);
  const std::wstring file = Folder().File(L"list.csv");
  std::vector<std::wstring> withFile = arguments;
  withFile.insert(withFile.end(), {L"--output", file});
  EXPECT_EQ(Run(withFile).output, "");
  EXPECT_EQ(ReadFileBytes(file), "\xEF\xBB\xBF" + expected);
  // What fails before leaves the file as it was.
  const StartupctlResult wrong = Run({L"list", L"--columns", L"captoin", L"--output", file}, 2);
  EXPECT_TRUE(wrong.errors.ends_with("\nSee startupctl list --help.\n")) << wrong.errors;
  EXPECT_EQ(ReadFileBytes(file).size(), expected.size() + 3);
  Run({L"list", L"--output", L"C:\\no folder\\file"}, 1);
}

TEST_F(StartupctlTest, LocationsAreAllNamedAndCounted) {
  SetRun(HKEY_CURRENT_USER, L"ctl a", Command(L"a"));
  SetValue(HKEY_CURRENT_USER, kRunSide, L"ctl b", Sz(Command(L"b")));
  const Json locations = Json::parse(Run({L"locations", L"--json"}).output);
  ASSERT_EQ(locations.size(), static_cast<std::size_t>(kLastLocation));
  const Json& user = locations[4];
  EXPECT_EQ(user["location"], "sulRegistryUserRun");
  EXPECT_EQ(user["enabled"], 1);
  EXPECT_EQ(user["disabled"], 1);
  EXPECT_EQ(user["family"], "Run key");
  EXPECT_EQ(user["place"], "HKEY_CURRENT_USER\\Software\\Microsoft\\Windows\\CurrentVersion\\Run");
  EXPECT_EQ(user["can"].size(), 6u);
  EXPECT_EQ(locations[10]["place"], "Software\\Classes\\*\\shellex\\ContextMenuHandlers");
  EXPECT_EQ(locations[10]["can"], Json({"enable", "disable", "delete"}));
  const std::string table = Run({L"locations"}).output;
  EXPECT_EQ(std::count(table.begin(), table.end(), '\n'), kLastLocation + 1);
}

TEST_F(StartupctlTest, ResolvesCommandLines) {
  EXPECT_EQ(Run({L"resolve", Command(L"/x")}).output, ToUtf8(Program()) + "\n");
  EXPECT_EQ(Run({L"resolve", Program() + L" /x"}).output, ToUtf8(Program()) + "\n");
  Run({L"resolve", L""}, 1);
  EXPECT_EQ(Run({L"resolve", L"C:\\no folder\\gone.exe /x"}, 1).output, "C:\\no folder\\gone.exe\n");
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
  // A name cannot print a line that looks like a success.
  SetRun(HKEY_CURRENT_USER, L"ctl a\nstartupctl: Deleted", Command(L"x"));
  EXPECT_EQ(Run({L"enable", L"ctl a\nstartupctl: Deleted"}).errors,
            "startupctl: \"ctl a\\u{a}startupctl: Deleted\" in sulRegistryUserRun: is enabled already.\n");
  EXPECT_EQ(Run({L"enable", L"ctl a\nstartupctl: Deleted", L"--quiet"}).errors, "");
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
  // For want of a trace nothing ends.
  for (const wchar_t* const file : {L"guardkit.dll", L"StartupManagerHelper.dll"}) {
    WriteFileBytes(Folder().File(file), ReadFileBytes(ThisFolder() + file));
  }
  WriteFileBytes(Folder().File(L"tracekit.dll"), "no library");
  const RegistryTree debugMode(L"Software\\Quillmark\\DebugMode");
  debugMode.Set(L"", L"DebugMode", Dword(1));
  const StartupctlResult untraced = StartupctlProcess({L"list"}, copy).Finish();
  EXPECT_EQ(untraced.exitCode, 0u) << untraced.errors;
}

const std::wstring kClientsKey = L"Software\\Clients";

class ClientsTest : public StartupctlTest {
 protected:
  static void SetClient(const std::wstring& key, const std::wstring& command) {
    SetValue(HKEY_LOCAL_MACHINE, kClientsKey + L'\\' + key + L"\\shell\\open\\command", L"", Sz(command),
             OwnView());
  }

 private:
  const EmptiedKeys emptied_{{kClientsKey}};
};

// What is read of them is tested through the boundary.
TEST_F(ClientsTest, PrintsRegisteredAndAddedPrograms) {
  const std::pair<std::wstring, std::string> kinds[] = {
      {L"Mail", "mail"},         {L"Media", "media"},       {L"StartMenuInternet", "browser"},
      {L"Contacts", "contacts"}, {L"Calendar", "calendar"}, {L"Internet Call", "internetCall"},
      {L"IM", "messaging"}};
  for (const auto& [key, name] : kinds) SetClient(key + L"\\ctl \"" + key, Command(L"/" + key));
  const StartupctlResult result =
      Run({L"clients", L"--json", L"--add", Program(), L"--add", L"C:\\no such folder\\gone.exe"});
  EXPECT_EQ(result.errors, "startupctl: There is no file \"C:\\no such folder\\gone.exe\".\n");
  const Json clients = Json::parse(result.output);
  ASSERT_EQ(clients.size(), 9u);
  for (const auto& [key, name] : kinds) {
    const std::string& kind = name;
    const auto client = std::ranges::find_if(clients, [&](const Json& each) { return each["kind"] == kind; });
    ASSERT_NE(client, clients.end()) << name;
    EXPECT_EQ((*client)["name"], ToUtf8(L"ctl \"" + key));
    EXPECT_EQ((*client)["command"], ToUtf8(Command(L"/" + key)));
    EXPECT_EQ((*client)["company"], "Northlight Audio Ltd.");
    EXPECT_EQ((*client)["imageIndex"], 0);
    EXPECT_EQ((*client)["key"], ToUtf8(kClientsKey + L'\\' + key + L"\\ctl \"" + key));
  }
  EXPECT_EQ(std::ranges::count_if(clients, [](const Json& each) { return each["kind"] == "path"; }), 2);
}

TEST_F(ClientsTest, TellsTheDefaultOfEachKind) {
  for (const wchar_t* name : {L"Mail\\ctl one", L"Mail\\ctl two", L"Media\\ctl three"})
    SetClient(name, Command(name));
  const auto defaults = [] { return Run({L"clients", L"--csv", L"--columns", L"name,default"}).output; };
  const auto expected = [](const char* one, const char* two) {
    return std::string("name,default\r\nctl one,") + one + "\r\nctl two," + two + "\r\nctl three,false\r\n";
  };
  EXPECT_EQ(defaults(), expected("false", "false"));
  SetValue(HKEY_LOCAL_MACHINE, kClientsKey + L"\\Mail", L"", Sz(L"CTL ONE"), OwnView());
  EXPECT_EQ(defaults(), expected("true", "false"));
  SetValue(HKEY_CURRENT_USER, kClientsKey + L"\\Mail", L"", Sz(L"ctl two"));
  EXPECT_EQ(defaults(), expected("false", "true"));
}

TEST_F(ClientsTest, TableNamesEveryProgram) {
  EXPECT_EQ(Json::parse(Run({L"clients", L"--json"}).output), Json::array());
  SetClient(L"Mail\\ctl \x01", Command(L"1"));
  const std::string table = Run({L"clients"}).output;
  EXPECT_NE(table.find("ctl \\u{1}"), std::string::npos);
  EXPECT_NE(table.find(ToUtf8(Program())), std::string::npos) << "cut without a console";
  SetClient(L"Mail\\ctl \x01", L"rundll32.exe \"" + Program() + L"\",Start");
  EXPECT_EQ(Json::parse(Run({L"clients", L"--json"}).output).at(0)["servedFile"], ToUtf8(Program()));
}

}  // namespace
}  // namespace smh::test
