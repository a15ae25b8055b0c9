#include "core/uStartupManagerStrings.h"
#include "model/checkpoint.h"
#include "tests/model/fake_location.h"

#include <gmock/gmock.h>

namespace smh::test {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class LocationBaseTest : public FakeLocationTest {};

TEST_F(LocationBaseTest, ALoadOvertakenByAChangeAddsAndDropsNothing) {
  UsualLocation().SetEntries({{L"a", L"a.exe"}});
  UsualLocation().ReadItems();
  UsualLocation().SetEntries({{L"b", L"b.exe"}});
  UsualLocation().onRead = [] { const auto change = UsualLocation().BeginChange(); };
  UsualLocation().ReadItems();
  EXPECT_NE(UsualLocation().Listed(L"a"), nullptr);
  EXPECT_EQ(UsualLocation().Listed(L"b"), nullptr);
}

TEST_F(LocationBaseTest, OperationsThatALocationLacksAreAssertions) {
  FixedLocation().SetEntries({{L"f", L"C:\\windows\\notepad.exe"}});
  FixedLocation().ReadItems();
  UsualLocation().SetEntries({{L"u", L"C:\\windows\\regedit.exe"}});
  UsualLocation().ReadItems();
  FakeLocation& fixed = FixedLocation();
  const ItemRef item = fixed.Listed(L"f");
  const std::function<void()> operations[] = {
      [&] { fixed.AddItem(L"n", L"c"); },
      [&] { fixed.DeleteItem(item); },
      [&] { fixed.EnableItem(item); },
      [&] { fixed.DisableItem(item); },
      [&] { fixed.MoveItem(item, sulRegistryUserRun); },
      [&] { fixed.ChangeItemCommand(item, L"c"); },
  };
  for (const auto& operation : operations) {
    try {
      operation();
      ADD_FAILURE() << "no assertion";
    } catch (const EAssertionFailed& failure) {
      EXPECT_THAT(failure.Message(), ::testing::StartsWith(L"Assertion failure (uLocationStartup, line "));
    }
  }
  EXPECT_TRUE(item->IsListed());
  EXPECT_FALSE(fixed.GetCanModify());
}

// Getting, setting and the texts themselves are tested through the boundary, the kinds with their changes.
TEST_F(LocationBaseTest, TheHostsTextsTitleTheCheckpoints) {
  const auto strings = MakeComObject<TStartupManagerStrings>();
  const std::wstring original = CheckpointTitle(ChangeKind::kMoving, L"%s");
  ASSERT_EQ(strings->SetMovingText(L"Mine: %s!"), S_OK);
  EXPECT_EQ(CheckpointTitle(ChangeKind::kMoving, L"x%s"), L"Mine: x%s!");
  ASSERT_EQ(strings->SetMovingText(L"100 % sure"), S_OK);
  EXPECT_EQ(CheckpointTitle(ChangeKind::kMoving, L"x"), L"100 % sure") << "what is no format stands as it is";
  strings->SetMovingText(original.c_str());
}

}  // namespace smh::test
