#include "tests/core/boundary_fixture.h"

#include <functional>
#include <limits>
#include <thread>

namespace smh::test {
namespace {

constexpr wchar_t kUnit[] = L"uStartupItemCollection";
constexpr wchar_t kReaderUnit[] = L"reading";
constexpr std::int32_t kLargest = std::numeric_limits<std::int32_t>::max();

class CollectionTest : public BoundaryTest {};

TEST_F(CollectionTest, IndexesOutsideTheListGiveWrappersWithoutItem) {
  SetUserRun(L"One", L"C:\\one.exe");
  Read();
  for (const std::int32_t index :
       {-1, items.GetCount(), kLargest, std::numeric_limits<std::int32_t>::min()}) {
    EXPECT_EQ(items.Item(index).GetIndex(), -1) << index;
  }
  const RawItem first = items.Item(0);
  EXPECT_NE(first.Address(), items.Item(0).Address());
  EXPECT_EQ(first.GetIndex(), 0);
  EXPECT_EQ(first.AddRef(), 2u);
  EXPECT_EQ(first.Release(), 1u);
}

TEST_F(CollectionTest, OnlyTheLowByteOfABooleanCounts) {
  const std::pair<std::uint32_t, std::uint32_t> cases[] = {{1, 1},          {0x100, 0},      {0xFF, 1},
                                                           {0xFFFFFF00, 0}, {0xFFFFFF01, 1}, {0, 0}};
  for (const auto& [given, answered] : cases) {
    EXPECT_EQ(items.SetShowAllLocations(given), S_OK);
    EXPECT_EQ(items.GetShowAllLocations(), answered) << given;
    EXPECT_EQ(items.SetShowIcons(given), S_OK);
    EXPECT_EQ(items.GetShowIcons(), answered) << given;
  }
}

TEST_F(CollectionTest, TheHolderOfTheLockMayNotStopTheReaderAndOnlyTheHolderUnlocks) {
  Read();
  EXPECT_TRUE(IsAssertion(items.Unlock(), kUnit));
  ASSERT_EQ(items.Lock(), S_OK);
  ASSERT_EQ(items.Lock(), S_OK);
  EXPECT_TRUE(IsAssertion(items.Refresh(), kReaderUnit));
  EXPECT_EQ(items.Unlock(), S_OK);
  EXPECT_TRUE(IsAssertion(items.Stop(), kReaderUnit));
  std::thread([&] { EXPECT_TRUE(IsAssertion(items.Unlock(), kUnit)); }).join();
  EXPECT_EQ(items.GetReadState(), 2);
  EXPECT_EQ(items.Unlock(), S_OK);
  EXPECT_TRUE(IsAssertion(items.Unlock(), kUnit));
  EXPECT_EQ(items.Stop(), S_OK);
  EXPECT_EQ(items.Stop(), S_OK);
}

TEST_F(CollectionTest, AddItemRefusesIncompleteRequests) {
  Read();
  const std::int32_t count = items.GetCount();
  const struct {
    std::int32_t location;
    const wchar_t* name;
    const wchar_t* command;
  } cases[] = {
      {kNoLocation, L"name", L"command"}, {kUserRun, L"", L"command"},     {kUserRun, nullptr, L"command"},
      {kUserRun, L"name", L""},           {kUserRun, L"name", nullptr},    {-1, L"name", L"command"},
      {40, L"name", L"command"},          {kLargest, L"name", L"command"},
  };
  for (const auto& row : cases) {
    EXPECT_EQ(items.AddItem(row.location, row.name, row.command), -1);
    EXPECT_TRUE(IsAssertion(E_UNEXPECTED, kUnit));
  }
  EXPECT_EQ(items.GetCount(), count);
  EXPECT_EQ(Values(HKEY_CURRENT_USER, kRunKey), std::vector<std::wstring>{});
}

TEST_F(CollectionTest, NullOutArgumentsAreRefused) {
  Read();
  const RawItem item = NoItem();
  const RawStrings strings = manager.Strings();
  EXPECT_TRUE(IsExplained(manager.GetStartupItems(nullptr), E_POINTER));
  EXPECT_TRUE(IsExplained(manager.GetFavoriteItems(nullptr), E_POINTER));
  EXPECT_TRUE(IsExplained(manager.GetStrings(nullptr), E_POINTER));
  EXPECT_TRUE(IsExplained(manager.ResolveCommandFile(L"a.exe", nullptr), E_POINTER));
  EXPECT_TRUE(IsExplained(items.GetItem(0, nullptr), E_POINTER));
  EXPECT_TRUE(IsExplained(item.GetName(nullptr), E_POINTER));
  EXPECT_TRUE(IsExplained(item.GetProperty(3, nullptr), E_POINTER));
  for (int i = 0; i < RawStrings::kTexts; ++i) EXPECT_TRUE(IsExplained(strings.Get(i, nullptr), E_POINTER));
}

// Every slot of the four interfaces, each in a call that succeeds.
TEST_F(CollectionTest, EverySlotClearsTheErrorInfoOfEarlierCalls) {
  const SampleProgram sample;
  SetUserRun(L"Sample", sample.Path());
  Read();
  const RawItem listed = FindUserRun(L"Sample");
  const RawItem none = NoItem();
  const RawStrings strings = manager.Strings();
  RawObject object;
  OutText text;
  OutText file;
  OutVariant value;
  // Without an entry the operations have a text of their own in place of the old one.
  const auto declined = [](HRESULT result) { return IsExplained(result, S_FALSE) ? S_OK : E_FAIL; };
  const std::function<HRESULT()> calls[] = {
      [&] { return manager.GetStartupItems(object.Put()); },
      [&] { return manager.GetStrings(object.Put()); },
      [&] { return manager.ResolveCommandFile(L"a.exe", file.Put()); },
      [&] { return items.GetCount(), S_OK; },
      [&] { return items.GetItem(0, object.Put()); },
      [&] { return items.GetSmallImageList(), S_OK; },
      [&] { return items.GetLargeImageList(), S_OK; },
      [&] { return items.GetReadState(), S_OK; },
      [&] { return items.GetShowAllLocations(), S_OK; },
      [&] { return items.SetShowAllLocations(0); },
      [&] { return items.GetShowIcons(), S_OK; },
      [&] { return items.SetShowIcons(1); },
      [&] { return items.Lock(); },
      [&] { return items.Unlock(); },
      [&] { return listed.GetIndex(), S_OK; },
      [&] { return listed.GetLocation(), S_OK; },
      [&] { return listed.GetName(text.Put()); },
      [&] { return listed.ReadChanged(), S_OK; },
      [&] { return listed.GetImageIndex(), S_OK; },
      [&] { return listed.GetProperty(3, value.Put()); },
      [&] { return listed.CanDo(-1), S_OK; },
      [&] { return listed.CanMoveTo(99), S_OK; },
      [&] { return declined(none.Delete()); },
      [&] { return declined(none.Enable()); },
      [&] { return declined(none.Disable()); },
      [&] { return declined(none.MoveTo(kCommonRun)); },
      [&] { return declined(none.ChangeCommand(L"a.exe")); },
      [&] { return declined(none.Execute(nullptr)); },
      [&] { return declined(none.ShowFileDetails(nullptr)); },
      [&] { return declined(none.ShowLocation()); },
      [&] { return items.AddItem(kUserRun, L"Sample", L"other.exe") < 0 ? E_FAIL : S_OK; },
      [&] { return items.Refresh(); },
      [&] { return items.Stop(); },
  };
  const auto expectCleared = [](std::ptrdiff_t place, const std::function<HRESULT()>& call) {
    PlantErrorInfo();
    EXPECT_EQ(call(), S_OK) << place;
    EXPECT_FALSE(TakeErrorInfo().has_value()) << place;
  };
  for (const auto& call : calls) expectCleared(&call - calls, call);
  for (int i = 0; i < RawStrings::kTexts; ++i) {
    const std::wstring old = strings.Text(i);
    expectCleared(i, [&] { return strings.Set(i, old.c_str()); });
    OutText out;
    expectCleared(i, [&] { return strings.Get(i, out.Put()); });
  }
}

}  // namespace
}  // namespace smh::test
