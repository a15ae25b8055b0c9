// Registry changes recorded, undone and redone, in every hive and view.
#include "infra/files/file_facts.h"
#include "infra/runtime/text.h"
#include "siblings/guardkit/format/journal_format.h"
#include "siblings/guardkit/live_system.h"
#include "siblings/guardkit/undo_reach.h"
#include "tests/siblings/guardkit/changes_fixture.h"

#include <sddl.h>
#include <shlobj.h>

#include <atomic>

namespace smh::test {
namespace {

constexpr const wchar_t* kTree = kReachedTree;

struct Place {
  const char* name;
  HKEY root;
  REGSAM view;
};

class JournalRegistry : public JournalTest, public testing::WithParamInterface<Place> {
 protected:
  HKEY Root() const { return GetParam().root; }
  REGSAM View() const { return HasTwoViews() ? GetParam().view : 0; }
  std::string Dump() const { return DumpKey(Root(), kTree, View()); }
  LSTATUS Set(const std::wstring& key, const std::wstring& name, const RawValue& value) {
    return guardkit_.Set(Root(), tree_.PathOf(key), name, value, View());
  }

  const RegistryTree tree_{kTree, GetParam().root, HasTwoViews() ? GetParam().view : 0};
};
INSTANTIATE_TEST_SUITE_P(Places, JournalRegistry,
                         testing::Values(Place{"User", HKEY_CURRENT_USER, 0},
                                         Place{"Machine32", HKEY_LOCAL_MACHINE, KEY_WOW64_32KEY},
                                         Place{"Machine64", HKEY_LOCAL_MACHINE, KEY_WOW64_64KEY}),
                         [](const auto& parameter) { return parameter.param.name; });

// A key with a class, values of odd sizes and names, and rights of its own.
void MakeOddKey(const RegistryTree& tree, HKEY root, REGSAM view) {
  ScopedKey key;
  ASSERT_EQ(RegCreateKeyExW(root, tree.PathOf(L"odd").c_str(), 0, const_cast<wchar_t*>(L"klass"), 0,
                            KEY_ALL_ACCESS | view, nullptr, key.Put(), nullptr),
            ERROR_SUCCESS);
  tree.Set(L"odd", L"", {REG_SZ, Bytes(3, std::byte{0x41})});
  tree.Set(L"odd", L"unknown", {0x12345, Bytes(70'000, std::byte{7})});
  SetCountedValue(key.Get(), std::wstring_view(L"zero\0inside", 11), Dword(5));
  PSECURITY_DESCRIPTOR descriptor = nullptr;
  ConvertStringSecurityDescriptorToSecurityDescriptorW(
      L"O:SYG:SYD:P(A;OICI;KA;;;SY)(A;OICI;KA;;;BA)(A;;KR;;;WD)", SDDL_REVISION_1, &descriptor, nullptr);
  EXPECT_EQ(RegSetKeySecurity(key.Get(), 7, descriptor), ERROR_SUCCESS);
  LocalFree(descriptor);
}

TEST_P(JournalRegistry, EveryKindOfChangeIsTakenBackToTheByteAndMadeAgain) {
  tree_.Set({}, L"changed", ExpandSz(L"%old%"));
  tree_.Set({}, L"deleted", Binary(std::string("\0\1", 2)));
  MakeOddKey(tree_, Root(), View());
  const std::string before = Dump();
  const std::uint32_t id = Checkpoint([&] {
    // Unterminated, with a NUL right behind it in memory.
    EXPECT_EQ(Set({}, L"changed", {REG_SZ, UnitBytes(L"new")}), ERROR_SUCCESS);
    EXPECT_EQ(Set(L"made\\deep", L"v", Sz(L"1")), ERROR_SUCCESS);
    EXPECT_EQ(Set(L"made\\deep", L"v", Sz(L"2")), ERROR_SUCCESS);
    EXPECT_EQ(guardkit_.RemoveValue(Root(), tree_.Path(), L"deleted", View()), ERROR_SUCCESS);
    EXPECT_EQ(guardkit_.RemoveKey(Root(), tree_.PathOf(L"odd"), View()), ERROR_SUCCESS);
  });
  EXPECT_EQ(tree_.Get({}, L"changed"), (RawValue{REG_SZ, UnitBytes(L"new")}));
  const std::string after = Dump();
  EXPECT_EQ(after.find("odd"), std::string::npos);

  EXPECT_EQ(guardkit_.Undo(id, UndoMode::kShow).result, S_OK);
  EXPECT_EQ(Dump(), after);
  EXPECT_EQ(guardkit_.Undo(id).result, S_OK);
  EXPECT_EQ(Dump(), before);
  EXPECT_EQ(guardkit_.Undo(id).result, IJournal::kWrongState);
  EXPECT_EQ(guardkit_.Redo(id).result, S_OK);
  EXPECT_EQ(Dump(), after);
  EXPECT_EQ(guardkit_.Redo(id).result, IJournal::kWrongState);
  EXPECT_EQ(guardkit_.Undo().checkpoint, id);
  EXPECT_EQ(Dump(), before);
  EXPECT_EQ(guardkit_.Undo().result, HRESULT_FROM_WIN32(ERROR_NOT_FOUND));
}

TEST_P(JournalRegistry, ValuesOfAnyTypeAreWrittenAndBroughtBack) {
  const std::string odd("\0\1\2", 3);
  for (const DWORD type : {0u, 1u, 2u, 3u, 4u, 5u, 6u, 7u, 8u, 11u, 0x7FFF'FFFFu, 0xFFFF'FFFFu}) {
    const RawValue value{type, Binary(odd).bytes};
    EXPECT_EQ(Set({}, std::to_wstring(type), value), ERROR_SUCCESS) << type;
    EXPECT_EQ(tree_.Get({}, std::to_wstring(type)), value);
  }
  EXPECT_EQ(Set({}, L"list", MultiSz({L"a", L"b"})), ERROR_SUCCESS);
  const std::string before = Dump();
  const std::uint32_t id = Checkpoint([&] {
    for (const std::wstring& name : test::Values(Root(), kTree, View())) {
      EXPECT_EQ(guardkit_.RemoveValue(Root(), kTree, name, View()), ERROR_SUCCESS);
    }
  });
  EXPECT_EQ(guardkit_.Undo(id).result, S_OK);
  EXPECT_EQ(Dump(), before);
}

// The value named "b" alone.
LSTATUS WINAPI RefuseB(HKEY key, const wchar_t* name, DWORD reserved, DWORD type, const BYTE* data,
                       DWORD size) {
  static const auto real = RealFunction<decltype(RegSetValueExW)>(L"advapi32.dll", "RegSetValueExW");
  return std::wstring_view(name) == L"b" ? ERROR_ACCESS_DENIED : real(key, name, reserved, type, data, size);
}

TEST_P(JournalRegistry, WhatCannotBeBroughtBackKeepsNothingElseOut) {
  for (const wchar_t* name : {L"a", L"b", L"c"}) tree_.Set(L"key", name, Sz(name));
  tree_.Set({}, L"v", Sz(L"v"));
  const std::string before = Dump();
  const std::uint32_t id = Checkpoint([&] {
    guardkit_.RemoveValue(Root(), kTree, L"v", View());
    guardkit_.RemoveKey(Root(), tree_.PathOf(L"key"), View());
  });
  {
    const ImportPatch patch("RegSetValueExW", &RefuseB, guardkit_.Module());
    const UndoAnswer answer = guardkit_.Undo(id);
    EXPECT_EQ(answer.result, HRESULT_FROM_WIN32(ERROR_ACCESS_DENIED));
    EXPECT_EQ(answer.outcomes, (std::vector{StepOutcome::kBlocked, StepOutcome::kUndo}));
  }
  EXPECT_EQ(tree_.Get(L"key", L"a"), Sz(L"a"));
  EXPECT_EQ(tree_.Get(L"key", L"c"), Sz(L"c"));
  EXPECT_EQ(tree_.Get({}, L"v"), Sz(L"v"));
  EXPECT_EQ(guardkit_.Undo().checkpoint, id);
  EXPECT_EQ(Dump(), before);
}

TEST_P(JournalRegistry, ConflictsChangeNothingUnlessForced) {
  tree_.Set({}, L"a", Sz(L"old a"));
  tree_.Set({}, L"b", Sz(L"old b"));
  const std::uint32_t id = Checkpoint([&] {
    Set({}, L"a", Sz(L"new a"));
    Set({}, L"b", Sz(L"new b"));
    Set(L"made", L"c", Sz(L"c"));
  });
  tree_.Set({}, L"b", Sz(L"somebody's"));
  tree_.Set(L"made", L"d", Sz(L"somebody's too"));
  const std::string found = Dump();

  using enum StepOutcome;
  const UndoAnswer refused = guardkit_.Undo(id);
  EXPECT_EQ(refused.result, IJournal::kConflict);
  EXPECT_EQ(refused.outcomes, (std::vector{kUndo, kUndo, kConflict, kUndo}));
  EXPECT_NE(refused.texts.find(L"\"b\""), std::wstring::npos);
  EXPECT_EQ(refused.own, 0u);
  EXPECT_EQ(Dump(), found);

  const UndoAnswer forced = guardkit_.Undo(id, UndoMode::kForce);
  EXPECT_EQ(forced.result, S_OK);
  EXPECT_EQ(forced.outcomes, (std::vector{kUndo, kKept, kOverwritten, kUndo}));
  EXPECT_EQ(tree_.Get({}, L"a"), Sz(L"old a"));
  EXPECT_EQ(tree_.Get({}, L"b"), Sz(L"old b"));
  EXPECT_EQ(tree_.Get(L"made", L"d"), Sz(L"somebody's too"));
  // What was overwritten is not lost either.
  EXPECT_EQ(guardkit_.Undo(forced.own).result, S_OK);
  EXPECT_EQ(Dump(), found);
}

TEST_P(JournalRegistry, LinkInTheWayIsNotFollowed) {
  const std::uint32_t id = Checkpoint([&] { Set(L"sub", L"v", Sz(L"1")); });
  const RegistryTree elsewhere(std::wstring(kTree) + L"2", Root(), View());
  elsewhere.Set({}, L"v", Sz(L"1"));
  DeleteKeyTree(Root(), tree_.PathOf(L"sub"), View());
  MakeLink(Root(), tree_.PathOf(L"sub"), elsewhere.Key().Get(), View());
  EXPECT_EQ(guardkit_.Undo(id).result, IJournal::kConflict);
  const UndoAnswer forced = guardkit_.Undo(id, UndoMode::kForce);
  EXPECT_EQ(forced.outcomes, (std::vector{StepOutcome::kBlocked, StepOutcome::kBlocked}));
  EXPECT_EQ(elsewhere.Get({}, L"v"), Sz(L"1"));
}

TEST_F(JournalTest, ChangesOutsideACheckpointGetOneEachAndThoseWithoutEffectNone) {
  const RegistryTree tree(kTree);
  guardkit_.Set(HKEY_CURRENT_USER, kTree, L"v", Sz(L"1"));
  guardkit_.Set(HKEY_CURRENT_USER, kTree, L"v", Sz(L"2"));
  guardkit_.Set(HKEY_CURRENT_USER, kTree, L"v", Sz(L"2"));
  EXPECT_EQ(guardkit_.RemoveValue(HKEY_CURRENT_USER, kTree, L"none"), ERROR_FILE_NOT_FOUND);
  Checkpoint([] {}, L"empty");
  Checkpoint(
      [&] {
        guardkit_.Begin(L"inner");
        guardkit_.Set(HKEY_CURRENT_USER, kTree, L"w", Sz(L"1"));
        guardkit_.End();
        guardkit_.Set(HKEY_CURRENT_USER, kTree, L"w", Sz(L"2"));
      },
      L"outer");
  const auto list = guardkit_.List();
  ASSERT_EQ(list.size(), 3u);
  EXPECT_EQ(list[2].title, L"outer");
  EXPECT_EQ(list[2].steps, 2u);
  EXPECT_EQ(guardkit_.Undo(list[1].id).result, S_OK);
  EXPECT_EQ(tree.Get({}, L"v"), Sz(L"1"));
  const auto after = guardkit_.List();
  ASSERT_EQ(after.size(), 4u);
  EXPECT_EQ(after[1].state, CheckpointState::kUndone);
  EXPECT_EQ(after[3].undoes, list[1].id);
}

std::atomic<int> g_flushes;
LSTATUS WINAPI CountFlush(HKEY) {
  ++g_flushes;
  return ERROR_SUCCESS;
}

TEST_F(JournalTest, TargetInAnotherHiveIsFlushedBeforeItsSourceGoes) {
  const RegistryTree user(kTree);
  const RegistryTree machine(kTree, HKEY_LOCAL_MACHINE);
  user.Set({}, L"v", Sz(L"1"));
  user.Set({}, L"w", Sz(L"1"));
  const ImportPatch patch("RegFlushKey", &CountFlush, guardkit_.Module());
  g_flushes = 0;
  Checkpoint([&] {
    guardkit_.Set(HKEY_CURRENT_USER, kTree, L"target", Sz(L"1"));
    guardkit_.RemoveValue(HKEY_CURRENT_USER, kTree, L"v");
    EXPECT_EQ(g_flushes, 0);
    guardkit_.Set(HKEY_LOCAL_MACHINE, kTree, L"target", Sz(L"1"));
    guardkit_.RemoveValue(HKEY_CURRENT_USER, kTree, L"w");
    EXPECT_EQ(g_flushes, 1);
  });
}

// A plan finds places by their folded names, the system by comparing: they must agree.
TEST(LiveSystemNames, FoldedAreEqualForTheSameNamesOnly) {
  const UndoReach reach(CurrentUserSid());
  LiveSystem system(reach);
  for (unsigned unit = 1; unit < 0x10000; ++unit) {
    const std::wstring name(1, static_cast<wchar_t>(unit));
    const std::wstring folded = system.Folded(name);
    std::wstring lower = name;
    CharLowerBuffW(lower.data(), 1);
    ASSERT_TRUE(SameText(name, folded)) << unit;
    ASSERT_EQ(SameText(name, lower), folded == system.Folded(lower)) << unit;
  }
}

// Journals that another user, or somebody with a plan, has written.
TEST_F(JournalTest, WhatIsOutOfReachIsRefusedWhole) {
  const std::wstring machine = L"HKEY_LOCAL_MACHINE\\Software\\";
  const std::wstring own = L"HKEY_USERS\\" + CurrentUserSid() + L"\\Software\\";
  const std::wstring windows = L"Microsoft\\Windows\\CurrentVersion\\";
  const ValueState text{true, REG_SZ, {}};
  const auto value = [&](const std::wstring& key) { return ValueStep{key, L"v", text, {}}; };
  const auto file = [&](const std::wstring& path) { return FileStep{path, {}, {}}; };
  const KeyState key{true, L"", {}, {{L"v", REG_SZ, {}}}};
  const std::wstring startup = ShellFolder(CSIDL_STARTUP) + L"\\";
  const RecordedStep good{value(own + windows + L"Run"), StepMark::kDone, 0};
  const RecordedStep out[] = {
      {value(machine + L"SmhJournalTest")},
      {value(machine + L"\\" + windows + L"Run")},
      {value(machine + windows + L"Run\\Below")},
      {value(machine + windows + L"Policies\\Run")},
      {value(machine + windows + L"Explorer\\StartupApproved")},
      {value(machine + L"Classes\\*\\shellex")},
      {value(L"HKEY_USERS\\S-1-5-21-9-9-9-1001\\Software\\" + windows + L"Run")},
      {value(L"HKEY_CLASSES_ROOT\\*\\shellex\\ContextMenuHandlers\\x")},
      {value(L"")},
      {KeyStep{machine + windows + L"RunOnce", key, {}}},
      {KeyStep{machine + L"Classes", {}, key}},
      {file(L"C:\\Windows\\system32\\x.dll")},
      {file(startup + L"..\\x.lnk")},
      {file(startup + L"below\\x.lnk")},
      {file(startup + L"x.lnk:stream")},
      {file(startup + L"x.lnk ")},
      {file(L"\\\\?\\" + startup + L"x.lnk")},
      {file(L"x.lnk")},
      {file(DataFolder() + L"Journal\\00000002.journal")},
      {MoveStep{startup + L"x.lnk", L"C:\\x.lnk", {}}},
      {MoveStep{L"C:\\x.lnk", startup + L"x.lnk", {}}},
      {good.step, StepMark::kDone, 0, {StepSource::Kind::kValue, machine + L"SmhJournalTest", L"v", 0}},
      {good.step, StepMark::kDone, 0, {StepSource::Kind::kFile, L"\\\\server\\share\\x", {}, 0}},
  };
  const UndoReach reach(CurrentUserSid());
  for (const RecordedStep& step : out) {
    EXPECT_FALSE(reach.Covers(step)) << (&step - out);
    EXPECT_FALSE(reach.Covers(JournalContents{.header = {}, .steps = {good, step, good}}));
  }
  const RecordedStep within[] = {
      good,
      {value(machine + L"Wow6432Node\\" + windows + L"RUN\\Disabled (Startup Manager)")},
      {value(machine + windows + L"Run-")},
      {value(machine + L"Classes\\*\\shellex\\ContextMenuHandlers\\x\\below")},
      {KeyStep{
          L"HKEY_USERS\\" + CurrentUserSid() + L"_Classes\\*\\shellex\\ContextMenuHandlers\\x", key, {}}},
      {KeyStep{own + L"Microsoft\\Internet Explorer", {}, {true, L"", {}, {}}}},
      {value(machine + windows + L"Explorer\\StartupApproved\\Run32")},
      {file(startup + L"AutorunsDisabled\\x.lnk")},
      {MoveStep{
          ShellFolder(CSIDL_COMMON_STARTUP) + L"\\x.lnk", DataFolder() + L"Disabled Startup\\x.lnk", {}}},
  };
  for (const RecordedStep& step : within) EXPECT_TRUE(reach.Covers(step)) << (&step - within);

  const struct {
    std::wstring user;
    Step step;
    HRESULT result;
  } rows[] = {{L"S-1-5-21-9-9-9-1001", good.step, HRESULT_FROM_WIN32(ERROR_ACCESS_DENIED)},
              {CurrentUserSid(), out[0].step, IJournal::kOutOfReach}};
  for (const auto& row : rows) {
    ClearJournal();
    Checkpoint([] {});
    PlantJournal(1, row.user, row.step, true);
    for (const UndoMode mode : {UndoMode::kShow, UndoMode::kRun, UndoMode::kForce}) {
      EXPECT_EQ(guardkit_.Undo(1, mode).result, row.result);
    }
  }
  EXPECT_FALSE(KeyIsThere(HKEY_LOCAL_MACHINE, L"Software\\SmhJournalTest"));
}

}  // namespace
}  // namespace smh::test
