// The system's own switches in startupctl: what is listed, changed and put away.
#include "hosts/cli/verification.h"
#include "hosts/common/host_error.h"
#include "hosts/common/switch_list.h"
#include "tests/hosts/cli/json_schema.h"
#include "tests/hosts/cli/startupctl_fixture.h"
#include "tests/support/code_patch.h"
#include "tests/support/startup_folders.h"
#include "tests/support/waiting.h"

#include <objidl.h>
#include <softpub.h>
#include <wintrust.h>

#include <algorithm>
#include <atomic>
#include <filesystem>
#include <fstream>
#include <functional>
#include <tuple>

namespace smh::test {

namespace {

const std::wstring kSwitches = L"Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\StartupApproved";
const std::wstring kRunSwitches = kSwitches + L"\\Run";
// Off since a second of 2022.
const RawValue kOff = Binary(std::string("\x03\0\0\0\x80\x96\x98\x3a\x1d\x0f\xd8\x01", 12));

class SwitchingTest : public StartupctlTest {
 protected:
  SwitchingTest() {
    // Wine is told which Windows it is.
    pretended_.Set(L"", L"Version", Sz(L"win10"));
    UseCheckpoints(true);
    SetRun(HKEY_CURRENT_USER, L"ctl on", Command(L"on"));
    SetRun(HKEY_CURRENT_USER, L"ctl off", Command(L"off"));
    SwitchOff(L"ctl off");
  }
  static void SwitchOff(const std::wstring& name) {
    SetValue(HKEY_CURRENT_USER, kRunSwitches, name, kOff, OwnView());
  }
  static std::optional<RawValue> SwitchOf(const std::wstring& name) {
    return GetValue(HKEY_CURRENT_USER, kRunSwitches, name, OwnView());
  }
  static bool IsOff(const std::wstring& name) {
    const std::optional<RawValue> value = SwitchOf(name);
    return value && (value->bytes.front() & std::byte{1}) != std::byte{0};
  }
  static std::vector<std::string> Captions(const std::vector<std::wstring>& filters) {
    std::vector<std::wstring> arguments = {L"list", L"--json", L"--location", L"UserRun"};
    arguments.insert(arguments.end(), filters.begin(), filters.end());
    std::vector<std::string> captions;
    for (const Json& item : Json::parse(Run(arguments).output)) captions.push_back(item["caption"]);
    return captions;
  }

