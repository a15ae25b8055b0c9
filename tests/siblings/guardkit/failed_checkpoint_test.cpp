// Changes that did not come about: taken back through the journal, and in no undo's way.
#include "siblings/guardkit/format/journal_format.h"
#include "siblings/guardkit/registry_place.h"
#include "tests/siblings/guardkit/changes_fixture.h"

namespace smh::test {
namespace {

class FailedCheckpoint : public JournalChanges {
 protected:
  FailedCheckpoint() {
    tree_.Set({}, L"source", Sz(L"command"));
    tree_.Set({}, L"changed", ExpandSz(L"old"));
    tree_.Set(L"key", L"in it", MultiSz({L"a", L"b"}));
    deleted_ = folder_.Write(L"deleted", "deleted");
    replaced_ = folder_.Write(L"replaced", "old");
    moved_ = folder_.Write(L"moved", "moved");
    SetFileAttributesW(deleted_.c_str(), FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_ARCHIVE);
    before_ = Everything();
  }

  LSTATUS Fail() { return guardkit_.Safeguard().FailCheckpoint(); }
  // One of every kind.
  void ChangeEverything() {
    EXPECT_EQ(Set(L"made\\deep", L"target", Sz(L"command")), ERROR_SUCCESS);
    EXPECT_EQ(Remove(L"source"), ERROR_SUCCESS);
    EXPECT_EQ(Set({}, L"changed", Sz(L"new")), ERROR_SUCCESS);
    EXPECT_EQ(RemoveKey(L"key"), ERROR_SUCCESS);
    EXPECT_EQ(Delete(deleted_), ERROR_SUCCESS);
    EXPECT_EQ(Copy(moved_, replaced_), ERROR_SUCCESS);
    EXPECT_EQ(Move(moved_, folder_.File(L"to")), ERROR_SUCCESS);
    EXPECT_EQ(Copy(replaced_, folder_.File(L"made"), FALSE), ERROR_SUCCESS);
  }
  static std::size_t FilesInJournal() {
    std::size_t count = 0;
    for (const auto& file : std::filesystem::directory_iterator(JournalFolderPath())) {
      const auto extension = file.path().extension();
      count += extension == L".open" || extension == L".journal" || extension == L".staging" ? 1 : 0;
    }
    return count;
  }

