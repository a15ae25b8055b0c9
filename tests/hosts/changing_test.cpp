// Changes made by startupctl, looked up in both registry views, with backup checkpoints and without.
#include "startupctl_fixture.h"

#include "text_encoding.h"

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
  EXPECT_EQ(TextInBothViews(HKEY_CURRENT_USER, kSideKey, name), Command(L"one"));
  Run({L"change", name, L"--command", Command(L"two")});
  EXPECT_EQ(TextInBothViews(HKEY_CURRENT_USER, kSideKey, name), Command(L"two"));
  Run({L"enable", name});
  EXPECT_EQ(TextInBothViews(HKEY_CURRENT_USER, kSideKey, name), std::nullopt);
  EXPECT_EQ(TextInBothViews(HKEY_CURRENT_USER, kRunKey, name), Command(L"two"));
  Run({L"delete", name});
  EXPECT_EQ(TextInBothViews(HKEY_CURRENT_USER, kRunKey, name), std::nullopt);
}

TEST_P(StartupctlChanges, CommonEntryIsDisabledInBothViews) {
  SetRun(HKEY_LOCAL_MACHINE, L"ctl both", Command(L"same"), 0);
  if (HasTwoViews()) SetRun(HKEY_LOCAL_MACHINE, L"ctl both", Command(L"same"), KEY_WOW64_64KEY);
  Run({L"disable", L"ctl both"});
  EXPECT_EQ(TextInBothViews(HKEY_LOCAL_MACHINE, kRunKey, L"ctl both"), std::nullopt);
  EXPECT_EQ(TextInBothViews(HKEY_LOCAL_MACHINE, kSideKey, L"ctl both"), Command(L"same"));
  Run({L"enable", L"ctl both"});
  EXPECT_EQ(TextInBothViews(HKEY_LOCAL_MACHINE, kRunKey, L"ctl both"), Command(L"same"));
  EXPECT_EQ(TextInBothViews(HKEY_LOCAL_MACHINE, kSideKey, L"ctl both"), std::nullopt);
  Run({L"delete", L"ctl both"});
  EXPECT_EQ(TextInBothViews(HKEY_LOCAL_MACHINE, kRunKey, L"ctl both"), std::nullopt);
}

TEST_P(StartupctlChanges, MovesToTheCommonKeyAndBack) {
  // Its name in the new place is the short name of its program.
  const std::wstring moved = L"tray program";
  SetRun(HKEY_CURRENT_USER, L"ctl mover", Command(L"move"));
  Run({L"move", L"ctl mover", L"--to", L"sulRegistryCommonRun"});
  EXPECT_EQ(TextInBothViews(HKEY_CURRENT_USER, kRunKey, L"ctl mover"), std::nullopt);
  EXPECT_EQ(Text(HKEY_LOCAL_MACHINE, kRunKey, moved, NativeView()), Command(L"move"));
  const std::string caption = Find("ctl mover").empty() ? "" : "still there";
  EXPECT_EQ(caption, "");
  Json list = List();
  std::wstring name;
  for (const Json& item : list) {
    if (item["command"] == ToUtf8(Command(L"move"))) name = FromUtf8(item["name"].get<std::string>());
  }
  Run({L"move", name, L"--to", L"sulRegistryUserRun"});
  EXPECT_EQ(Text(HKEY_LOCAL_MACHINE, kRunKey, moved, NativeView()), std::nullopt);
  EXPECT_EQ(TextInBothViews(HKEY_CURRENT_USER, kRunKey, moved), Command(L"move"));
}

TEST_P(StartupctlChanges, DisabledNameGetsANumber) {
  SetRun(HKEY_CURRENT_USER, L"ctl twice", Command(L"new"));
  SetValue(HKEY_CURRENT_USER, kSideKey, L"ctl twice", Sz(Command(L"old")));
  Run({L"disable", L"ctl twice", L"--location", L"sulRegistryUserRun"}, 1);  // two entries of that caption
  for (const Json& item : List()) {
    if (item["caption"] == "ctl twice" && item["enabled"])
      Run({L"disable", FromUtf8(item["name"].get<std::string>())});
  }
  EXPECT_EQ(TextInBothViews(HKEY_CURRENT_USER, kSideKey, L"ctl twice"), Command(L"old"));
  EXPECT_EQ(TextInBothViews(HKEY_CURRENT_USER, kSideKey, L"ctl twice (1)"), Command(L"new"));
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
  EXPECT_EQ(TextInBothViews(HKEY_CURRENT_USER, kSideKey, L"ctl fixed"), std::nullopt);
  EXPECT_FALSE(GetValue(HKEY_CURRENT_USER, kRunKey, L"ctl new"));
  EXPECT_TRUE(Find("tray program").empty());
}

// A recorded write fails without a word: only looking the entry up tells.
TEST_P(StartupctlChanges, ChangeThatDidNotHappenIsAFailure) {
  SetRun(HKEY_CURRENT_USER, L"ctl stays", Command(L"stays"));
  MakeKey(HKEY_CURRENT_USER, kSideKey);
  {
    const LimitedKey limited(HKEY_CURRENT_USER, kSideKey, LimitedKey::Rights::kReadOnly);
    const StartupctlResult result = Run({L"disable", L"ctl stays"}, 1);
    EXPECT_TRUE(result.errors.starts_with("startupctl: Cannot disable ")) << result.errors;
  }
  EXPECT_EQ(TextInBothViews(HKEY_CURRENT_USER, kRunKey, L"ctl stays"), Command(L"stays"));
  EXPECT_EQ(TextInBothViews(HKEY_CURRENT_USER, kSideKey, L"ctl stays"), std::nullopt);
}

TEST_F(StartupctlTest, AmbiguousCaptionIsRefusedWithCandidates) {
  SetRun(HKEY_CURRENT_USER, L"ctl same", Command(L"user"));
  SetRun(HKEY_LOCAL_MACHINE, L"ctl same", Command(L"common"), NativeView());
  const StartupctlResult refused = Run({L"delete", L"ctl same"}, 1);
  EXPECT_NE(refused.errors.find("HKEY_CURRENT_USER\\" + ToUtf8(kRunKey) + "\\ctl same"), std::string::npos);
  EXPECT_NE(refused.errors.find("HKEY_LOCAL_MACHINE\\" + ToUtf8(kRunKey) + "\\ctl same"), std::string::npos);
  EXPECT_EQ(Find("ctl same").size(), 2u);
  Run({L"delete", L"ctl same", L"--location", L"sulRegistryCommonRun"});
  EXPECT_EQ(TextInBothViews(HKEY_CURRENT_USER, kRunKey, L"ctl same"), Command(L"user"));
  EXPECT_FALSE(GetValue(HKEY_LOCAL_MACHINE, kRunKey, L"ctl same", NativeView()));
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
  EXPECT_TRUE(TextInBothViews(HKEY_CURRENT_USER, kSideKey, L"ctl good"));
  EXPECT_TRUE(TextInBothViews(HKEY_CURRENT_USER, kSideKey, L"ctl better"));
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
