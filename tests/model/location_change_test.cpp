// The order of a change's steps, and what is taken back at which failure: never both places of an entry.
#include "infra/runtime/exceptions.h"
#include "model/change_refused.h"
#include "model/location_change.h"
#include "tests/support/module_fixture.h"

#include <gmock/gmock.h>

namespace smh::test {
namespace {

using ::testing::ElementsAreArray;

enum class Step { kDone, kRefused, kRaised };

bool Outcome(Step step) {
  if (step == Step::kRaised) RaiseChangedMeanwhile();
  return step == Step::kDone;
}

class FakeSource final : public EntrySource {
 public:
  FakeSource(std::vector<std::wstring>& log, Step extracting, bool comesBack)
      : log_(log), extracting_(extracting), comesBack_(comesBack) {}
  FoundEntry Found() const override { return {}; }
  SharedText ShownCommand() const override { return {}; }
  std::wstring Command() const override { return {}; }
  bool ExtractItem(const LastLook& arrived) override {
    log_.push_back(L"extract");
    RequireStill(arrived);
    return Outcome(extracting_);
  }
  bool PutBack() noexcept override {
    log_.push_back(L"put back");
    return comesBack_;
  }

 private:
  std::vector<std::wstring>& log_;
  const Step extracting_;
  const bool comesBack_;
};

class FakeTarget final : public EntryTarget {
 public:
  FakeTarget(std::vector<std::wstring>& log, Step inserting, bool carries)
      : log_(log), inserting_(inserting), carries_(carries) {}
  bool InsertItem() override {
    log_.push_back(L"insert");
    return Outcome(inserting_);
  }
  bool Stands() const override { return true; }
  bool TakeBack() noexcept override {
    log_.push_back(L"take back");
    return true;
  }
  FoundEntry Found() const override { return {}; }
  bool CarriesSource() const noexcept override { return carries_; }

 private:
  std::vector<std::wstring>& log_;
  const Step inserting_;
  const bool carries_;
};

class LocationChange : public BothWays<ModuleTest> {};
INSTANTIATE_TEST_SUITE_P(Checkpoints, LocationChange, ::testing::Bool());

TEST_P(LocationChange, TheTargetStandsBeforeTheSourceGoesAndGoesOnlyWhenTheSourceIsBack) {
  using Steps = std::vector<std::wstring>;
  const Step kNone = Step::kDone;
  const struct {
    bool hasTarget, hasSource, carries, comesBack;
    Step inserting, extracting;
    Steps steps;
  } rows[] = {
      {true, true, false, true, Step::kDone, Step::kDone, {L"insert", L"extract"}},
      {true, true, true, true, Step::kDone, kNone, {L"insert"}},
      {true, false, false, true, Step::kDone, kNone, {L"insert"}},
      {false, true, false, true, kNone, Step::kDone, {L"extract"}},
      // The source was not touched yet, but may have been seen half by others.
      {true, true, false, true, Step::kRefused, kNone, {L"insert", L"put back", L"take back"}},
      {true, true, false, true, Step::kRaised, kNone, {L"insert", L"put back", L"take back"}},
      {true, true, true, true, Step::kRaised, kNone, {L"insert", L"take back"}},
      {true, false, false, true, Step::kRefused, kNone, {L"insert", L"take back"}},
      {true,
       true,
       false,
       true,
       Step::kDone,
       Step::kRefused,
       {L"insert", L"extract", L"put back", L"take back"}},
      {true,
       true,
       false,
       true,
       Step::kDone,
       Step::kRaised,
       {L"insert", L"extract", L"put back", L"take back"}},
      {false, true, false, true, kNone, Step::kRaised, {L"extract", L"put back"}},
      // In one place at least.
      {true, true, false, false, Step::kDone, Step::kRefused, {L"insert", L"extract", L"put back"}},
      {true, true, false, false, Step::kDone, Step::kRaised, {L"insert", L"extract", L"put back"}},
  };
  for (const auto& row : rows) {
    const auto number = &row - rows;
    module.Safeguard().Clear();
    Steps log;
    FakeSource source(log, row.extracting, row.comesBack);
    FakeTarget target(log, row.inserting, row.carries);
    const bool raises = row.inserting == Step::kRaised || row.extracting == Step::kRaised;
    const bool isDone = row.inserting == Step::kDone && row.extracting == Step::kDone;
    bool hasRaised = false;
    {
      ChangeCheckpoint checkpoint(ChangeKind::kMoving, L"x");
      EXPECT_EQ(checkpoint.IsRecorded(), GetParam());
      try {
        EXPECT_EQ(
            CarryEntry(row.hasTarget ? &target : nullptr, row.hasSource ? &source : nullptr, checkpoint),
            isDone);
      } catch (const EChangeRefused&) {
        hasRaised = true;
      }
    }
    EXPECT_EQ(hasRaised, raises) << number;
    EXPECT_THAT(log, ElementsAreArray(row.steps)) << number;
    Steps journal;
    if (GetParam()) {
      journal = isDone ? Steps{L"BeginCheckpoint \"Startup Manager: Moving x\"", L"EndCheckpoint"}
                       : Steps{L"BeginCheckpoint \"Startup Manager: Moving x\"", L"FailCheckpoint",
                               L"EndCheckpoint"};
    }
    EXPECT_THAT(module.Safeguard().Lines(), ElementsAreArray(journal)) << number;
  }
}

}  // namespace
}  // namespace smh::test
