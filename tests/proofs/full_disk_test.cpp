// The disk is full from some write on: the change is made, or taken back without room, and nothing counts as
// interrupted or is left to an undo that is refused.
#include "tests/proofs/api_gate.h"
#include "tests/proofs/proof_report.h"
#include "tests/proofs/undo_world.h"

namespace smh::test {
namespace {

class FullDiskTest : public ::testing::Test {
 protected:
  FullDiskTest() { undo_.UseCheckpoints(true); }
  ~FullDiskTest() override { ClearJournal(); }

  // Whether the disk was full before the change came to its end.
  bool ChangeWithRoomFor(const Scenario& scenario, int room) {
    world_.Clear();
    ClearJournal();
    scenario.Arrange(world_);
    const std::string before = world_.Everything();
    const ItemRef item = LoadEntry(scenario);
    bool isDone = false;
    gate_.ArmFullDisk(room);
    try {
      isDone = Perform(scenario, item).text.empty();
    } catch (const std::exception&) {
      // Nothing was changed then.
    }
    const bool isFull = gate_.Disarm() != nullptr;
    const bool isChanged = world_.Everything() != before;
    EXPECT_EQ(isChanged, isDone);
    EXPECT_TRUE(undo_.Service().List(true).empty());
    EXPECT_EQ(undo_.UndoAll(), isChanged ? 1 : 0);
    EXPECT_EQ(world_.Everything(), before);
    return isFull;
  }

  UndoWorld& undo_ = UndoWorld::Instance();
  ProofWorld world_;
  ApiGate gate_{nullptr, undo_.Service().Module()};
};

TEST_F(FullDiskTest, LeavesNothingInterruptedAndNothingThatUndoRefuses) {
  int index = 0;
  for (const Scenario& scenario : Scenarios()) {
    if (scenario.isVariant && ProofStride() != 1) continue;
    SCOPED_TRACE(scenario.name);
    for (int room = index++ % ProofStride();; room += ProofStride()) {
      SCOPED_TRACE("room for " + std::to_string(room));
      if (!ChangeWithRoomFor(scenario, room)) break;
      ProofReport::Count(scenario.name, "full disk");
    }
  }
}

}  // namespace
}  // namespace smh::test
