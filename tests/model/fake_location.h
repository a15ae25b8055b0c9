// Locations whose entries are a list that the test writes, in place of the real location classes.
#pragma once

#include "tests/support/module_fixture.h"

namespace smh::test {

class FakeLocation final : public TLocationStartup {
 public:
  explicit FakeLocation(const LocationRow& row)
      : TLocationStartup(row, {.canEnable = true, .canModify = true, .canDelete = true}) {}

  struct Entry {
    std::wstring name;
    std::wstring command;
    bool isProtected = false;
  };

  void SetEntries(std::vector<Entry> entries) {
    const std::scoped_lock lock(lock_);
    entries_ = std::move(entries);
  }
  void Reset() {
    SetEntries({});
    reads = 0;
    changed = changesAlways = false;
    onRead = nullptr;
  }
  ItemRef Listed(const std::wstring& name) const { return FindItem(LocationType(), name); }
  // A change of this location, for the length of the scope.
  ChangeGate::Scope BeginChange() { return ChangeGate::Scope(Gate()); }

  bool ItemExists(const TStartupItem&) override { return true; }
  void LoadItems(Look look) override {
    ++reads;
    const std::optional<Load> load = BeginLoad(look);
    if (!load) return;
    if (onRead) onRead();
    std::vector<Entry> entries;
    {
      const std::scoped_lock lock(lock_);
      entries = entries_;
    }
    for (const Entry& entry : entries) {
      FoundEntry item;
      item.name = SharedText(entry.name);
      item.caption = item.name;
      item.command = SharedText(entry.command);
      item.isProtected = entry.isProtected;
      if (!AddOrUpdateItem(std::move(item), *load)) return;
    }
    RemoveMissingItems(*load, [](TStartupItem&) { return true; });
  }
  bool IsChanged() override { return changed.exchange(false) || changesAlways; }

 protected:
  std::unique_ptr<EntrySource> OpenSource(const ItemState&, bool) override { return nullptr; }
  std::unique_ptr<EntryTarget> PlanSwitch(EntrySource&, bool, bool) override { return nullptr; }
  std::wstring NameInPlace(const ItemState&) const override { return {}; }

 public:
  std::atomic<int> reads{0};
  std::atomic<bool> changed{false};
  std::atomic<bool> changesAlways{false};
  // Called at the beginning of a load.
  std::function<void()> onRead;

 private:
  std::mutex lock_;
  std::vector<Entry> entries_;
};

inline std::unique_ptr<TLocationStartup> MakeFake(const LocationRow& row) {
  return std::make_unique<FakeLocation>(row);
}

inline std::span<const ModuleStep> StepsWithFakes() {
  static std::vector<ModuleStep> steps;
  for (const ModuleStep& step : ModuleSteps()) {
    steps.push_back(step);
    if (step.name == std::wstring_view(L"location classes")) {
      steps.back().start = [] { SetLocationMaker(MakeFake); };
    }
  }
  return steps;
}

inline const bool g_fakesAreChosen = (stepsUnderTest = StepsWithFakes, true);

inline FakeLocation& Fake(TTypeStartupLocation type) {
  return dynamic_cast<FakeLocation&>(*FindLocation(type));
}

// Read by default, and only with the show-all switch.
inline FakeLocation& UsualLocation() {
  return Fake(sulRegistryUserRun);
}
inline FakeLocation& RareLocation() {
  return Fake(sulRegistryRunServices);
}

// The locations as they are made.
class FakeLocationTest : public ModuleTest {
 protected:
  FakeLocationTest() {
    for (FakeLocation* location : {&UsualLocation(), &RareLocation()}) location->Reset();
  }
};

}  // namespace smh::test
