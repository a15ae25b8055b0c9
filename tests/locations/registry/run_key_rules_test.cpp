// What a change of a Run key goes by while other programs change the same values, what it refuses, and how
// it is named.
#include "infra/registry/uRegistryUtils.h"
#include "infra/runtime/import_function.h"
#include "tests/locations/registry/meanwhile.h"
#include "tests/locations/registry/run_key_fixture.h"

#include <gmock/gmock.h>

namespace smh::test {
namespace {

using Kind = ChangeAnswer::Kind;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::UnorderedElementsAre;

constexpr wchar_t kProgram[] = L"C:\\windows\\notepad.exe -r";

class RunKeyRules : public BothWays<RunKeyTest> {
 protected:
  struct Change {
    std::wstring name;
    std::function<ChangeAnswer(const ItemRef&)> run;
  };
  const Change disable_{L"disable", [this](const ItemRef& item) { return UserRun().DisableItem(item); }};
  const Change delete_{L"delete", [this](const ItemRef& item) { return UserRun().DeleteItem(item); }};
  const Change move_{L"move",
                     [this](const ItemRef& item) { return UserRun().MoveItem(item, sulRegistryCommonRun); }};
  const Change change_{L"change",
                       [this](const ItemRef& item) { return UserRun().ChangeItemCommand(item, L"x.exe"); }};

  static void Set(const RawValue& value) { SetValue(HKEY_CURRENT_USER, kRunKey, L"Foo", value); }
  static std::optional<RawValue> Source() { return GetValue(HKEY_CURRENT_USER, kRunKey, L"Foo"); }
  // Everywhere that the changes above write to, but for the source's key.
  static std::vector<std::wstring> Targets() {
    std::vector<std::wstring> texts = TextsIn(HKEY_CURRENT_USER, kRunSide);
    for (const std::wstring& text : TextsIn(HKEY_LOCAL_MACHINE, kRunKey, OwnView())) texts.push_back(text);
    return texts;
  }
  ItemRef Load() {
    ClearItems();
    return LoadAndFind(UserRun(), L"Foo");
  }
  void Forget() {
    RemoveValues(HKEY_CURRENT_USER, kRunKey, 0);
    RemoveValues(HKEY_CURRENT_USER, kRunSide, 0);
    RemoveValues(HKEY_LOCAL_MACHINE, kRunKey, OwnView());
  }

