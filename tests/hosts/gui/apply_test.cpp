// What the window says of a program or place that could not be opened.
#include "hosts/gui/library_session.h"
#include "infra/runtime/exceptions.h"
#include "tests/hosts/common/fake_startup_item.h"

#include <gtest/gtest.h>

namespace smh::test {

namespace {

TEST(OpenOneTest, AsksFirstAndTellsWhatWasDeclined) {
  EXPECT_EQ(OpenOne(nullptr, kActionExecute), L"the entry has gone meanwhile.");
  const ComPtr<FakeStartupItem> item = MakeComObject<FakeStartupItem>();
  item->canDo = false;
  EXPECT_EQ(OpenOne(item.Get(), kActionExecute), L"the entry does not allow it in its present state.");
  EXPECT_EQ(item->operations, 0);
  item->canDo = true;
  item->operation = [] { return std::wstring(L"the entry has gone"); };
  EXPECT_EQ(OpenOne(item.Get(), kActionShowLocation), L"the entry has gone meanwhile.");
  item->operation = []() -> std::wstring { throw Exception(L"Of its own"); };
  EXPECT_EQ(OpenOne(item.Get(), kActionExecute), L"Of its own");
  item->operation = [] { return std::wstring(); };
  EXPECT_EQ(OpenOne(item.Get(), kActionExecute), L"");
}

}  // namespace
}  // namespace smh::test
