#include "model/change_lock.h"
#include "model/change_refused.h"
#include "model/item_list.h"
#include "tests/support/module_fixture.h"

#include <atomic>
#include <optional>
#include <thread>

namespace smh::test {
namespace {

class ChangeLockTest : public ModuleTest {};

TEST_F(ChangeLockTest, WaitsWithoutTheListAndRefusesASecondChangeOfTheThread) {
  std::optional<ScopedChange> scope(std::in_place);
  std::atomic<bool> begins{false};
  std::atomic<bool> isChanging{false};
  std::thread other([&] {
    const ScopedLock lock(Items().Lock());
    begins = true;
    const ScopedChange waits;
    isChanging = true;
    EXPECT_EQ(Items().Lock().DepthOfCaller(), 1u);
  });
  while (!begins) Sleep(1);
  {
    // Blocks for ever when the waiting thread has kept it.
    const ScopedLock lock(Items().Lock());
    EXPECT_FALSE(isChanging);
    try {
      const ScopedChange again;
      ADD_FAILURE() << "a change inside a change";
    } catch (const EReentered&) {
      EXPECT_EQ(Items().Lock().DepthOfCaller(), 1u);
    }
  }
  scope.reset();
  other.join();
  EXPECT_TRUE(isChanging);
}

TEST_F(ChangeLockTest, RefusesAChangeThatWaitsTooLongForAnother) {
  const ScopedChange scope;
  std::thread([] {
    const ScopedLock lock(Items().Lock());
    try {
      const ScopedChange late(50);
      ADD_FAILURE() << "two at a time";
    } catch (const EChangeRefused& refused) {
      EXPECT_EQ(refused.Result(), HRESULT_FROM_WIN32(ERROR_BUSY));
      EXPECT_EQ(refused.Message(), L"another change is under way");
    }
    EXPECT_TRUE(Items().Lock().IsHeldByCaller()) << "given back with the refusal";
  }).join();
}

}  // namespace
}  // namespace smh::test
