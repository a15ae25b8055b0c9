// What the hosts say of an operation that the library refuses.
#include "hosts/common/entry_place.h"
#include "hosts/common/host_error.h"
#include "hosts/common/operations.h"
#include "hosts/common/refusal.h"
#include "hosts/common/text_encoding.h"
#include "infra/runtime/assertion.h"
#include "infra/runtime/patient_lock.h"
#include "model/change_refused.h"
#include "tests/hosts/cli/startupctl_fixture.h"
#include "tests/hosts/common/fake_startup_item.h"

#include <gtest/gtest.h>

namespace smh::test {

namespace {

constexpr LibrarySlot kSlots[] = {
    LibrarySlot::kDelete,          LibrarySlot::kEnable,        LibrarySlot::kDisable,
    LibrarySlot::kMoveTo,          LibrarySlot::kChangeCommand, LibrarySlot::kExecute,
    LibrarySlot::kShowFileDetails, LibrarySlot::kShowLocation,  LibrarySlot::kAddItem,
    LibrarySlot::kSetSwitchedOff,  LibrarySlot::kReading,       LibrarySlot::kOther,
};

TEST(RefusalTest, EveryRowIsReachedAndIsASentence) {
  for (const Refusal& row : Refusals()) {
    SCOPED_TRACE(ToUtf8(row.reason));
    bool isReached = false;
    for (const LibrarySlot slot : kSlots) {
      if ((row.slots & SlotSet(slot)) != 0 && FindRefusal(slot, row.result, row.text) == &row)
        isReached = true;
    }
    EXPECT_TRUE(isReached) << "another row hides it";
    EXPECT_NE(row.result, S_OK);
    if (row.words == nullptr) continue;
    const std::wstring_view words(row.words->In(Language::kEnglish));
    EXPECT_TRUE(words.ends_with(L'.'));
    EXPECT_TRUE(words.front() >= L'a' && words.front() <= L'z') << "it ends a sentence";
  }
}

// An operation of the library that ends in `answer`.
HRESULT Call(const std::function<std::wstring()>& answer) {
  return BoundaryOutcome(answer);
}

std::wstring WordsFor(LibrarySlot slot, const std::function<std::wstring()>& answer) {
  const HRESULT result = Call(answer);
  EXPECT_NE(result, S_OK);
  return LibraryErrorText(slot, result).English();
}

template <typename Raise>
std::function<std::wstring()> Raising(Raise raise) {
  return [raise]() -> std::wstring {
    raise();
    return {};
  };
}

TEST(RefusalTest, WhatTheLibraryRaisesHasWordsForPeople) {
  struct Row {
    std::function<std::wstring()> answer;
    const wchar_t* part;
  };
  const Row rows[] = {
      {[] { return std::wstring(L"the entry has gone"); }, L"gone meanwhile"},
      {[] { return std::wstring(L"the change was refused without an error"); }, L"Windows refused it"},
      {[] { return std::wstring(L"something new"); }, L"something new"},
      {Raising(RaiseChangedMeanwhile), L"another program has changed the entry"},
      {Raising(RaiseNameTaken), L"of that name stands where"},
      {Raising(RaiseChangeUnderWay), L"another change is under way; nothing"},
      {Raising([] { RaiseOSError(ERROR_LOCK_VIOLATION); }), L"another change is at work"},
      {Raising([] { throw EReentered(); }), L"something else is being done"},
      {Raising([] { RaiseAssertion(L"unit", 5); }), L"does not allow it in its present state"},
      {Raising([] { RaiseOSError(ERROR_ACCESS_DENIED); }), L"System Error.  Code: 5."},
      {Raising(
           [] { throw EChangeRefused(ERROR_NOT_SUPPORTED, L"A shortcut cannot hold this: it is a URL."); }),
       L"it is a URL"},
  };
  for (const Row& row : rows) {
    const std::wstring words = WordsFor(LibrarySlot::kMoveTo, row.answer);
    EXPECT_NE(words.find(row.part), std::wstring::npos) << ToUtf8(words) << " lacks " << ToUtf8(row.part);
  }
}

TEST(RefusalTest, NoSlotShowsAnAssertion) {
  for (const LibrarySlot slot : kSlots) {
    const std::wstring words = WordsFor(slot, Raising([] { RaiseAssertion(L"unit", 5); }));
    EXPECT_EQ(words.find(L"Assertion"), std::wstring::npos) << static_cast<unsigned>(slot);
    EXPECT_EQ(words.find(L"0x"), std::wstring::npos) << "nor a number";
  }
  EXPECT_EQ(LibraryErrorText(LibrarySlot::kOther, E_UNEXPECTED), L"that is not possible at this moment.")
      << "without a text";
}

TEST(RefusalTest, ASlotThatAnswersANumberIsKnownByItsText) {
  const auto words = [](const std::function<std::wstring()>& answer) {
    Call(answer);
    return LibraryErrorText(LibrarySlot::kAddItem, std::nullopt).English();
  };
  EXPECT_NE(words(Raising([] { RaiseAssertion(L"unit", 5); })).find(L"takes no such entry"),
            std::wstring::npos);
  EXPECT_NE(words(Raising(RaiseChangeUnderWay)).find(L"Try again"), std::wstring::npos);
  EXPECT_EQ(words(Raising([] { throw Exception(L"Of its own"); })), L"Of its own");
  EXPECT_NE(words([] { return std::wstring(L"the change was refused without an error"); }).find(L"Windows"),
            std::wstring::npos);
  EXPECT_EQ(words([] { return std::wstring(); }), SystemErrorText(E_FAIL).English()) << "nothing is known";
}

class MakeChangeTest : public StartupctlTest {
 protected:
  MakeChangeTest() { SetRun(HKEY_CURRENT_USER, L"ctl lies", Command(L"lies")); }

  Outcome DisableFake() {
    EntryChange change;
    change.verb = Verb::kDisable;
    change.before = PlaceOfNewValue(sulRegistryUserRun, L"ctl lies");
    change.before.enabled = true;
    change.before.command = Command(L"lies");
    change.listed = ComPtr<IStartupItem>(item.Get());
    EntryPlaces places;
    return MakeChange(library, places, change);
  }

  const Library library;
  const ComPtr<FakeStartupItem> item = MakeComObject<FakeStartupItem>();
};

TEST_F(MakeChangeTest, TellsWhatIsDoneFromWhatIsNot) {
  EXPECT_EQ(DisableFake().kind, OutcomeKind::kFailed) << "told done, and yet it is there";
  item->operation = [] { return std::wstring(L"the entry has gone"); };
  EXPECT_EQ(DisableFake().text, L"the entry has gone meanwhile.");
  EXPECT_EQ(DisableFake().kind, OutcomeKind::kRefused);
  item->operation = [] { return std::wstring(L"for a reason of its own"); };
  EXPECT_EQ(DisableFake().text, L"for a reason of its own");
  item->operation = Raising(RaiseChangedMeanwhile);
  EXPECT_NE(DisableFake().text.English().find(L"changed the entry meanwhile"), std::wstring::npos);
  EXPECT_EQ(item->operations, 5);
  // One that has gone is not asked, and never a success.
  item->index = -1;
  EXPECT_EQ(DisableFake().kind, OutcomeKind::kRefused);
  EXPECT_EQ(item->operations, 5);
}

}  // namespace
}  // namespace smh::test
