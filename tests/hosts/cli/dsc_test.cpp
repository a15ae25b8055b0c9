// The resource for configuration engines: its manifest by the published rules, and each verb as an engine
// calls it.
#include "core/contracts/location_table.h"
#include "hosts/cli/dsc_instance.h"
#include "hosts/common/flat_json.h"
#include "hosts/common/host_error.h"
#include "tests/hosts/cli/snapshot_entries.h"
#include "tests/hosts/cli/startupctl_fixture.h"

#include <regex>
#include <set>

namespace smh::test {

namespace {

using Keys = std::set<std::string>;

Keys KeysOf(const Json& object) {
  Keys keys;
  for (const auto& member : object.items()) keys.insert(member.key());
  return keys;
}

bool Holds(const Keys& all, const Keys& some) {
  return std::ranges::includes(all, some);
}

// The schema "DSC resource manifest", version 3: what a command must and may have, and that its input comes
// on standard input, in the environment, or in one argument.
TEST(DscManifest, FollowsThePublishedSchema) {
  const Json manifest = Json::parse(ReadFileBytes(ThisFolder() + L"startupmanager.dsc.resource.json"));
  EXPECT_TRUE(Holds(KeysOf(manifest), {"$schema", "type", "version", "get"}));
  EXPECT_TRUE(Holds({"$schema", "adapter", "delete", "description", "exitCodes", "export", "get", "kind",
                     "resolve", "schema", "set", "tags", "test", "type", "validate", "version", "whatIf"},
                    KeysOf(manifest)));
  EXPECT_EQ(manifest["$schema"], "https://aka.ms/dsc/schemas/v3/bundled/resource/manifest.json");
  EXPECT_TRUE(std::regex_match(manifest["type"].get<std::string>(), std::regex(R"(\w+(\.\w+){0,3}/\w+)")));
  EXPECT_TRUE(std::regex_match(manifest["version"].get<std::string>(), std::regex(R"(\d+\.\d+\.\d+)")));
  for (const Json& tag : manifest["tags"]) {
    EXPECT_TRUE(std::regex_match(tag.get<std::string>(), std::regex(R"(\w+)")));
  }
  const std::pair<const char*, Keys> commands[] = {
      {"get", {}},
      {"set", {"implementsPretest", "handlesExist", "return"}},
      {"test", {"return"}},
      {"export", {}},
  };
  for (const auto& [name, more] : commands) {
    const Json& command = manifest[name];
    Keys allowed = {"executable", "args", "input"};
    allowed.insert(more.begin(), more.end());
    EXPECT_TRUE(Holds(allowed, KeysOf(command))) << name;
    EXPECT_EQ(command["executable"], "startupctl");
    EXPECT_EQ(command["args"][1], name);
    int inputs =
        command.contains("input") && (command["input"] == "stdin" || command["input"] == "env") ? 1 : 0;
    for (const Json& argument : command["args"]) {
      if (argument.is_object() && Holds({"jsonInputArg", "mandatory"}, KeysOf(argument))) ++inputs;
    }
    EXPECT_EQ(inputs, 1) << name;
  }
  // Without handlesExist an engine calls a command of its own to delete.
  EXPECT_EQ(manifest["set"]["handlesExist"], true);
  for (const char* name : {"set", "test"}) EXPECT_EQ(manifest[name]["return"], "state");
  EXPECT_EQ(manifest["schema"],
            Json::parse(R"({"command":{"executable":"startupctl","args":["dsc","schema"]}})"));
  for (const auto& code : manifest["exitCodes"].items()) {
    EXPECT_TRUE(std::regex_match(code.key(), std::regex("-?[0-9]+")) && code.value().is_string());
  }
}

ItemRecord SwitchedOff(const SnapshotEntry& entry) {
  ItemRecord item = Item(entry);
  item.starts = kStartsNo;
  item.reasons = kReasonSwitchedOff;
  return item;
}

const std::vector<ItemRecord> kItems = {Item(User(L"one", L"1")),          Item(User(L"one", L"2", false)),
                                        Item(User(L"off", L"3", false)),   Item(User(L"off", L"4", false)),
                                        Item(Shortcut(L"file.lnk", L"5")), Item(User(L"\xD800", L"6")),
                                        SwitchedOff(User(L"tm", L"7")),    Item(User(L"tm", L"8", false))};

// The same name in the other view.
std::vector<ItemRecord> WithPlainTwo() {
  std::vector<ItemRecord> items = {Item(User(L"two", L"8")), Item(User(L"two", L"9"))};
  items[1].view = 32;
  return items;
}

DscInstance Wanted(const std::string& more) {
  const bool hasLocation = more.find("location") != std::string::npos;
  return ParseDscInstance((hasLocation ? "{" : "{\"location\":\"UserRun\",") + more + "}");
}

DscState StateOf(const DscInstance& wanted) {
  return {wanted.location, wanted.name, wanted.command, kItems};
}

// What has to be done is planned as for snapshots; here how many entries are left and in what state.
TEST(DscState, TakesAllEntriesOfANameForOneInstance) {
  const struct {
    const char* wanted;
    bool fits;
    const wchar_t* target;  // command and state of each
  } rows[] = {
      {R"("name":"ONE")", true, L"1+2-"},
      {R"("name":"one","command":"1","enabled":true,"_exist":true)", true, L"1+2-"},
      {R"("name":"one","command":"2")", false, L"2+2-"},
      {R"("name":"one","enabled":false,"_inDesiredState":null)", false, L"1-2-"},
      {R"("name":"one","_exist":false)", false, L""},
      {R"("name":"off","command":"4","enabled":false)", true, L"4-3-"},
      {R"("name":"off","command":"4","enabled":true)", false, L"4+3-"},
      {R"("name":"none","command":"7","enabled":false)", false, L"7-"},
      {R"("name":"none","_exist":false)", true, L""},
      {R"("location":"sulFolderUser","name":"File","enabled":true)", true, L"5+"},
      {R"("name":"tm","command":"7","enabled":false)", true, L"7~8-"},
      {R"("name":"tm","command":"8","enabled":true)", false, L"8+8-"},
  };
  for (const auto& row : rows) {
    const DscInstance wanted = Wanted(row.wanted);
    const DscState state = StateOf(wanted);
    EXPECT_EQ(state.Fits(wanted), row.fits) << row.wanted;
    std::wstring target;
    for (const SnapshotEntry& entry : state.Target(wanted, {})) {
      target += entry.command + (!entry.enabled ? L"-" : entry.switchedOff == true ? L"~" : L"+");
      EXPECT_EQ(entry.enabled, entry.disabledBy.empty());
    }
    EXPECT_EQ(target, row.target) << row.wanted;
  }
  EXPECT_THROW(StateOf(Wanted(R"("name":"none")")).Target(Wanted(R"("name":"none")"), {}), HostError);
}

TEST(DscState, ExportsALinePerInstance) {
  std::vector<std::wstring> leftOut;
  EXPECT_EQ(ExportLines(kItems, {}, leftOut),
            L"{\"location\":\"sulFolderUser\",\"name\":\"file.lnk\",\"command\":\"5\",\"enabled\":true,\"_"
            L"exist\":true}\n"
            L"{\"location\":\"sulRegistryUserRun\",\"name\":\"off\",\"command\":\"3\",\"enabled\":false,\"_"
            L"exist\":true}\n"
            L"{\"location\":\"sulRegistryUserRun\",\"name\":\"one\",\"command\":\"1\",\"enabled\":true,\"_"
            L"exist\":true}\n"
            L"{\"location\":\"sulRegistryUserRun\",\"name\":\"tm\",\"command\":\"7\",\"enabled\":false,\"_"
            L"exist\":true}\n");
  EXPECT_EQ(leftOut, std::vector<std::wstring>{L"\xD800"});
  EXPECT_TRUE(ExportLines(kItems, ParseDscFilter(R"({"enabled":true,"location":"UserRun"})"), leftOut)
                  .ends_with(L"\"one\",\"command\":\"1\",\"enabled\":true,\"_exist\":true}\n"));
}

TEST(DscInstance, WhatIsNoneIsRefused) {
  for (const char* const input : {"", "{}", "[]", R"({"location":"sulNone","name":"x"})",
                                  R"({"location":"sulRegistryUserRun","name":7})",
                                  R"({"location":"sulRegistryUserRun","name":"x","frob":1})",
                                  R"({"location":"sulRegistryUserRun","name":"x","command":""})",
                                  R"({"location":"sulRegistryUserRun","name":"x\u0000"})"}) {
    EXPECT_THROW(ParseDscInstance(input), JsonFault) << input;
  }
}

TEST(DscState, IsDisabledWhenNoneIsEnabled) {
  const DscInstance wanted = Wanted(R"("name":"two","enabled":false)");
  for (const SnapshotEntry& entry :
       DscState(wanted.location, wanted.name, wanted.command, WithPlainTwo()).Target(wanted, {})) {
    EXPECT_FALSE(entry.enabled) << entry.view;
  }
}

class Dsc : public StartupctlTest {
 protected:
  // What the verb answers to the instance of the user's Run key on its standard input.
  static Json Call(const std::wstring& verb, Json instance, DWORD exitCode = 0) {
    instance["location"] = "sulRegistryUserRun";
    const StartupctlResult result = StartupctlProcess({L"dsc", verb}, {}, instance.dump()).Finish();
    EXPECT_EQ(result.exitCode, exitCode) << result.errors;
    return result.output.empty() ? Json() : Json::parse(result.output);
  }
};

TEST_F(Dsc, VerbsAnswerAsAnEngineReadsThem) {
  SetRun(HKEY_CURRENT_USER, L"ctl one", Command(L"1"));
  const Json state = {{"location", "sulRegistryUserRun"},
                      {"name", "CTL ONE"},
                      {"command", ToUtf8(Command(L"1"))},
                      {"enabled", true},
                      {"_exist", true},
                      {"_inDesiredState", nullptr}};
  EXPECT_EQ(Call(L"get", {{"name", "CTL ONE"}}), state);
  EXPECT_EQ(Call(L"get", {{"name", "none"}}), Json({{"location", "sulRegistryUserRun"},
                                                    {"name", "none"},
                                                    {"_exist", false},
                                                    {"_inDesiredState", nullptr}}));
  EXPECT_EQ(Call(L"test", state)["_inDesiredState"], true);
  EXPECT_EQ(Call(L"test", {{"name", "ctl one"}, {"enabled", false}})["_inDesiredState"], false);
  const Json exported =
      Json::parse(Run({L"dsc", L"export", L"--input", L"{\"location\":\"sulRegistryUserRun\"}"}).output);
  EXPECT_EQ(exported["name"], "ctl one");
  const Json schema = Json::parse(Run({L"dsc", L"schema"}).output);
  EXPECT_EQ(KeysOf(schema["properties"]), KeysOf(state));
  EXPECT_EQ(schema["properties"]["location"]["enum"].size(), static_cast<std::size_t>(kLastLocation));
  EXPECT_EQ(Run({L"dsc", L"get", L"--input", L"{}"}, 2).output, "");
  Run({L"dsc", L"get"}, 2);
  Run({L"dsc", L"frob"}, 2);
}

TEST_F(Dsc, SetMakesTheStateAndAnswersIt) {
  const std::string one = ToUtf8(Command(L"1")), two = ToUtf8(Command(L"2"));
  const Json wishes[] = {{{"command", one}, {"enabled", false}},
                         {{"command", two}, {"enabled", true}},
                         {{"enabled", false}},
                         {{"_exist", true}},
                         {{"_exist", false}},
                         {{"_exist", false}}};
  for (Json wish : wishes) {
    wish["name"] = "ctl made";
    Json state = Call(L"set", wish);
    for (const auto& property : wish.items()) EXPECT_EQ(state[property.key()], property.value()) << wish;
    EXPECT_EQ(Call(L"test", wish)["_inDesiredState"], true) << wish;
  }
  SetRun(HKEY_CURRENT_USER, L"ctl both", Command(L"1"));
  SetValue(HKEY_CURRENT_USER, kRunSide, L"ctl both", Sz(Command(L"2")));
  EXPECT_EQ(Call(L"set", {{"name", "ctl both"}, {"_exist", false}})["_exist"], false);
  EXPECT_EQ(Call(L"set", {{"name", "ctl both"}}, 1), Json()) << "nothing to make it of";
  const StartupctlResult refused =
      Run({L"dsc", L"set", L"--input",
           L"{\"location\":\"sulRegistryIEBrowserObjects\",\"name\":\"x\",\"command\":\"y\"}"},
          1);
  EXPECT_NE(refused.errors.find("cannot be added"), std::string::npos) << refused.errors;
}

}  // namespace
}  // namespace smh::test
