// What the window says of an operation that did not come about.
#include "hosts/gui/library_session.h"
#include "infra/runtime/exceptions.h"
#include "tests/hosts/common/fake_startup_item.h"

#include <gtest/gtest.h>

namespace smh::test {

namespace {

const EntryOperation kDeletion = {kActionDelete, [](IStartupItem& item) { return item.Delete(); },
                                  [](IStartupItem& item) { return item.GetIndex() < 0; }};

TEST(ApplyToOneTest, AsksFirstAndTellsWhatWasDeclined) {
  EXPECT_EQ(ApplyToOne(nullptr, kDeletion), L"the entry has gone meanwhile.");
  const ComPtr<FakeStartupItem> item = MakeComObject<FakeStartupItem>();
  item->canDo = false;
  EXPECT_EQ(ApplyToOne(item.Get(), kDeletion), L"the entry does not allow it in its present state.");
  EXPECT_EQ(item->operations, 0);
  item->canDo = true;
  item->operation = [] { return std::wstring(L"the change was refused without an error"); };
  EXPECT_EQ(ApplyToOne(item.Get(), kDeletion), L"nothing was changed: Windows refused it.");
  item->operation = [] { return std::wstring(L"the entry has gone"); };
  EXPECT_EQ(ApplyToOne(item.Get(), kDeletion), L"the entry has gone meanwhile.");
  item->operation = []() -> std::wstring { throw Exception(L"Of its own"); };
  EXPECT_EQ(ApplyToOne(item.Get(), kDeletion), L"Of its own");
  // Told done, and yet it is there.
  item->operation = [] { return std::wstring(); };
  EXPECT_NE(ApplyToOne(item.Get(), kDeletion), L"");
  item->operation = [&item] {
    item->index = -1;
    return std::wstring();
  };
  EXPECT_EQ(ApplyToOne(item.Get(), kDeletion), L"");
}

}  // namespace
}  // namespace smh::test