 private:
  static void RemoveValues(HKEY root, const std::wstring& key, REGSAM view) {
    for (const std::wstring& name : Values(root, key, view)) RemoveValue(root, key, name, view);
  }
};
INSTANTIATE_TEST_SUITE_P(Checkpoints, RunKeyRules, ::testing::Bool());

TEST_P(RunKeyRules, WhatTheUserAgreedToIsComparedDownToTheCaseOfALetter) {
  for (const Change& change : {delete_, move_, change_}) {
    for (const wchar_t* text : {L"C:\\windows\\notepad.exe -R", L"C:\\windows\\regedit.exe"}) {
      Set(Sz(kProgram));
      const ItemRef item = Load();
      Set(Sz(text));
      ExpectChangedMeanwhile([&] { change.run(item); }, change.name);
      EXPECT_EQ(Source(), Sz(text));
      EXPECT_THAT(Targets(), IsEmpty());
      EXPECT_TRUE(item->IsListed());
      EXPECT_EQ(Command(item), text) << "brought up to date";
      EXPECT_TRUE(item->TakeChangedMark());

      EXPECT_EQ(change.run(item).kind, Kind::kDone) << "the user has seen it now";
      EXPECT_EQ(Source().has_value(), change.name == L"change");
      if (change.name == L"move") {
        EXPECT_EQ(Targets().at(0).substr(8), text);
      }
      Forget();
    }
  }
  // Disabling and enabling go on with what stands there.
  Set(Sz(kProgram));
  const ItemRef item = Load();
  Set(Sz(L"C:\\windows\\notepad.exe -R"));
  EXPECT_EQ(UserRun().DisableItem(item).kind, Kind::kDone);
  EXPECT_EQ(Command(item), L"C:\\windows\\notepad.exe -R");
  SetValue(HKEY_CURRENT_USER, kRunSide, L"Foo", Sz(L"newer.exe"));
  EXPECT_EQ(UserRun().EnableItem(item).kind, Kind::kDone);
  EXPECT_EQ(Source(), Sz(L"newer.exe"));
  EXPECT_EQ(Command(item), L"newer.exe");
}

// Between the plan and the last look: at the first writing, and at the deletion of the source.
TEST_P(RunKeyRules, ASourceThatOthersChangeOnTheWayStaysAsTheyHaveIt) {
  const std::optional<RawValue> theirs[] = {Sz(L"theirs.exe"), ExpandSz(kProgram), Binary("theirs"),
                                            std::nullopt};
  using Call = Meanwhile::Call;
  const std::pair<Change, Call> rows[] = {
      {disable_, Call::kWrite}, {disable_, Call::kDelete}, {move_, Call::kWrite},
      {move_, Call::kDelete},   {delete_, Call::kDelete},  {change_, Call::kWrite},
  };
  for (const auto& [change, call] : rows) {
    for (const auto& their : theirs) {
      const std::wstring what =
          change.name + (call == Call::kWrite ? L" write " : L" delete ") + TextOf(their);
      Set(Sz(kProgram));
      const ItemRef item = Load();
      const Meanwhile meanwhile(module.Safeguard(), GetParam(), call, [&] {
        their ? Set(*their) : RemoveValue(HKEY_CURRENT_USER, kRunKey, L"Foo");
      });
      if (!their && change.name != L"change") {
        EXPECT_EQ(change.run(item).kind, Kind::kDone) << "there is nothing left to remove";
        EXPECT_EQ(Targets().size(), change.name == L"delete" ? 0u : 1u) << testing::PrintToString(what);
        EXPECT_EQ(Source(), std::nullopt) << "what others have deleted does not come back";
      } else {
        ExpectChangedMeanwhile([&] { change.run(item); }, what);
        EXPECT_EQ(Source(), their) << testing::PrintToString(what);
        EXPECT_THAT(Targets(), IsEmpty()) << testing::PrintToString(what);
      }
      EXPECT_TRUE(meanwhile.HasRun()) << testing::PrintToString(what);
      Forget();
    }
  }
}

// What stands at the address counts, whatever key that was when the change began.
TEST_P(RunKeyRules, ATargetsKeyThatOthersMakeAgainIsTheOneThatCounts) {
  for (const auto& their : {std::optional(Sz(kProgram)), std::optional<RawValue>()}) {
    Set(Sz(kProgram));
    const ItemRef item = Load();
    const Meanwhile meanwhile(module.Safeguard(), GetParam(), Meanwhile::Call::kDelete, [&] {
      DeleteKeyTree(HKEY_CURRENT_USER, kRunSide);
      if (their) SetValue(HKEY_CURRENT_USER, kRunSide, L"Foo", *their);
    });
    if (their) {
      EXPECT_EQ(UserRun().DisableItem(item).kind, Kind::kDone);
    } else {
      ExpectChangedMeanwhile([&] { UserRun().DisableItem(item); }, L"gone");
    }
    EXPECT_EQ(Source().has_value(), !their);
    EXPECT_EQ(Targets().size(), their ? 1u : 0u);
    Forget();
  }
}

TEST_P(RunKeyRules, ATargetThatOthersCarryAwayWithItsKeyIsNoTarget) {
  const auto rename = ImportFunction<LSTATUS(WINAPI*)(HKEY, const wchar_t*, const wchar_t*)>(
      GetModuleHandleW(L"advapi32.dll"), "RegRenameKey");
  const std::wstring elsewhere = kRunKey + L"\\elsewhere";
  Set(Sz(kProgram));
  const ItemRef item = Load();
  const Meanwhile meanwhile(module.Safeguard(), GetParam(), Meanwhile::Call::kDelete, [&] {
    EXPECT_EQ(rename(HKEY_CURRENT_USER, kRunSide.c_str(), L"elsewhere"), ERROR_SUCCESS);
  });
  ExpectChangedMeanwhile([&] { UserRun().DisableItem(item); });
  EXPECT_TRUE(meanwhile.HasRun());
  EXPECT_EQ(Source(), Sz(kProgram));
  EXPECT_EQ(Values(HKEY_CURRENT_USER, elsewhere).size(), 1U) << "theirs by now";
  DeleteKeyTree(HKEY_CURRENT_USER, elsewhere);
}

TEST_P(RunKeyRules, ATargetsKeyThatOthersDeleteBehindThePlanIsMadeAgain) {
  MakeKey(HKEY_CURRENT_USER, kRunSide);
  Set(Sz(kProgram));
  const ItemRef item = Load();
  const Meanwhile meanwhile(module.Safeguard(), GetParam(), Meanwhile::Call::kWrite,
                            [] { DeleteKeyTree(HKEY_CURRENT_USER, kRunSide); });
  EXPECT_EQ(UserRun().DisableItem(item).kind, Kind::kDone);
  EXPECT_TRUE(meanwhile.HasRun());
  EXPECT_EQ(Source(), std::nullopt);
  EXPECT_EQ(Targets().size(), 1U);
}

TEST_P(RunKeyRules, ATargetThatOthersTakeOnTheWayIsTheirs) {
  for (const Change& change : {disable_, move_}) {
    Set(Sz(kProgram));
    const ItemRef item = Load();
    const bool isMove = change.name == L"move";
    const HKEY root = isMove ? HKEY_LOCAL_MACHINE : HKEY_CURRENT_USER;
    const std::wstring& key = isMove ? kRunKey : kRunSide;
    const std::wstring name = isMove ? L"notepad" : L"Foo";
    for (const RawValue& their : {Sz(L"theirs.exe"), Binary("theirs")}) {
      const Meanwhile meanwhile(module.Safeguard(), GetParam(), Meanwhile::Call::kWrite,
                                [&] { SetValue(root, key, name, their, OwnView()); });
      ExpectChangedMeanwhile([&] { change.run(item); }, change.name);
      EXPECT_EQ(GetValue(root, key, name, OwnView()), their);
      EXPECT_EQ(Source(), Sz(kProgram));
      EXPECT_TRUE(item->IsListed() && item->IsEnabled());
      RemoveValue(root, key, name, OwnView());
    }
    Forget();
  }
}

// The name of a value may hold a backslash: its path is then that of a value in the key below.
TEST_P(RunKeyRules, APathThatIsListedIsTaken) {
  const std::wstring nested = L"Disabled (Startup Manager)\\Foo";
  Set(Sz(L"f.exe"));
  SetValue(HKEY_CURRENT_USER, kRunKey, nested, Sz(L"nested.exe"));
  const ItemRef item = Load();
  const ItemRef other = FindByCaption(UserRun(), nested);
  ASSERT_NE(other, nullptr);
  EXPECT_EQ(UserRun().DisableItem(item).kind, Kind::kDone);
  EXPECT_THAT(TextsIn(HKEY_CURRENT_USER, kRunSide), ElementsAre(L"Foo (1)=f.exe"));
  UserRun().ReadItems();
  EXPECT_TRUE(other->IsListed() && other->IsEnabled());
  EXPECT_TRUE(item->IsListed() && !item->IsEnabled());
  EXPECT_EQ(GetValue(HKEY_CURRENT_USER, kRunKey, nested), Sz(L"nested.exe"));

  // A new entry does not take it either, and neither does one that moves here.
  SetValue(HKEY_CURRENT_USER, kRunSide, L"Bar", Sz(L"b.exe"));
  UserRun().ReadItems();
  EXPECT_THROW(UserRun().AddItem(L"Disabled (Startup Manager)\\Bar", L"x.exe"), EChangeRefused);
  EXPECT_TRUE(FindByCaption(UserRun(), L"Bar")->IsListed());
}

TEST_P(RunKeyRules, AnEntryWithoutANameIsCalledWhatTheListCallsIt) {
  SetValue(HKEY_CURRENT_USER, kRunKey, L"", Sz(L"C:\\windows\\notepad.exe"));
  UserRun().ReadItems();
  const ItemRef item = Listed(UserRun()).at(0);
  const std::wstring caption(item->State().details.Caption);
  ASSERT_FALSE(caption.empty());
  UserRun().DisableItem(item);
  ExpectCheckpoint(L"Startup Manager: Disabling " + caption);
}

TEST_P(RunKeyRules, EmptyAndLongTextsAreRefusedBeforeAnythingIsWritten) {
  Set(Sz(kProgram));
  const ItemRef item = Load();
  const std::wstring tooLong(32'767, L'c');
  const struct {
    std::function<void()> change;
    DWORD code;
    const wchar_t* text;
  } rows[] = {
      {[&] { UserRun().ChangeItemCommand(item, L""); }, ERROR_INVALID_PARAMETER, L"The command is empty."},
      {[&] { UserRun().AddItem(L"n", L""); }, ERROR_INVALID_PARAMETER, L"The command is empty."},
      {[&] { UserRun().ChangeItemCommand(item, tooLong); }, ERROR_FILENAME_EXCED_RANGE,
       L"The command is too long."},
      {[&] { UserRun().AddItem(L"n", tooLong); }, ERROR_FILENAME_EXCED_RANGE, L"The command is too long."},
      {[&] { UserRun().AddItem(std::wstring(16'384, L'n'), L"x"); }, ERROR_FILENAME_EXCED_RANGE,
       L"The name is too long."},
  };
  for (const auto& row : rows) {
    ExpectRefusal(row.code, row.text, row.change);
  }
  EXPECT_THAT(TextsIn(HKEY_CURRENT_USER, kRunKey), ElementsAre(std::wstring(L"Foo=") + kProgram));
  EXPECT_THAT(RecordedChanges(), IsEmpty());

  // As long as can be: what would have to be numbered is not switched.
  const std::wstring longest(16'383, L'n');
  EXPECT_EQ(UserRun().AddItem(longest, std::wstring(32'766, L'c')).kind, Kind::kDone);
  const ItemRef added = FindByCaption(UserRun(), longest);
  ASSERT_NE(added, nullptr);
  SetValue(HKEY_CURRENT_USER, kRunSide, longest, Sz(L"taken"));
  EXPECT_THROW(UserRun().DisableItem(added), EChangeRefused);
  EXPECT_TRUE(added->IsEnabled());
  RemoveValue(HKEY_CURRENT_USER, kRunSide, longest);
  EXPECT_EQ(UserRun().DisableItem(added).kind, Kind::kDone);
  EXPECT_EQ(GetValue(HKEY_CURRENT_USER, kRunSide, longest), Sz(std::wstring(32'766, L'c')));
}

TEST_P(RunKeyRules, EveryChangeSaysWhatItHasComeTo) {
  Set(Sz(kProgram));
  const ItemRef item = Load();
  EXPECT_EQ(UserRun().EnableItem(item).kind, Kind::kNothing);
  EXPECT_EQ(UserRun().ChangeItemCommand(item, L"c:\\WINDOWS\\notepad.exe -R").kind, Kind::kNothing);
  EXPECT_EQ(CommonRun().DeleteItem(item).kind, Kind::kNothing) << "another location's";
  const ChangeAnswer known = UserRun().AddItem(L"FOO", L"x.exe");
  EXPECT_EQ(known.kind, Kind::kNothing);
  EXPECT_EQ(known.position, item->Position());
  EXPECT_EQ(UserRun().DisableItem(item).kind, Kind::kDone);
  EXPECT_EQ(UserRun().EnableItem(item).kind, Kind::kDone);
  if (GetParam()) {
    const std::pair<const wchar_t*, std::function<ChangeAnswer()>> refusals[] = {
        {L"SetValue", [&] { return UserRun().DisableItem(item); }},
        {L"DeleteValue", [&] { return UserRun().DisableItem(item); }},
        {L"DeleteValue", [&] { return UserRun().DeleteItem(item); }},
        {L"SetValue", [&] { return UserRun().ChangeItemCommand(item, L"x.exe"); }},
        {L"SetValue", [&] { return UserRun().AddItem(L"new", L"x.exe"); }},
        {L"DeleteValue", [&] { return UserRun().MoveItem(item, sulRegistryCommonRun); }},
    };
    for (const auto& [call, change] : refusals) {
      module.Safeguard().Answer(call, ERROR_ACCESS_DENIED, 9);
      const ChangeAnswer answer = change();
      module.Safeguard().Clear();
      EXPECT_EQ(answer.kind, Kind::kRefused);
      EXPECT_EQ(answer.text, L"the change was refused without an error");
      EXPECT_EQ(answer.position, -1);
      EXPECT_EQ(Source(), Sz(kProgram));
      EXPECT_THAT(Targets(), IsEmpty());
      EXPECT_TRUE(item->IsListed() && item->IsEnabled());
    }
  }
  RemoveValue(HKEY_CURRENT_USER, kRunKey, L"Foo");
  for (int time = 0; time < 2; ++time) {
    const ChangeAnswer gone = UserRun().DisableItem(item);
    EXPECT_EQ(gone.kind, Kind::kGone);
    EXPECT_EQ(gone.text, L"the entry has gone");
    EXPECT_FALSE(item->IsListed());
  }
}

// In the plain view: a twin goes along, anything else is another entry.
TEST_P(RunKeyRules, TheTwinThatOthersChangeOnTheWayIsNotTakenAlong) {
  if (!HasTwoViews()) return;
  constexpr REGSAM k64 = KEY_WOW64_64KEY;
  for (const auto call : {Meanwhile::Call::kWrite, Meanwhile::Call::kDelete}) {
    for (const REGSAM view : {REGSAM(0), k64}) {
      SetValue(HKEY_LOCAL_MACHINE, kRunKey, L"t", Sz(L"t.exe"), view);
    }
    CommonRun().ReadItems();
    const ItemRef item = FindByCaption(CommonRun(), L"t");
    {
      const Meanwhile meanwhile(module.Safeguard(), GetParam(), call,
                                [&] { SetValue(HKEY_LOCAL_MACHINE, kRunKey, L"t", Sz(L"theirs.exe")); });
      ExpectChangedMeanwhile([&] { CommonRun().DisableItem(item); }, L"twin");
    }
    EXPECT_THAT(TextsIn(HKEY_LOCAL_MACHINE, kRunKey), ElementsAre(L"t=theirs.exe"));
    EXPECT_THAT(TextsIn(HKEY_LOCAL_MACHINE, kRunKey, k64), ElementsAre(L"t=t.exe"));
    for (const REGSAM view : {REGSAM(0), k64}) {
      EXPECT_THAT(TextsIn(HKEY_LOCAL_MACHINE, kRunSide, view), IsEmpty());
    }
    ClearItems();
  }
}

}  // namespace
}  // namespace smh::test
