#include "tests/proofs/trial.h"

#include "infra/log/uStatisticsLog.h"
#include "tests/support/file_fixture.h"

namespace smh::test {

int Failures() {
  return testing::UnitTest::GetInstance()->current_test_info()->result()->total_part_count();
}

bool LogHas(std::wstring_view line) {
  SaveLog();
  for (const std::wstring& logged : ReadUtf16Lines(LogFilePath())) {
    if (logged.find(line) != logged.npos) return true;
  }
  return false;
}

void TrialTest::Arrange(const Scenario& scenario) {
  world_.Clear();
  ClearJournal();
  scenario.Arrange(world_);
  ClearLogLines();
}

Outcome TrialTest::Change(const Scenario& scenario, const ItemRef& item) {
  Outcome outcome;
  try {
    outcome.text = Narrow(Perform(scenario, item).text);
    outcome.raised = !outcome.text.empty();
  } catch (const Exception& error) {
    outcome.raised = true;
    outcome.text = Narrow(error.Message());
  }
  outcome.victim = gate_.Disarm();
  outcome.entries = world_.Entries();
  outcome.listed = ListedEntries();
  return outcome;
}

Outcome TrialTest::Run(const Scenario& scenario, const std::function<void()>& arm) {
  Arrange(scenario);
  const ItemRef item = LoadEntry(scenario);
  ClearLogLines();
  arm();
  return Change(scenario, item);
}

void TrialTest::LearnEnds(const Scenario& scenario) {
  Arrange(scenario);
  LoadEntry(scenario);
  before_.entries = world_.Entries();
  before_.listed = ListedEntries();
  after_ = Run(scenario, [&] { gate_.Arm(Fault::kNone, 0); });
  EXPECT_FALSE(after_.raised) << after_.text;
  EXPECT_NE(after_.entries, before_.entries);
  ExpectListed(scenario, after_, scenario.uncovers);
}

void TrialTest::ExpectListed(const Scenario& scenario, const Outcome& outcome, bool listIsDue) const {
  const std::vector<std::string> loaded = ReadAndList(scenario.locations);
  EXPECT_TRUE(listIsDue || outcome.listed == ListedEntries()) << "the list shows something else";
  EXPECT_EQ(loaded, ReloadedEntries(scenario.locations)) << "the next load shows something else";
}

bool TrialTest::UndoAll() const {
  bool isAll = true;
  const std::vector<ListedCheckpoint> list = undo_.Service().List();
  for (auto row = list.rbegin(); row != list.rend(); ++row) {
    isAll = undo_.Service().Undo(row->id).result == S_OK && isAll;
  }
  return isAll;
}

}  // namespace smh::test
