#include "fake_location.h"

#include "model/checkpoint.h"
#include "model/uStartupManagerStrings.h"

#include <gmock/gmock.h>

namespace smh::test {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class LocationBaseTest : public ModuleTest {
 protected:
  LocationBaseTest() {
    for (FakeLocation* location : {&UsualLocation(), &RareLocation(), &FixedLocation()}) {
      location->SetEntries({});
      location->calls.clear();
      location->failInsert = false;
      location->onRead = nullptr;
    }
  }
};

TEST_F(LocationBaseTest, ALoadAddsUpdatesAndDropsByNameIgnoringAsciiCase) {
  UsualLocation().SetEntries({{L"A", L"a.exe"}, {L"b", L"b.exe"}, {L"\xC4", L"umlaut.exe"}});
  UsualLocation().ReadItems();
  const ItemRef a = UsualLocation().Listed(L"a");
  ASSERT_NE(a, nullptr);
  EXPECT_EQ(UsualLocation().Listed(L"\xE4"), nullptr) << "only ASCII letters lose their case";
  EXPECT_TRUE(LogHas(L"Add item \"b\" in location \"sulRegistryUserRun\"."));

  UsualLocation().SetEntries({{L"a", L"new.exe"}, {L"\xC4", L"umlaut.exe"}});
  UsualLocation().ReadItems();
  EXPECT_TRUE(a->IsListed());
  EXPECT_EQ(a->Details().Command, L"new.exe");
  EXPECT_EQ(UsualLocation().Listed().size(), 2u);
  EXPECT_TRUE(LogHas(L"Delete item \"b\" in location \"sulRegistryUserRun\"."));
}

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
      [&] { fixed.ExtractItem(false, item); },
      [&] { fixed.InsertItem(false, 0, true, L"c", L"n"); },
      [&] { fixed.AddItem(L"n", L"c"); },
      [&] { fixed.DeleteItem(item); },
      [&] { fixed.EnableItem(item); },
      [&] { fixed.DisableItem(item); },
      [&] { fixed.MoveItem(item, sulRegistryUserRun); },
      [&] { fixed.ChangeItemCommand(item, L"c"); },
      [&] { UsualLocation().MoveItem(UsualLocation().Listed(L"u"), sulRegistryIEBrowserObjects); },
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

TEST_F(LocationBaseTest, AMoveIsCheckpointExtractInsertAndBackWhenTheInsertFails) {
  UsualLocation().SetEntries({{L"first", L"1.exe"}, {L"n", L"C:\\windows\\notepad.exe"}});
  UsualLocation().ReadItems();
  UsualLocation().MoveItem(UsualLocation().Listed(L"n"), sulRegistryRunServices);
  EXPECT_THAT(UsualLocation().calls, ElementsAre(L"extract n"));
  EXPECT_THAT(RareLocation().calls, ElementsAre(L"insert 1 on C:\\windows\\notepad.exe notepad"));
  EXPECT_THAT(module.Safeguard().Lines(),
              ElementsAre(L"BeginCheckpoint \"Startup Manager: Moving n\"", L"EndCheckpoint"));

  RareLocation().failInsert = true;
  EXPECT_THROW(UsualLocation().MoveItem(UsualLocation().Listed(L"first"), sulRegistryRunServices), EOSError);
  EXPECT_THAT(UsualLocation().calls, ElementsAre(L"extract n", L"extract first", L"put back"));
  EXPECT_TRUE(
      LogHas(L"Error move item \"first\" from \"sulRegistryUserRun\" to \"sulRegistryRunServices\"."));
}

TEST_F(LocationBaseTest, AnEntryNameIsAcceptedOnceWhateverItsCase) {
  UsualLocation().SetEntries({{L"x", L"C:\\windows\\notepad.exe"}});
  UsualLocation().ReadItems();
  RareLocation().SetEntries({{L"y", L"C:\\no such\\NOTEPAD.exe"}, {L"z", L"C:\\windows\\regedit.exe"}});
  RareLocation().ReadItems();
  EXPECT_FALSE(UsualLocation().CanAcceptItem(*RareLocation().Listed(L"y")));
  EXPECT_TRUE(UsualLocation().CanAcceptItem(*RareLocation().Listed(L"z")));
}

TEST_F(LocationBaseTest, TheHostsTextsTitleTheCheckpoints) {
  const auto one = MakeComObject<TStartupManagerStrings>();
  const auto two = MakeComObject<TStartupManagerStrings>();
  using Getter = HRESULT (STDMETHODCALLTYPE IStartupManagerStrings::*)(BoundaryText*);
  using Setter = HRESULT (STDMETHODCALLTYPE IStartupManagerStrings::*)(const wchar_t*);
  struct Row {
    ChangeKind kind;
    Getter get;
    Setter set;
    const wchar_t* original;
  };
  const Row rows[] = {
      {ChangeKind::kAdding, &IStartupManagerStrings::GetAddingText, &IStartupManagerStrings::SetAddingText,
       L"Startup Manager: Adding %s"},
      {ChangeKind::kMoving, &IStartupManagerStrings::GetMovingText, &IStartupManagerStrings::SetMovingText,
       L"Startup Manager: Moving %s"},
      {ChangeKind::kDeleting, &IStartupManagerStrings::GetDeletingText,
       &IStartupManagerStrings::SetDeletingText, L"Startup Manager: Deleting %s"},
      {ChangeKind::kEnabling, &IStartupManagerStrings::GetEnablingText,
       &IStartupManagerStrings::SetEnablingText, L"Startup Manager: Enabling %s"},
      {ChangeKind::kDisabling, &IStartupManagerStrings::GetDisablingText,
       &IStartupManagerStrings::SetDisablingText, L"Startup Manager: Disabling %s"},
      {ChangeKind::kChanging, &IStartupManagerStrings::GetChangingText,
       &IStartupManagerStrings::SetChangingText, L"Startup Manager: Changing %s"},
  };
  for (const Row& row : rows) {
    const auto text = [&](IStartupManagerStrings& strings) {
      return TakeText([&](BoundaryText* out) { return (strings.*row.get)(out); });
    };
    EXPECT_EQ(text(*one), row.original);
    ASSERT_EQ((one.Get()->*row.set)(L"Mine: %s!"), S_OK);
    EXPECT_EQ(text(*two), L"Mine: %s!");
    EXPECT_EQ(CheckpointTitle(row.kind, L"x%s"), L"Mine: x%s!");
    ASSERT_EQ((two.Get()->*row.set)(L"100 % sure"), S_OK);
    EXPECT_EQ(CheckpointTitle(row.kind, L"x"), L"100 % sure") << "a text that is no format stands as it is";
    ASSERT_EQ((two.Get()->*row.set)(nullptr), S_OK);
    EXPECT_EQ(text(*one), L"");
    ASSERT_EQ((two.Get()->*row.set)(row.original), S_OK);
    EXPECT_EQ((two.Get()->*row.get)(nullptr), E_POINTER);
  }
}

}  // namespace smh::test
