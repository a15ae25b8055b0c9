// A journal that ends behind any of its steps costs no entry: undoing what it still tells removes no only
// copy.
#include "siblings/guardkit/journal_file.h"
#include "tests/proofs/proof_report.h"
#include "tests/proofs/undo_world.h"

namespace smh::test {
namespace {

// The newest file of the journal becomes what an owner leaves who dies behind so many steps; false when there
// are no more.
bool TearNewest(std::size_t steps) {
  const JournalFolder folder = JournalFolder::Open();
  const JournalName name = ListJournals(folder).back();
  JournalContents contents = ReadJournal(folder, name).contents;
  if (steps >= contents.steps.size()) return false;
  contents.header.process = 0;
  std::string file;
  const auto add = [&file](const ByteVector& bytes) {
    file.append(reinterpret_cast<const char*>(bytes.data()), bytes.size());
  };
  add(EncodeBeginning(contents.header));
  add(EncodePart(contents.parts.front().header));
  for (std::uint32_t i = 0; i < steps; ++i) {
    add(EncodeStep(i, contents.steps[i].step, contents.steps[i].source));
    add(EncodeMark(i, contents.steps[i].status));
  }
  add(ByteVector(kRoomBehindMark));
  std::filesystem::remove(folder.File(name.FileName()));
  WriteFileBytes(folder.File(JournalName{.id = name.id}.FileName()), file);
  return true;
}

// Of changes, and of their undos.
TEST(TornJournal, CostsNoEntry) {
  UndoWorld& undo = UndoWorld::Instance();
  ProofWorld world;
  int index = 0;
  for (const Scenario& scenario : Scenarios()) {
    const std::wstring line = scenario.operation.errorLine;
    const bool mayBeGone = scenario.operation.entry == Entry::kNone || line.starts_with(L"Error delete");
    if (mayBeGone || scenario.isVariant || ++index % ProofStride(4) != 0) continue;
    SCOPED_TRACE(scenario.name);
    for (const bool undoes : {false, true}) {
      for (std::size_t steps = 1;; ++steps) {
        SCOPED_TRACE(steps);
        world.Clear();
        ClearJournal();
        scenario.Arrange(world);
        Perform(scenario, LoadEntry(scenario));
        if (undoes) {
          ASSERT_EQ(undo.Service().Undo().result, S_OK);
        }
        if (!TearNewest(steps)) break;
        const auto interrupted = undo.Service().List(true);
        if (!interrupted.empty()) undo.Service().Undo(interrupted.back().id);
        EXPECT_FALSE(ReloadedEntries(scenario.locations).empty());
        ProofReport::Count(scenario.name, undoes ? "torn undos" : "torn changes");
      }
    }
  }
  ClearJournal();
}

}  // namespace
}  // namespace smh::test
