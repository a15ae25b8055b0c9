// The process ends before every operation that makes or changes something: nothing is lost, and undo brings
// back what was.
#include "tests/proofs/api_gate.h"
#include "tests/proofs/proof_report.h"
#include "tests/proofs/undo_world.h"
#include "tests/support/test_main.h"

namespace smh::test {
namespace {

// Scenario, what is done ("plain", "recorded" or "undo" of what is in the journal), call. Exit code 1 is the
// death, 0 the end.
SMH_CHILD(ProofVictim) {
  const Scenario& scenario = Scenarios()[std::stoul(arguments[0])];
  UndoWorld& undo = UndoWorld::Instance();
  undo.UseCheckpoints(arguments[1] != L"plain");
  const bool undoes = arguments[1] == L"undo";
  const ItemRef item = undoes ? nullptr : LoadEntry(scenario);
  ApiGate gate{nullptr, undo.Service().Module()};
  gate.Arm(Fault::kDeath, std::stoi(arguments[2]));
  if (undoes) {
    undo.Service().Undo();
  } else {
    Perform(scenario, item);
  }
  gate.Disarm();
  return 0;
}

class KillTest : public ::testing::Test {
 protected:
  ~KillTest() override { ClearJournal(); }

  // In a process of its own; false when it came to its end first. Call 0 is never reached.
  static bool KillAt(const Scenario& scenario, const wchar_t* what, int call) {
    const auto index = static_cast<std::size_t>(&scenario - Scenarios().data());
    const ChildResult result =
        RunChild(L"ProofVictim", {std::to_wstring(index), what, std::to_wstring(call)});
    EXPECT_LE(result.exitCode, 1u) << result.output;
    return result.exitCode != 0;
  }

  void Arrange(const Scenario& scenario) {
    world_.Clear();
    ClearJournal();
    scenario.Arrange(world_);
    before_ = world_.Everything();
  }

  // What was begun is undone to the last bit; what was not yet begun changed nothing.
  void ExpectUndone() const {
    const bool isChanged = world_.Everything() != before_;
    const int undone = undo_.UndoAll();
    EXPECT_TRUE(!isChanged || undone > 0);
    EXPECT_EQ(world_.Everything(), before_);
    EXPECT_TRUE(undo_.Service().List(true).empty());
  }

  // Without a journal too the entry is in one of its places.
  static void ExpectSomewhere(const Scenario& scenario) {
    const bool mayBeGone = scenario.operation.entry == Entry::kNone ||
                           std::wstring(scenario.operation.errorLine).starts_with(L"Error delete");
    EXPECT_TRUE(mayBeGone || !ReloadedEntries(scenario.locations).empty());
  }

  // What a bounded run takes: one in so many scenarios, and of their calls, each time others.
  struct Bounds {
    int scenarios;
    int calls;
  };
  template <typename Attempt>
  static void ForEachDeath(Bounds bounds, const char* column, Attempt&& attempt) {
    const int stride = ProofStride(bounds.calls);
    int index = 0;
    for (const Scenario& scenario : Scenarios()) {
      if (scenario.isVariant && ProofStride() != 1) continue;
      if (++index % ProofStride(bounds.scenarios) != 0) continue;
      SCOPED_TRACE(scenario.name);
      for (int call = 1 + index % stride;; call += stride) {
        SCOPED_TRACE("call " + std::to_string(call));
        if (!attempt(scenario, call)) break;
        ProofReport::Count(scenario.name, column);
      }
    }
  }

  UndoWorld& undo_ = UndoWorld::Instance();
  ProofWorld world_;
  std::string before_;
};

TEST_F(KillTest, ADeathInARecordedChangeIsUndone) {
  ForEachDeath({1, 11}, "kills, recorded", [&](const Scenario& scenario, int call) {
    Arrange(scenario);
    const bool died = KillAt(scenario, L"recorded", call);
    ExpectUndone();
    return died;
  });
}

TEST_F(KillTest, ADeathInAnUndoIsUndone) {
  ForEachDeath({8, 5}, "kills, undo", [&](const Scenario& scenario, int call) {
    Arrange(scenario);
    EXPECT_FALSE(KillAt(scenario, L"recorded", 0));
    const bool died = KillAt(scenario, L"undo", call);
    ExpectUndone();
    return died;
  });
}

TEST_F(KillTest, ADeathInAPlainChangeLeavesTheEntryInALocation) {
  ForEachDeath({1, 4}, "kills, plain", [&](const Scenario& scenario, int call) {
    Arrange(scenario);
    const bool died = KillAt(scenario, L"plain", call);
    ExpectSomewhere(scenario);
    return died;
  });
}

}  // namespace
}  // namespace smh::test