 private:
  const EmptiedKeys switches_{{kSwitches}};
  const RegistryTree pretended_{L"Software\\Wine\\AppDefaults\\startupctl.exe"};
};

TEST_F(SwitchingTest, ListTellsWhatStartsAndFiltersByIt) {
  SetValue(HKEY_CURRENT_USER, kRunSide, L"ctl side", Sz(Command(L"side")));
  SetRun(HKEY_CURRENT_USER, L"ctl odd", Command(L"odd"));
  SetValue(HKEY_CURRENT_USER, kRunSwitches, L"ctl odd", Dword(3), OwnView());
  const Json off = Find("ctl off").at(0);
  EXPECT_EQ(off["enabled"], true);
  EXPECT_EQ(off["starts"], "no");
  EXPECT_EQ(off["reasons"], Json({"switchedOff"}));
  EXPECT_TRUE(off["switchedOffSince"].get<std::string>().starts_with("2022-01-2")) << off["switchedOffSince"];
  const Json on = Find("ctl on").at(0);
  EXPECT_EQ(on["starts"], "yes");
  EXPECT_EQ(on["reasons"], Json::array());
  EXPECT_TRUE(on["switchedOffSince"].is_null());
  EXPECT_EQ(Find("ctl odd").at(0)["starts"], "unknown") << "in no known form";
  // What is certain is told, whatever stands in its switch.
  SetRun(HKEY_CURRENT_USER, L"ctl gone", L"C:\\nowhere\\gone.exe");
  SetValue(HKEY_CURRENT_USER, kRunSwitches, L"ctl gone", Dword(3), OwnView());
  EXPECT_EQ(Find("ctl gone").at(0)["starts"], "no");
  EXPECT_EQ(Find("ctl gone").at(0)["reasons"], Json({"missing"}));
  using Texts = std::vector<std::string>;
  EXPECT_EQ(Captions({L"--starts"}), Texts{"ctl on"});
  EXPECT_EQ(Captions({L"--not-starting"}), (Texts{"ctl gone", "ctl off", "ctl side"}));
  EXPECT_EQ(Captions({L"--not-starting", L"--enabled"}), (Texts{"ctl gone", "ctl off"}));
  Run({L"list", L"--starts", L"--not-starting"}, 2);
  const std::string table = Run({L"list"}).output;
  EXPECT_NE(table.find("no: switched off in Task Manager"), std::string::npos) << table;
  for (const std::string& text : {table, Run({L"enable", L"ctl odd"}).errors}) {
    EXPECT_NE(text.find(": perhaps switched off in Task Manager"), std::string::npos) << text;
  }
  for (const std::string& text : {table, Run({L"enable", L"ctl gone"}).errors}) {
    EXPECT_NE(text.find(": file missing"), std::string::npos) << text;
  }
  EXPECT_EQ(Run({L"list", L"--location", L"UserRun", L"--csv", L"--columns", L"starts", L"ctl on"}).output,
            "starts\r\nyes\r\n");
}

TEST_F(SwitchingTest, EnableMakesItStartAndDisableCanUseTheSwitch) {
  EXPECT_NE(Run({L"enable", L"ctl off", L"--dry-run"}).output.find("Take back"), std::string::npos);
  EXPECT_TRUE(IsOff(L"ctl off"));
  Run({L"enable", L"ctl off"});
  EXPECT_FALSE(IsOff(L"ctl off"));
  Run({L"undo"});
  EXPECT_EQ(SwitchOf(L"ctl off"), kOff) << "to the byte";
  EXPECT_NE(Run({L"enable", L"ctl on"}).errors.find("is enabled already."), std::string::npos);

  Run({L"disable", L"ctl on", L"--like-task-manager"});
  EXPECT_TRUE(IsOff(L"ctl on"));
  EXPECT_TRUE(TextInBothViews(HKEY_CURRENT_USER, kRunKey, L"ctl on")) << "it stays where it is";
  EXPECT_NE(Run({L"disable", L"ctl on", L"--like-task-manager"}).errors.find("already"), std::string::npos);

  // From the side place and past the switch: both come back with one undo.
  Run({L"disable", L"ctl on"});
  Run({L"enable", L"ctl on"});
  EXPECT_FALSE(IsOff(L"ctl on"));
  EXPECT_TRUE(TextInBothViews(HKEY_CURRENT_USER, kRunKey, L"ctl on"));
  Run({L"undo"});
  EXPECT_TRUE(IsOff(L"ctl on"));
  EXPECT_TRUE(TextInBothViews(HKEY_CURRENT_USER, kRunSide, L"ctl on"));
}

TEST_F(SwitchingTest, ConfigurationEnginesAreToldOfItAndTakeItBack) {
  const auto call = [](const wchar_t* verb, const std::wstring& wish) {
    const std::wstring input = L"{\"location\":\"sulRegistryUserRun\",\"name\":\"ctl off\"" + wish + L"}";
    return Json::parse(Run({L"dsc", verb, L"--input", input}).output);
  };
  EXPECT_EQ(call(L"test", L",\"enabled\":true")["_inDesiredState"], false);
  EXPECT_EQ(call(L"set", L",\"enabled\":false")["enabled"], false);
  EXPECT_EQ(SwitchOf(L"ctl off"), kOff) << "nothing had to be done";
  EXPECT_EQ(call(L"set", L",\"enabled\":true")["enabled"], true);
  EXPECT_FALSE(IsOff(L"ctl off"));
}

TEST_F(SwitchingTest, WhatHasNoSwitchRefusesIt) {
  SetValue(HKEY_CURRENT_USER, kRunSide, L"ctl side", Sz(Command(L"side")));
  SetValue(HKEY_CURRENT_USER, kRunSwitches, L"ctl on", Dword(3), OwnView());
  const RegistryTree once(kRunKey + L"Once");
  once.Set(L"", L"ctl once", Sz(Command(L"once")));
  once.Set(L"", L"!ctl late", Sz(Command(L"late")));
  EXPECT_NE(Run({L"show", L"!ctl late"}).output.find("after its command has run"), std::string::npos);
  for (const wchar_t* const name : {L"ctl side", L"ctl on", L"ctl once"}) {
    const StartupctlResult result = Run({L"disable", name, L"--like-task-manager"}, 1);
    EXPECT_TRUE(result.errors.starts_with("startupctl: Cannot switch off ")) << result.errors;
    EXPECT_NE(result.errors.find("Task Manager has no switch"), std::string::npos) << result.errors;
  }
  const LimitedKey limited(HKEY_CURRENT_USER, kRunSwitches, LimitedKey::Rights::kReadOnly, OwnView());
  Run({L"enable", L"ctl off"}, 1);
  EXPECT_EQ(SwitchOf(L"ctl off"), kOff);
}

TEST_F(SwitchingTest, SwitchesAreShownWithTheirEntryAndOrphansTakenAway) {
  SetValue(HKEY_CURRENT_USER, kRunSide, L"ctl side", Sz(Command(L"side")));
  SwitchOff(L"ctl side");
  SwitchOff(L"ctl left");
  SetValue(HKEY_CURRENT_USER, kRunSwitches, L"ctl odd", Sz(L"odd"), OwnView());
  const auto orphans = [] {
    std::vector<std::string> names;
    for (const Json& each : Json::parse(Run({L"switches", L"--json"}).output)) {
      if (each["orphan"] == true) names.push_back(each["name"]);
      EXPECT_EQ(each["orphan"] == true, each["id"].is_null()) << each;
    }
    std::ranges::sort(names);
    return names;
  };
  using Texts = std::vector<std::string>;
  EXPECT_EQ(orphans(), (Texts{"ctl left", "ctl odd"})) << "what is disabled keeps its switch";
  // Nobody reads the list of a view that there is not.
  SetRun(HKEY_LOCAL_MACHINE, L"ctl machine", Command(L"machine"));
  SetValue(HKEY_LOCAL_MACHINE, kSwitches + L"\\Run32", L"ctl machine", kOff, OwnView());
  EXPECT_EQ(orphans().size(), HasTwoViews() ? 2u : 3u);
  RemoveValue(HKEY_LOCAL_MACHINE, kSwitches + L"\\Run32", L"ctl machine", OwnView());
  const JsonSchema schema(Json::parse(ReadFileBytes(ThisFolder() + L"startupctl.schema.json")));
  EXPECT_EQ(schema.FaultIn(Json::parse(Run({L"switches", L"--json"}).output), "switches"), "");
  EXPECT_EQ(Run({L"switches", L"--prune", L"--dry-run", L"--csv", L"--columns", L"list,name"}).output,
            "list,name\r\nRun,ctl left\r\nRun,ctl odd\r\n");
  EXPECT_NE(Run({L"switches"}).output.find("an orphan"), std::string::npos);
  EXPECT_EQ(Run({L"switches", L"--prune", L"--dry-run"}).output.find("ctl side"), std::string::npos);
  Run({L"switches", L"--prune"}, 1);
  EXPECT_EQ(orphans().size(), 2u) << "nobody agreed";
  Run({L"switches", L"--prune", L"--yes"});
  EXPECT_EQ(orphans(), Texts());
  for (const wchar_t* const name : {L"ctl off", L"ctl side"}) EXPECT_EQ(SwitchOf(name), kOff);
  Run({L"undo"});
  EXPECT_EQ(orphans().size(), 2u) << "one action";
  EXPECT_EQ(SwitchOf(L"ctl left"), kOff);
}

TEST_F(SwitchingTest, ASwitchThatGotItsEntryMeanwhileStays) {
  SwitchOff(L"ctl left");
  const auto pruned = [](bool recorded, const std::function<void()>& meanwhile) {
    std::vector<SwitchRecord> found = ReadSwitches({});
    std::erase_if(found, [](const SwitchRecord& record) { return record.name != L"ctl left"; });
    meanwhile();
    return DeleteSwitch(found.at(0), recorded).empty();
  };
  for (const bool recorded : {true, false}) {
    EXPECT_FALSE(pruned(recorded, [&] { SetRun(HKEY_CURRENT_USER, L"ctl left", Command(L"left")); }));
    RemoveValue(HKEY_CURRENT_USER, kRunKey, L"ctl left");
    EXPECT_FALSE(
        pruned(recorded, [&] { SetValue(HKEY_CURRENT_USER, kRunSide, L"ctl left", Sz(Command(L"left"))); }));
    RemoveValue(HKEY_CURRENT_USER, kRunSide, L"ctl left");
    EXPECT_FALSE(pruned(recorded, [] {
      SetValue(HKEY_CURRENT_USER, kRunSwitches, L"ctl left", Binary("theirs 12345"), OwnView());
    }));
    SwitchOff(L"ctl left");
    EXPECT_EQ(SwitchOf(L"ctl left"), kOff);
    EXPECT_TRUE(pruned(recorded, [] {}));
    SwitchOff(L"ctl left");
  }
}

// The same for a Startup folder's list: the file may come back to the folder, or to those of disabled ones.
TEST_F(SwitchingTest, ASwitchWhoseFileCameMeanwhileStays) {
  const StartupPlaces places(StartupPlaces::Whose::kUser);
  const std::wstring list = kSwitches + L"\\StartupFolder";
  for (const std::wstring& folder : {places.startup, places.disabled, places.autoruns, places.brisko}) {
    for (const bool recorded : {true, false}) {
      SetValue(HKEY_CURRENT_USER, list, L"ctl left.lnk", kOff, OwnView());
      std::vector<SwitchRecord> found = ReadSwitches({});
      std::erase_if(found, [](const SwitchRecord& record) { return record.name != L"ctl left.lnk"; });
      std::filesystem::create_directories(folder);
      const std::wstring file = folder + L"ctl left.lnk";
      std::ofstream(std::filesystem::path(file)) << "a shortcut";
      EXPECT_NE(DeleteSwitch(found.at(0), recorded), L"") << ToUtf8(folder);
      DeleteFileW(file.c_str());
      EXPECT_EQ(DeleteSwitch(found.at(0), recorded), L"");
    }
  }
}

// The machine's Run key has a switch for each of its views.
TEST_F(SwitchingTest, EnableTakesBackTheSwitchOfOneView) {
  if (!HasTwoViews()) GTEST_SKIP() << "one view";
  for (const REGSAM view : {REGSAM(0), OwnView()})
    SetRun(HKEY_LOCAL_MACHINE, L"ctl half", Command(L"half"), view);
  SetValue(HKEY_LOCAL_MACHINE, kRunSwitches, L"ctl half", kOff, OwnView());
  EXPECT_EQ(Find("ctl half").at(0)["starts"], "yes");
  const std::string table = Run({L"list"}).output;
  EXPECT_NE(table.find("yes, but not from the 64-bit list: switched off"), std::string::npos) << table;
  Run({L"enable", L"ctl half"});
  EXPECT_EQ(Find("ctl half").at(0)["reasons"], Json::array());
}

TEST_F(SwitchingTest, SnapshotsCarryTheSwitch) {
  const std::wstring file = Folder().File(L"state.json");
  Run({L"snapshot", file});
  Run({L"enable", L"ctl off"});
  Run({L"disable", L"ctl on", L"--like-task-manager"});
  const Json differences = Json::parse(Run({L"compare", file, L"--json"}, 4).output);
  ASSERT_EQ(differences.size(), 2u);
  for (const Json& each : differences) {
    EXPECT_EQ(each["difference"], "switched");
    EXPECT_EQ(each["switchedOffBefore"], each["name"] == "ctl off");
    EXPECT_EQ(each["switchedOffAfter"], each["name"] == "ctl on");
  }
  Run({L"apply", file, L"--yes"});
  EXPECT_TRUE(IsOff(L"ctl off"));
  EXPECT_FALSE(IsOff(L"ctl on"));
  Run({L"compare", file});
  // A file of before says nothing of switches: none differs.
  std::string old = ReadFileBytes(file);
  for (const std::string text : {",\"switchedOff\":true", ",\"switchedOff\":false"}) {
    for (std::size_t at = old.find(text); at != std::string::npos; at = old.find(text))
      old.erase(at, text.size());
  }
  Run({L"compare", Folder().Write(L"old.json", old)});
  // What is gone comes back as it was.
  Run({L"delete", L"ctl off"});
  Run({L"apply", file, L"--yes"});
  EXPECT_TRUE(IsOff(L"ctl off"));
}

// What reads the signatures of scripts is made by COM; the first thread has it from whoever started it.
std::atomic<int> g_verifying{0};
std::atomic<int> g_withoutCom{0};
DWORD g_firstThread;
LONG WINAPI LookForCom(HWND, GUID*, void* data) {
  if (static_cast<WINTRUST_DATA*>(data)->dwStateAction == WTD_STATEACTION_CLOSE) return 0;
  APTTYPE type;
  APTTYPEQUALIFIER how;
  const bool hasCom = CoGetApartmentType(&type, &how) == S_OK && how != APTTYPEQUALIFIER_IMPLICIT_MTA;
  if (!hasCom && GetCurrentThreadId() != g_firstThread) ++g_withoutCom;
  // Each thread gets its share.
  ++g_verifying;
  WaitUntil([] { return g_verifying >= 4; }, 2000);
  return TRUST_E_NOSIGNATURE;
}

TEST_F(SwitchingTest, ThreadsThatVerifyHaveCom) {
  LoadLibraryW(L"wintrust.dll");
  const CodePatch patch(L"wintrust.dll", "WinVerifyTrust", &LookForCom);
  g_firstThread = GetCurrentThreadId();
  std::vector<ItemRecord> items(4);
  for (std::size_t i = 0; i < items.size(); ++i) {
    items[i].describedFile =
        Folder().Write(L"ctl" + std::to_wstring(i) + L".exe", std::string(64, char('a' + i)));
  }
  VerifyItems(items);
  EXPECT_GE(g_verifying, 4);
  EXPECT_EQ(g_withoutCom, 0);
}

// Words of trust: what the signature proves, and nothing that a file says of itself.
TEST_F(SwitchingTest, VerifiedListTellsTheClaimedAndTheBroken) {
  const std::wstring samples = ThisFolder() + L"..\\samples\\drive_c\\";
  SetRun(HKEY_CURRENT_USER, L"ctl claims", L"\"" + samples + L"Samples\\Temp\\officesync.exe\"");
  SetRun(HKEY_CURRENT_USER, L"ctl broken", L"\"" + samples + L"Program Files\\Fernhill\\fernupdate.exe\"");
  SetRun(HKEY_CURRENT_USER, L"ctl through", L"cmd /c \"" + samples + L"Samples\\Temp\\officesync.exe\"");
  EXPECT_TRUE(Find("ctl claims").at(0)["trust"].is_null()) << "only on request";
  const Json list = Json::parse(Run({L"list", L"--verify", L"--json", L"ctl *"}).output);
  for (const Json& item : list) {
    if (item["caption"] == "ctl claims" || item["caption"] == "ctl through") {
      EXPECT_EQ(item["rating"] == "trusted", item["caption"] == "ctl claims") << "the rating is of cmd";
      EXPECT_EQ(item["trust"], "claimed");
      EXPECT_EQ(item["signature"], "none");
    }
    if (item["caption"] == "ctl broken") {
      EXPECT_EQ(item["signature"], "broken");
    }
    EXPECT_EQ(item["sha256"].get<std::string>().size(), 64u);
  }
  const std::string table = Run({L"list", L"--verify"}).output;
  EXPECT_NE(table.find("claimed: not signed"), std::string::npos) << table;
  EXPECT_NE(table.find("changed after it was signed"), std::string::npos) << table;
  EXPECT_EQ(Json::parse(Run({L"show", L"ctl claims", L"--json"}).output)["trust"], "claimed");
  if (!IsElevated()) GTEST_SKIP() << "nothing is asked";
  EXPECT_NE(Run({L"execute", L"ctl claims"}, 1).errors.find("--yes"), std::string::npos);
  Run({L"execute", L"ctl claims", L"--yes"});
}

TEST(StartConsent, IsAskedForWhatNobodyVouchesForWithAllRightsOnly) {
  ItemRecord item;
  for (const auto& [word, state, isAsked] : {std::tuple(TrustWord::kClaimed, kSignatureNone, true),
                                             std::tuple(TrustWord::kRisky, kSignatureValid, true),
                                             std::tuple(TrustWord::kUnknown, kSignatureBroken, true),
                                             std::tuple(TrustWord::kUnknown, kSignatureNone, false),
                                             std::tuple(TrustWord::kVerified, kSignatureValid, false)}) {
    item.trust.emplace();
    item.trust->word = word;
    item.trust->signature = state;
    EXPECT_NO_THROW(RequireStartConsent(item, false, false));
    EXPECT_NO_THROW(RequireStartConsent(item, true, true));
    if (isAsked) {
      EXPECT_THROW(RequireStartConsent(item, true, false), HostError);
    } else {
      EXPECT_NO_THROW(RequireStartConsent(item, true, false));
    }
  }
}

}  // namespace
}  // namespace smh::test
