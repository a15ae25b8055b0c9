// Two processes change one entry: the second has read its list, and waits for the journal, while the first is
// at it. Neither loses or overwrites what the other does.
#include "tests/proofs/proof_report.h"
#include "tests/proofs/undo_world.h"
#include "tests/support/test_main.h"
#include "tests/support/waiting.h"

namespace smh::test {
namespace {

const std::wstring kFirst = kProgram + L" /first";
const std::wstring kSecond = kProgram + L" /second";

using Change = ChangeAnswer (*)(TLocationStartup& location, const ItemRef& item, const std::wstring& command);

ChangeAnswer Add(TLocationStartup& location, const ItemRef&, const std::wstring& command) {
  return location.AddItem(L"Foo", command);
}
ChangeAnswer Command(TLocationStartup& location, const ItemRef& item, const std::wstring& command) {
  return location.ChangeItemCommand(item, command);
}
ChangeAnswer Delete(TLocationStartup& location, const ItemRef& item, const std::wstring&) {
  return location.DeleteItem(item);
}
ChangeAnswer Switch(TLocationStartup& location, const ItemRef& item, const std::wstring&) {
  return item->IsEnabled() ? location.DisableItem(item) : location.EnableItem(item);
}
ChangeAnswer Move(TLocationStartup& location, const ItemRef& item, const std::wstring&) {
  return location.MoveItem(item, sulRegistryCommonRun);
}

// What the user's Run key, its side key and the common one hold, by name.
using Held = std::map<std::wstring, std::wstring>;

struct Turns {
  const char* name;
  // Of the entry "Foo" at the beginning: none, enabled or disabled; its command is the program.
  Entry entry;
  Change first;
  Change second;
  // What the second answers: an empty text when it comes about.
  const char* answer;
  Held enabled;
  Held disabled;
  Held moved;
};

constexpr char kMeanwhile[] = "changed meanwhile by another program";
constexpr char kGone[] = "the entry has gone";

const Turns kTurns[] = {
    {"add over add", Entry::kNone, Add, Add, "position 0", {{L"Foo", kFirst}}, {}, {}},
    {"enable over an added one",
     Entry::kDisabled,
     Add,
     Switch,
     "",
     {{L"Foo", kFirst}, {L"Foo (1)", kProgram}},
     {},
     {}},
    {"disable over a changed one", Entry::kEnabled, Command, Switch, "", {}, {{L"Foo", kFirst}}, {}},
    {"change over change", Entry::kEnabled, Command, Command, kMeanwhile, {{L"Foo", kFirst}}, {}, {}},
    {"delete over change", Entry::kEnabled, Command, Delete, kMeanwhile, {{L"Foo", kFirst}}, {}, {}},
    {"move over change", Entry::kEnabled, Command, Move, kMeanwhile, {{L"Foo", kFirst}}, {}, {}},
    {"move over delete", Entry::kEnabled, Delete, Move, kGone, {}, {}, {}},
    {"move over disable", Entry::kEnabled, Switch, Move, kGone, {}, {{L"Foo", kProgram}}, {}},
    {"change over delete", Entry::kEnabled, Delete, Command, kGone, {}, {}, {}},
    {"delete over move", Entry::kEnabled, Move, Delete, kGone, {}, {}, {{L"notepad", kProgram}}},
    {"disable over disable", Entry::kEnabled, Switch, Switch, kGone, {}, {{L"Foo", kProgram}}, {}},
};

ItemRef LoadFoo() {
  ReloadedEntries({sulRegistryUserRun, sulRegistryCommonRun});
  ScopedLock lock(Items().Lock());
  for (const ItemRef& item : Items().Snapshot()) {
    if (item->GivenText() == SharedText(L"Foo")) return item;
  }
  return nullptr;
}

// Reads the list, says so, and makes the second change: the answer's text, or the exception's.
SMH_CHILD(SecondProcess) {
  const Turns& turns = kTurns[std::stoul(arguments[0])];
  UndoWorld::Instance();
  const ItemRef item = LoadFoo();
  std::printf("ready\n");
  std::fflush(stdout);
  try {
    const ChangeAnswer answer = turns.second(*FindLocation(sulRegistryUserRun), item, kSecond);
    if (answer.position >= 0) std::printf("position %d", answer.position);
    std::printf("%ls", answer.text.c_str());
    return answer.text.empty() ? 0 : 1;
  } catch (const Exception& exception) {
    std::printf("%ls", exception.Message().c_str());
    return 1;
  }
}

Held HeldBy(HKEY root, const std::wstring& key) {
  Held held;
  for (const std::wstring& name : Values(root, key, OwnView())) {
    held[name] = TextOf(GetValue(root, key, name, OwnView()));
  }
  return held;
}

TEST(JournalTurns, NeitherProcessLosesWhatTheOtherDoes) {
  UndoWorld& undo = UndoWorld::Instance();
  undo.UseCheckpoints(true);
  ProofWorld world;
  for (std::size_t row = 0; row < std::size(kTurns); ++row) {
    const Turns& turns = kTurns[row];
    SCOPED_TRACE(turns.name);
    world.Clear();
    ClearJournal();
    if (turns.entry != Entry::kNone) {
      world.Put(HKEY_CURRENT_USER, turns.entry == Entry::kEnabled ? kRunKey : kRunSide, L"Foo", Sz(kProgram));
    }
    const std::string before = world.Everything();
    const ItemRef item = LoadFoo();
    ASSERT_EQ(undo.Service().Begin(L"held"), ERROR_SUCCESS);
    ChildProcess second(ThisProgram(), {L"--child=SecondProcess", std::to_wstring(row)});
    ASSERT_TRUE(WaitUntil([&] { return second.Output().find("ready") != std::string::npos; }));
    // It comes to the journal meanwhile; later, it has an old list all the same.
    Sleep(200);
    turns.first(*FindLocation(sulRegistryUserRun), item, kFirst);
    ASSERT_FALSE(second.WaitFor(0)) << "it has not waited for the journal";
    ASSERT_EQ(undo.Service().End(), ERROR_SUCCESS);
    const ChildResult result = second.Finish();
    const std::string answer = result.output.substr(result.output.find("ready") + 5);
    const std::string expected = turns.answer;
    const bool isDone = expected.empty() || expected.starts_with("position");
    EXPECT_EQ(result.exitCode, isDone ? 0u : 1u) << answer;
    EXPECT_NE(answer.find(expected), std::string::npos) << answer;
    EXPECT_EQ(HeldBy(HKEY_CURRENT_USER, kRunKey), turns.enabled);
    EXPECT_EQ(HeldBy(HKEY_CURRENT_USER, kRunSide), turns.disabled);
    EXPECT_EQ(HeldBy(HKEY_LOCAL_MACHINE, kRunKey), turns.moved);
    // What failed leaves nothing that undo trips over.
    EXPECT_GT(undo.UndoAll(), 0);
    EXPECT_EQ(world.Everything(), before);
    ProofReport::Count("two processes at one entry", isDone ? "done" : "refused");
  }
  ClearJournal();
}

}  // namespace
}  // namespace smh::test
