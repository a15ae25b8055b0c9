// One change after the other from its own beginning, with something in its way, and what becomes of it.
#pragma once

#include "tests/proofs/api_gate.h"
#include "tests/proofs/proof_report.h"
#include "tests/proofs/undo_world.h"

#include <functional>

namespace smh::test {

// What can be seen of a change.
struct Outcome {
  RawState entries;
  std::vector<std::string> listed;
  // Nobody was told that all is done.
  bool raised = false;
  std::string text;
  const char* victim = nullptr;
};

// With checkpoints of the real backup service, and without.
class TrialTest : public ::testing::TestWithParam<bool> {
 protected:
  TrialTest() { undo_.UseCheckpoints(GetParam()); }
  ~TrialTest() override { ClearJournal(); }

  static bool IsRecorded() { return GetParam(); }
  // Before the list is read.
  void Arrange(const Scenario& scenario);
  // From the scenario's beginning; `arm` is called when the list has been read.
  Outcome Run(const Scenario& scenario, const std::function<void()>& arm);
  // Makes the change of what is arranged and listed; the gate is armed.
  Outcome Change(const Scenario& scenario, const ItemRef& item);
  // How it looks before the change and after an undisturbed one.
  void LearnEnds(const Scenario& scenario);
  // The list, the next load and one from the start show the same.
  void ExpectListed(const Scenario& scenario, const Outcome& outcome, bool listIsDue) const;
  // Takes back what is in the journal, the newest first; whether everything was.
  bool UndoAll() const;

  UndoWorld& undo_ = UndoWorld::Instance();
  ProofWorld world_;
  ApiGate gate_{nullptr, undo_.Service().Module()};
  Outcome before_;
  Outcome after_;
};

// Of the test that runs.
int Failures();
// The statistics log, since it was cleared last.
bool LogHas(std::wstring_view line);

}  // namespace smh::test