  std::wstring deleted_;
  std::wstring replaced_;
  std::wstring moved_;
  std::string before_;
};

TEST_F(FailedCheckpoint, IsTakenBackToTheByteAndShownAsFailed) {
  EXPECT_EQ(Fail(), ERROR_INVALID_FUNCTION);
  const std::uint32_t real = Checkpoint([&] { Set({}, L"real", Dword(1)); });
  before_ = Everything();
  const std::uint32_t failed = Checkpoint([&] {
    ChangeEverything();
    EXPECT_NE(Everything(), before_);
    EXPECT_EQ(Fail(), ERROR_SUCCESS);
    EXPECT_EQ(Everything(), before_);
  });
  EXPECT_EQ(Everything(), before_);
  EXPECT_EQ(guardkit_.List().back().state, CheckpointState::kFailed);
  EXPECT_TRUE(guardkit_.List(true).empty());
  EXPECT_EQ(FilesInJournal(), 2u);
  const UndoAnswer own = guardkit_.Undo(failed, UndoMode::kShow);
  EXPECT_EQ(own.outcomes, std::vector(own.outcomes.size(), StepOutcome::kNothing));
  EXPECT_EQ(guardkit_.Undo().checkpoint, real);
}

// The target may be all that is left.
TEST_F(FailedCheckpoint, NothingIsDeletedOnceSomethingCannotBePutBack) {
  const std::uint32_t id = Checkpoint([&] {
    Set(L"made", L"target", Sz(L"command"));
    EXPECT_EQ(Delete(deleted_), ERROR_SUCCESS);
    Remove(L"source");
    const ImportPatch patch("RegSetValueExW", &SettingFails, guardkit_.Module());
    EXPECT_EQ(Fail(), ERROR_ACCESS_DENIED);
  });
  EXPECT_EQ(tree_.Get(L"made", L"target"), Sz(L"command"));
  EXPECT_EQ(ReadFileBytes(deleted_), "deleted");
  EXPECT_EQ(guardkit_.List().back().state, CheckpointState::kFailed);
  EXPECT_EQ(guardkit_.Undo().result, HRESULT_FROM_WIN32(ERROR_NOT_FOUND));
  // Its own undo offers what still stands.
  using enum StepOutcome;
  EXPECT_EQ(guardkit_.Undo(id).outcomes, (std::vector{kUndo, kNothing, kUndo, kUndo}));
  EXPECT_EQ(Everything(), before_);
}

// An undo by the user stops at the same place.
TEST_F(FailedCheckpoint, UndoThatIsRefusedKeepsTheTargetToo) {
  const std::uint32_t id = Checkpoint([&] {
    Set(L"made", L"target", Sz(L"command"));
    Remove(L"source");
  });
  {
    const ImportPatch patch("RegSetValueExW", &SettingFails, guardkit_.Module());
    const UndoAnswer answer = guardkit_.Undo(id);
    EXPECT_EQ(answer.result, HRESULT_FROM_WIN32(ERROR_ACCESS_DENIED));
    using enum StepOutcome;
    EXPECT_EQ(answer.outcomes, (std::vector{kBlocked, kBlocked, kBlocked}));
  }
  EXPECT_EQ(tree_.Get(L"made", L"target"), Sz(L"command"));
  EXPECT_EQ(guardkit_.Undo().checkpoint, id);
  EXPECT_EQ(Everything(), before_);
}

TEST_F(FailedCheckpoint, WhatAnotherProgramMadeOfItStays) {
  const std::uint32_t id = Checkpoint([&] {
    Set({}, L"changed", Sz(L"new"));
    Remove(L"source");
    tree_.Set({}, L"changed", Sz(L"its"));
    EXPECT_EQ(Fail(), ERROR_REVISION_MISMATCH);
    EXPECT_EQ(tree_.Get({}, L"source"), Sz(L"command"));
    // What the caller puts back itself is not recorded, and another look finds it.
    EXPECT_EQ(Set({}, L"changed", ExpandSz(L"old")), ERROR_SUCCESS);
    EXPECT_EQ(Fail(), ERROR_SUCCESS);
    tree_.Set({}, L"changed", Sz(L"its"));
  });
  EXPECT_EQ(tree_.Get({}, L"changed"), Sz(L"its"));
  EXPECT_EQ(guardkit_.List().back().steps, 2u);
  EXPECT_EQ(guardkit_.Undo(id).result, IJournal::kConflict);
  EXPECT_EQ(tree_.Get({}, L"changed"), Sz(L"its"));
}

// Several changes in one checkpoint of the caller's: one that fails is none of the others' business.
TEST_F(FailedCheckpoint, InnerOneIsTakenBackAloneAndTheOuterOneGoesOn) {
  std::string first;
  const std::uint32_t id = Checkpoint([&] {
    Set({}, L"first", Sz(L"1"));
    Set({}, L"changed", Sz(L"once"));
    first = Everything();
    EXPECT_EQ(guardkit_.Begin(L"inner"), ERROR_SUCCESS);
    ChangeEverything();
    // One that has ended well is a part of it.
    EXPECT_EQ(guardkit_.Begin(L"innermost"), ERROR_SUCCESS);
    Set({}, L"first", Sz(L"2"));
    EXPECT_EQ(guardkit_.End(), ERROR_SUCCESS);
    EXPECT_EQ(Fail(), ERROR_SUCCESS);
    EXPECT_EQ(Everything(), first);
    // Of the inner one nothing is recorded any more.
    Set({}, L"unrecorded", Sz(L"1"));
    Remove(L"unrecorded");
    EXPECT_EQ(guardkit_.End(), ERROR_SUCCESS);
    // The same once more, for good.
    ChangeEverything();
  });
  using enum CheckpointState;
  EXPECT_EQ(guardkit_.List().back().state, kDone);
  EXPECT_TRUE(guardkit_.List(true).empty());
  const std::string after = Everything();
  const UndoAnswer answer = guardkit_.Undo();
  EXPECT_EQ(answer.checkpoint, id);
  EXPECT_EQ(answer.result, S_OK) << testing::PrintToString(answer.texts);
  EXPECT_EQ(Everything(), before_);
  EXPECT_EQ(guardkit_.Redo(id).result, S_OK);
  EXPECT_EQ(Everything(), after);
}

TEST_F(FailedCheckpoint, OuterOneOfWhichNothingElseWasDoneFailedToo) {
  const std::uint32_t id = Checkpoint([&] {
    for (int i = 0; i < 2; ++i) {
      EXPECT_EQ(guardkit_.Begin(L"inner"), ERROR_SUCCESS);
      ChangeEverything();
      EXPECT_EQ(Fail(), ERROR_SUCCESS);
      EXPECT_EQ(guardkit_.End(), ERROR_SUCCESS);
    }
  });
  EXPECT_EQ(Everything(), before_);
  EXPECT_EQ(guardkit_.List().back().state, CheckpointState::kFailed);
  EXPECT_EQ(guardkit_.Undo().result, HRESULT_FROM_WIN32(ERROR_NOT_FOUND));
  const UndoAnswer own = guardkit_.Undo(id, UndoMode::kShow);
  EXPECT_EQ(own.outcomes, std::vector(own.outcomes.size(), StepOutcome::kNothing));
}

TEST_F(FailedCheckpoint, OuterOneThatFailsTakesInnerOnesBackToo) {
  Checkpoint([&] {
    Set({}, L"changed", Sz(L"once"));
    EXPECT_EQ(guardkit_.Begin(L"fails"), ERROR_SUCCESS);
    Set({}, L"changed", Sz(L"twice"));
    Set({}, L"changed", Sz(L"thrice"));
    EXPECT_EQ(Fail(), ERROR_SUCCESS);
    EXPECT_EQ(guardkit_.End(), ERROR_SUCCESS);
    EXPECT_EQ(guardkit_.Begin(L"ends"), ERROR_SUCCESS);
    ChangeEverything();
    EXPECT_EQ(guardkit_.End(), ERROR_SUCCESS);
    EXPECT_EQ(Fail(), ERROR_SUCCESS);
    EXPECT_EQ(Everything(), before_);
    // What begins inside records nothing either.
    EXPECT_EQ(guardkit_.Begin(L"late"), ERROR_SUCCESS);
    Set({}, L"late", Sz(L"1"));
    Remove(L"late");
    EXPECT_EQ(guardkit_.End(), ERROR_SUCCESS);
  });
  EXPECT_EQ(guardkit_.List().back().state, CheckpointState::kFailed);
  EXPECT_EQ(guardkit_.List().back().steps, 13u);
}

// What stands of a failed inner one is offered with the rest; what its caller puts back is in nobody's way.
TEST_F(FailedCheckpoint, LeftoversOfAnInnerOneAreUndoneWithTheOuterOne) {
  for (const bool putsBack : {true, false}) {
    const std::uint32_t id = Checkpoint([&] {
      Set({}, L"first", Sz(L"1"));
      EXPECT_EQ(guardkit_.Begin(L"inner"), ERROR_SUCCESS);
      Remove(L"source");
      {
        const ImportPatch patch("RegSetValueExW", &SettingFails, guardkit_.Module());
        EXPECT_EQ(Fail(), ERROR_ACCESS_DENIED);
      }
      if (putsBack) Set({}, L"source", Sz(L"command"));
      EXPECT_EQ(guardkit_.End(), ERROR_SUCCESS);
    });
    EXPECT_EQ(guardkit_.List().back().state, CheckpointState::kDone);
    EXPECT_EQ(guardkit_.Undo(id).outcomes,
              (std::vector{putsBack ? StepOutcome::kNothing : StepOutcome::kUndo, StepOutcome::kUndo}));
    EXPECT_EQ(Everything(), before_);
  }
}

TEST_F(FailedCheckpoint, InnerOneOnAFullDiskLeavesNothingThatUndoRefuses) {
  EXPECT_EQ(guardkit_.Begin(), ERROR_SUCCESS);
  Set({}, L"first", Sz(L"1"));
  EXPECT_EQ(guardkit_.Begin(L"inner"), ERROR_SUCCESS);
  ChangeEverything();
  Remove(L"changed");
  {
    const ImportPatch patch("WriteFile", &DiskIsFull, guardkit_.Module());
    EXPECT_EQ(Fail(), ERROR_SUCCESS);
    EXPECT_EQ(guardkit_.End(), ERROR_SUCCESS);
    EXPECT_EQ(guardkit_.End(), ERROR_SUCCESS);
  }
  const auto named = guardkit_.List(true);
  ASSERT_EQ(named.size(), 1u);
  EXPECT_EQ(guardkit_.Undo(named[0].id).result, S_OK);
  EXPECT_EQ(Everything(), before_);
  EXPECT_TRUE(guardkit_.List(true).empty());
}

// The outside program has its turn when the first value is put back.
LSTATUS WINAPI SetAndMeddle(HKEY key, const wchar_t* name, DWORD reserved, DWORD type, const BYTE* data,
                            DWORD size) {
  static const auto real = RealFunction<decltype(RegSetValueExW)>(L"advapi32.dll", "RegSetValueExW");
  test::SetValue(HKEY_CURRENT_USER, kReachedTree, L"changed", Sz(L"its"));
  return real(key, name, reserved, type, data, size);
}

TEST_F(FailedCheckpoint, WhatChangesWhileItIsTakenBackStaysToo) {
  for (const bool byFailure : {true, false}) {
    tree_.Set({}, L"changed", ExpandSz(L"old"));
    const auto change = [&] {
      Set({}, L"changed", Sz(L"new"));
      Remove(L"source");
    };
    if (byFailure) {
      Checkpoint([&] {
        change();
        const ImportPatch patch("RegSetValueExW", &SetAndMeddle, guardkit_.Module());
        EXPECT_EQ(Fail(), ERROR_REVISION_MISMATCH);
      });
    } else {
      const std::uint32_t id = Checkpoint(change);
      const ImportPatch patch("RegSetValueExW", &SetAndMeddle, guardkit_.Module());
      EXPECT_EQ(guardkit_.Undo(id).result, HRESULT_FROM_WIN32(ERROR_REVISION_MISMATCH));
    }
    EXPECT_EQ(tree_.Get({}, L"changed"), Sz(L"its"));
    EXPECT_EQ(tree_.Get({}, L"source"), Sz(L"command"));
  }
}

// Journals whose owner died, as a crash leaves them.
TEST_F(FailedCheckpoint, OnlyInterruptedOnesOfWhichSomethingStandsAreNamed) {
  const std::uint32_t real = Checkpoint([&] { Set({}, L"real", Dword(1)); });
  const auto leave = [](std::uint32_t id, const Step& step) {
    PlantJournal(id, CurrentUserSid(), step, false);
  };
  const std::wstring place = PlaceOf(tree_.Key().Get());
  const auto state = [](const RawValue& value) { return ValueState{true, value.type, value.bytes}; };
  leave(real + 1, ValueStep{place, L"source", {}, state(Sz(L"command"))});
  leave(real + 2, ValueStep{place, L"changed", state(ExpandSz(L"old")), state(Sz(L"never"))});
  KeyState made;
  made.exists = true;
  leave(real + 3, KeyStep{place + L"\\key", {}, made});

  const auto named = guardkit_.List(true);
  ASSERT_EQ(named.size(), 1u);
  EXPECT_EQ(named[0].id, real + 1);
  using enum CheckpointState;
  const auto list = guardkit_.List();
  ASSERT_EQ(list.size(), 4u);
  EXPECT_EQ(list[1].state, kInterrupted);
  EXPECT_EQ(list[2].state, kFailed);
  EXPECT_EQ(list[3].state, kFailed);
  EXPECT_EQ(guardkit_.Undo(0, UndoMode::kShow).checkpoint, real + 1);
  // The next change closes those that are settled: what comes about later is none of theirs.
  Checkpoint([&] { Set({}, L"real", Dword(2)); });
  tree_.Set({}, L"changed", Sz(L"never"));
  EXPECT_EQ(guardkit_.List(true).size(), 1u);
  EXPECT_EQ(guardkit_.List()[2].state, kFailed);
  // One that was undone and made again is like any other.
  EXPECT_EQ(guardkit_.Undo(real + 1).result, S_OK);
  EXPECT_EQ(guardkit_.List()[1].state, kUndone);
  EXPECT_EQ(guardkit_.Redo(real + 1).result, S_OK);
  EXPECT_EQ(guardkit_.List()[1].state, kDone);
  EXPECT_TRUE(guardkit_.List(true).empty());
}

}  // namespace
}  // namespace smh::test
