// Locations whose entries are a list that the test writes, in place of the real location classes.
#pragma once

#include "support/module_fixture.h"

#include <atomic>
#include <functional>
#include <mutex>
#include <string>
#include <vector>

namespace smh::test {

class FakeLocation final : public TLocationStartup {
 public:
  FakeLocation(TTypeStartupLocation type, bool isAble)
      : TLocationStartup(type, {.canEnable = isAble, .canModify = isAble, .canDelete = isAble}) {}

  struct Entry {
    std::wstring name;
    std::wstring command;
  };
  void SetEntries(std::vector<Entry> entries);
  void Reset();
  ItemRef Listed(const std::wstring& name) const { return FindItem(LocationType(), name); }
  // A change of this location, for the length of the scope.
  ChangeGate::Scope BeginChange() { return ChangeGate::Scope(Gate()); }

  bool ItemExists(const TStartupItem& item) override;
  void ReadItems() override;
  bool IsChanged() override;
  int ExtractItem(bool checkpoint, const ItemRef& item) override;
  void InsertItem(bool checkpoint, int extracted, bool enabled, const std::wstring& command,
                  const std::wstring& entryName) override;
  void PutBackItem(bool checkpoint) override;

  std::atomic<int> reads{0};
  std::atomic<bool> changed{false};
  bool failInsert = false;
  // Called at the beginning of a load.
  std::function<void()> onRead;
  // What the move halves were called with, in order.
  std::vector<std::wstring> calls;

 private:
  std::mutex lock_;
  std::vector<Entry> entries_;
  std::vector<Entry> extracted_;
};

// Read by default, and only with the show-all switch.
FakeLocation& UsualLocation();
FakeLocation& RareLocation();
// Cannot do anything.
FakeLocation& FixedLocation();

// The locations as they are made.
class FakeLocationTest : public ModuleTest {
 protected:
  FakeLocationTest() {
    for (FakeLocation* location : {&UsualLocation(), &RareLocation(), &FixedLocation()}) location->Reset();
  }
};

}  // namespace smh::test
