// Every operation of every change fails once: the entry is where it was or where it should be, and everybody
// knows which.
#include "infra/log/uStatisticsLog.h"
#include "model/basic_info.h"
#include "tests/proofs/api_gate.h"
#include "tests/proofs/proof_report.h"
#include "tests/proofs/scenarios.h"
#include "tests/support/module_fixture.h"

namespace smh::test {
namespace {

// What can be seen of a change.
struct Outcome {
  std::string entries;
  std::vector<std::string> listed;
  bool raised = false;
  const char* victim = nullptr;
};

// A bounded run takes one call in three, in the next scenario others.
int FirstOf(const Scenario& scenario) {
  return 1 + static_cast<int>(&scenario - Scenarios().data()) % ProofStride();
}

class FaultTest : public ModuleTest, public ::testing::WithParamInterface<bool> {
 protected:
  FaultTest() { module.Settings().useCheckpoints = GetParam(); }

  // From the scenario's beginning; `prepare` breaks something.
  template <typename Prepare>
  Outcome Run(const Scenario& scenario, Prepare&& prepare) {
    module.Safeguard().Clear();
    world_.Clear();
    scenario.arrange(world_);
    const ItemRef item = LoadEntry(scenario);
    ClearLogLines();
    Outcome outcome;
    prepare();
    try {
      outcome.raised = !Perform(scenario, item).text.empty();
    } catch (const Exception&) {
      outcome.raised = true;
    }
    outcome.victim = gate_.Disarm();
    outcome.entries = world_.Entries();
    outcome.listed = ListedEntries();
    return outcome;
  }

  Outcome RunArmed(const Scenario& scenario, Fault fault, int number) {
    return Run(scenario, [&] { gate_.Arm(fault, number); });
  }

  void FailEveryCall(const Scenario& scenario, Fault fault);
  // The same at the backup service itself, whose calls these are in an undisturbed change.
  void RefuseEveryServiceCall(const Scenario& scenario);
  // How it looks before the change and after an undisturbed one.
  void LearnEnds(const Scenario& scenario);
  void Judge(const Scenario& scenario, const Outcome& outcome, bool mustRaise);

  ProofWorld world_;
  ApiGate gate_;
  std::vector<std::wstring> serviceCalls_;
  Outcome before_;
  Outcome after_;
};

INSTANTIATE_TEST_SUITE_P(Checkpoints, FaultTest, ::testing::Bool());

void FaultTest::LearnEnds(const Scenario& scenario) {
  world_.Clear();
  scenario.arrange(world_);
  LoadEntry(scenario);
  before_.entries = world_.Entries();
  before_.listed = ListedEntries();
  after_ = RunArmed(scenario, Fault::kNone, 0);
  serviceCalls_ = module.Safeguard().Lines();
  EXPECT_FALSE(after_.raised);
  ASSERT_NE(after_.entries, before_.entries);
  Judge(scenario, after_, false);
}

void FaultTest::Judge(const Scenario& scenario, const Outcome& outcome, bool mustRaise) {
  bool listIsDue = scenario.uncovers;
  if (outcome.entries == before_.entries) {
    // An entry that cannot be seen when its move begins counts as vanished: it is listed again by the next
    // load.
    const bool vanished = !outcome.raised && outcome.listed.size() + 1 == before_.listed.size() &&
                          FindLocation(scenario.locations.front())->IsChanged();
    listIsDue |= vanished;
    EXPECT_TRUE(outcome.raised || !mustRaise || vanished) << "nothing changed, and nobody was told";
    EXPECT_TRUE(vanished || LogHas(scenario.operation.errorLine)) << "nothing changed, and no line says so";
  } else {
    EXPECT_EQ(outcome.entries, after_.entries) << "neither as before nor as it should be";
  }
  const std::vector<std::string> loaded = ReadAndList(scenario.locations);
  EXPECT_EQ(loaded, ReloadedEntries(scenario.locations)) << "the next load shows something else";
  EXPECT_TRUE(listIsDue || outcome.listed == ListedEntries()) << "the list shows something else";
}

void FaultTest::FailEveryCall(const Scenario& scenario, Fault fault) {
  const bool alwaysRaises = IsFolderLocation(scenario.locations.front()) || !GetParam();
  for (int number = FirstOf(scenario);; number += ProofStride()) {
    const Outcome outcome = RunArmed(scenario, fault, number);
    if (outcome.victim == nullptr) return;
    SCOPED_TRACE(std::string(outcome.victim) + ", call " + std::to_string(number));
    Judge(scenario, outcome, fault == Fault::kRefused && alwaysRaises);
    ProofReport::Count(scenario.name, GetParam() ? "faults, recorded" : "faults, plain");
  }
}

void FaultTest::RefuseEveryServiceCall(const Scenario& scenario) {
  const bool isFolder = IsFolderLocation(scenario.locations.front());
  RecordingSafeguard& service = module.Safeguard();
  const std::vector<std::wstring> calls = serviceCalls_;
  for (std::size_t number = 0; number < calls.size(); ++number) {
    SCOPED_TRACE(testing::PrintToString(calls[number]));
    const Outcome outcome = Run(scenario, [&] {
      const auto refuse = [&service] { service.Answer({}, ERROR_DISK_FULL); };
      if (number == 0) refuse();
      service.Before([=, made = std::size_t(0)](const std::wstring&) mutable {
        if (++made == number) refuse();
      });
    });
    Judge(scenario, outcome, isFolder || calls[number].starts_with(L"BeginCheckpoint"));
    ProofReport::Count(scenario.name, "faults, service");
  }
}

TEST_P(FaultTest, NoFailureLosesAnEntry) {
  for (const Scenario& scenario : Scenarios()) {
    SCOPED_TRACE(scenario.name);
    LearnEnds(scenario);
    RefuseEveryServiceCall(scenario);
    for (const Fault fault : {Fault::kRefused, Fault::kPretended, Fault::kLate}) {
      SCOPED_TRACE(fault == Fault::kRefused ? "refused" : fault == Fault::kLate ? "late" : "pretended");
      FailEveryCall(scenario, fault);
    }
  }
}

}  // namespace
}  // namespace smh::test
