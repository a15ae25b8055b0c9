// What startupctl prints about the default programs.
#include "startupctl_fixture.h"

#include "text_encoding.h"

#include <algorithm>

namespace smh::test {
namespace {

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
  const auto of = [&](const std::string& kind, std::size_t which = 0) {
    Json found = Json::array();
    std::ranges::copy_if(clients, std::back_inserter(found),
                         [&](const Json& c) { return c["kind"] == kind; });
    return found.at(which);
  };
  for (const auto& [key, name] : kinds) {
    const Json client = of(name);
    EXPECT_EQ(client["name"], ToUtf8(L"ctl \"" + key));
    EXPECT_EQ(client["command"], ToUtf8(Command(L"/" + key)));
    EXPECT_EQ(client["file"], ToUtf8(Program()));
    EXPECT_EQ(client["fileFound"], true);
    EXPECT_EQ(client["company"], "Northlight Audio Ltd.");
    EXPECT_EQ(client["description"], "Aurora Mixer tray icon");
    EXPECT_EQ(client["imageIndex"], 0);
    EXPECT_EQ(client["key"], ToUtf8(kClientsKey + L'\\' + key + L"\\ctl \"" + key));
  }
  EXPECT_EQ(of("path", 0)["file"], ToUtf8(Program()));
  EXPECT_EQ(of("path", 0)["version"], "4.2.0.118");
  EXPECT_EQ(of("path", 1)["name"], "gone");
  EXPECT_EQ(of("path", 1)["fileFound"], false);
}

TEST_F(ClientsTest, TableNamesEveryProgram) {
  EXPECT_EQ(Json::parse(Run({L"clients", L"--json"}).output), Json::array());
  SetClient(L"Mail\\ctl \x01", Command(L"1"));
  const std::string table = Run({L"clients"}).output;
  EXPECT_NE(table.find("ctl \\u{1}"), std::string::npos);
  EXPECT_NE(table.find(ToUtf8(Program())), std::string::npos) << "cut without a console";
}

}  // namespace
}  // namespace smh::test
