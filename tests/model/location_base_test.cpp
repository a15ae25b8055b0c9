#include "core/uStartupManagerStrings.h"
#include "model/checkpoint.h"
#include "sysutil/network_roots.h"
#include "tests/model/fake_location.h"

namespace smh::test {

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

TEST_F(LocationBaseTest, AnEntryThatCannotBeDescribedForAMomentIsTriedAgain) {
  UsualLocation().SetEntries({{L"a", L"C:\\a.exe"}, {L"b", L"C:\\b.exe"}});
  {
    int looks = 0;
    const ReadingPass pass(
        [&]() -> bool { return looks++ == 0 ? throw EOSError(ERROR_GEN_FAILURE) : false; });
    UsualLocation().ReadItems();
  }
  EXPECT_EQ(UsualLocation().Listed(L"a"), nullptr);
  EXPECT_NE(UsualLocation().Listed(L"b"), nullptr);
  EXPECT_TRUE(UsualLocation().IsRetryDue());
  UsualLocation().ReadItems();
  EXPECT_NE(UsualLocation().Listed(L"a"), nullptr);
  EXPECT_FALSE(UsualLocation().IsRetryDue());
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
