// Operations of a change fail, once or from some step on: the entry is where it was or where it should be,
// or, when its removal was refused, in both places; nobody is told that all is done when it is not; and the
// undo brings back what was.
#include "tests/proofs/trial.h"

#include <algorithm>

namespace smh::test {
namespace {

class FaultTest : public TrialTest {
 protected:
  void Judge(const Scenario& scenario, const Outcome& outcome, Fault fault);
  void TryEvery(const Scenario& scenario, Fault fault, const char* column, unsigned calls = 0);

 private:
  void ExpectNothingLost(const RawState& now, bool mayStandTwice) const;
  // A bounded run takes one call in so many, in the next scenario others.
  int first_ = 0;
};

INSTANTIATE_TEST_SUITE_P(Checkpoints, FaultTest, ::testing::Bool());

bool Has(const RawState& state, const RawState::value_type& entry) {
  const auto found = state.find(entry.first);
  return found != state.end() && found->second == entry.second;
}

void FaultTest::ExpectNothingLost(const RawState& now, bool mayStandTwice) const {
  const RawState& before = before_.entries;
  const RawState& after = after_.entries;
  const bool hasArrived = std::ranges::all_of(after, [&](const auto& entry) { return Has(now, entry); });
  for (const auto& entry : before) {
    EXPECT_TRUE(Has(now, entry) || (hasArrived && !Has(after, entry))) << "lost: " << entry.first;
  }
  for (const auto& entry : now) {
    const bool isLeftKey = mayStandTwice && entry.second.empty();
    EXPECT_TRUE(Has(before, entry) || Has(after, entry) || isLeftKey) << "nobody's: " << entry.first;
  }
  EXPECT_TRUE(mayStandTwice || now == before || now == after) << "in two places";
}

void FaultTest::Judge(const Scenario& scenario, const Outcome& outcome, Fault fault) {
  const RawState& now = outcome.entries;
  const int failures = Failures();
  ExpectNothingLost(now, fault == Fault::kRefusedOn);
  // An entry that cannot be seen when its change begins counts as gone: the next load lists it again.
  const bool isUnseen = outcome.raised && outcome.listed.size() + 1 == before_.listed.size();
  if (now != after_.entries) {
    EXPECT_TRUE(outcome.raised) << "not done, and nobody was told";
    EXPECT_TRUE(isUnseen || fault == Fault::kRefusedOn || LogHas(scenario.operation.errorLine))
        << "not done, and no line says so";
  }
  ExpectListed(scenario, outcome, scenario.uncovers || isUnseen || outcome.raised);
  // A journal that is only said to be written brings nothing back.
  if (IsRecorded() && fault != Fault::kPretended) {
    UndoAll();
    EXPECT_EQ(Difference(before_.entries, world_.Entries()), "") << "the undo left something else";
  }
  if (Failures() != failures) ADD_FAILURE() << outcome.text << '\n' << Difference(before_.entries, now);
}

void FaultTest::TryEvery(const Scenario& scenario, Fault fault, const char* column, unsigned calls) {
  if (scenario.isVariant && ++first_ % ProofStride() != 0) return;
  const int stride = ProofStride(calls == kEvery || fault == Fault::kRefused ? 37 : 11);
  for (int number = 1 + first_++ % stride;; number += stride) {
    const Outcome outcome = Run(scenario, [&] {
      if (fault == Fault::kRefusedOn) {
        gate_.ArmFrom(number, calls);
      } else {
        gate_.Arm(fault, number);
      }
    });
    if (outcome.victim == nullptr) return;
    SCOPED_TRACE(std::string(column) + ": " + outcome.victim + ", call " + std::to_string(number));
    Judge(scenario, outcome, fault);
    ProofReport::Count(scenario.name, column);
  }
}

TEST_P(FaultTest, NoFailureLosesAnEntry) {
  for (const Scenario& scenario : Scenarios()) {
    SCOPED_TRACE(scenario.name);
    LearnEnds(scenario);
    TryEvery(scenario, Fault::kRefused, "refused");
    TryEvery(scenario, Fault::kPretended, "pretended");
    TryEvery(scenario, Fault::kLate, "late");
    TryEvery(scenario, Fault::kRefusedOn, "no writes", kWrites);
    TryEvery(scenario, Fault::kRefusedOn, "no deletions", kDeletes);
    TryEvery(scenario, Fault::kRefusedOn, "no opens", kOpens | kMakes);
    TryEvery(scenario, Fault::kRefusedOn, "nothing", kEvery);
  }
}

}  // namespace
}  // namespace smh::test
