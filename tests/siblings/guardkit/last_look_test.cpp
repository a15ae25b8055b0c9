// What another program changes between the record of a change and the change itself is never overwritten.
#include "tests/siblings/guardkit/changes_fixture.h"
#include "tests/siblings/guardkit/outside_program.h"
#include "tests/support/waiting.h"

#include <thread>

namespace smh::test {
namespace {

class LastLook : public JournalChanges {
 protected:
  LastLook() {
    tree_.Set({}, L"v", Sz(L"old"));
    tree_.Set(L"key", L"in it", Sz(L"old"));
    Checkpoint([&] { Set({}, L"real", Sz(L"change")); });
  }

  // `change` meets the doings of the outside program, is refused, and leaves what that made.
  template <typename Act, typename Change>
  void ExpectRefused(const char* what, Act&& act, Change&& change) {
    SCOPED_TRACE(what);
    std::string found;
    const std::uint32_t id = Checkpoint([&] {
      const OutsideProgram program(guardkit_, [&] {
        act();
        found = Registry();
      });
      EXPECT_EQ(change(), ERROR_REVISION_MISMATCH);
      EXPECT_TRUE(OutsideProgram::IsDone());
    });
    EXPECT_EQ(Registry(), found);
    EXPECT_EQ(guardkit_.List().back().state, CheckpointState::kFailed);
    // It is in nobody's way: the next undo means the last change that came about.
    EXPECT_LT(guardkit_.Undo(0, UndoMode::kShow).checkpoint, id);
  }
};

TEST_F(LastLook, ValuesAndKeysOfAnotherProgramStay) {
  const auto set = [&] { return Set({}, L"v", Sz(L"new")); };
  const auto remove = [&] { return Remove(L"v"); };
  const auto write = [&](const RawValue& value) { return [=, this] { tree_.Set({}, L"v", value); }; };
  ExpectRefused("write over other data", write(Sz(L"its")), set);
  ExpectRefused("write over another type", write(ExpandSz(L"its")), set);
  ExpectRefused("delete other letter case", write(ExpandSz(L"ITS")), remove);
  ExpectRefused("delete another type", write({REG_SZ, tree_.Get({}, L"v")->bytes}), remove);
  ExpectRefused(
      "write what has gone", [&] { test::RemoveValue(HKEY_CURRENT_USER, kTree, L"v"); }, set);
  ExpectRefused("write what has come", write(Sz(L"its")), set);
  const auto removeKey = [&] { return RemoveKey(L"key"); };
  ExpectRefused(
      "delete a key with a new value", [&] { tree_.Set(L"key", L"its", Dword(1)); }, removeKey);
  ExpectRefused(
      "delete a key with a new subkey", [&] { tree_.Key(L"key\\its"); }, removeKey);
  DeleteKeyTree(HKEY_CURRENT_USER, tree_.PathOf(L"key\\its"));
  ExpectRefused(
      "delete a key that became a link",
      [&] {
        DeleteKeyTree(HKEY_CURRENT_USER, tree_.PathOf(L"key"));
        tree_.Set(L"elsewhere", L"in it", Sz(L"old"));
        MakeLink(HKEY_CURRENT_USER, tree_.PathOf(L"key"), tree_.Key(L"elsewhere").Get());
      },
      removeKey);
  EXPECT_EQ(tree_.Get(L"elsewhere", L"in it"), Sz(L"old"));
  ExpectRefused(
      "make a key that has come", [&] { tree_.Key(L"made"); }, [&] { return Set(L"made", L"x", Dword(1)); });
}

LSTATUS WINAPI MakeTheKeyFirst(HKEY parent, const wchar_t* path, DWORD, wchar_t*, DWORD options,
                               REGSAM access, const SECURITY_ATTRIBUTES*, HKEY* key, DWORD* disposition) {
  const ScopedKey theirs = MakeKey(parent, path);
  return RegCreateKeyExW(parent, path, 0, nullptr, options, access, nullptr, key, disposition);
}

// Keys leave no moment between the look and the call at all.
TEST_F(LastLook, KeyThatComesInTheLastMomentIsNotTakenForAnOwnOne) {
  const ImportPatch patch("RegCreateKeyExW", &MakeTheKeyFirst, guardkit_.Module());
  EXPECT_EQ(Set(L"made", L"x", Dword(1)), ERROR_REVISION_MISMATCH);
  EXPECT_TRUE(tree_.Has(L"made"));
  EXPECT_EQ(guardkit_.Undo(guardkit_.List().back().id).result, S_OK);
  EXPECT_FALSE(tree_.Get(L"made", L"x"));
}

TEST_F(LastLook, LinkThatLeadsNowhereIsNotWrittenThrough) {
  MakeLink(HKEY_CURRENT_USER, tree_.PathOf(L"link"), tree_.Key(L"gone").Get());
  DeleteKeyTree(HKEY_CURRENT_USER, tree_.PathOf(L"gone"));
  EXPECT_EQ(Set(L"link", L"x", Dword(1)), ERROR_NOT_SUPPORTED);
  EXPECT_FALSE(tree_.Has(L"gone"));
}

TEST_F(LastLook, FilesOfAnotherProgramStay) {
  const std::wstring file = folder_.Write(L"file", "old");
  const std::wstring to = folder_.File(L"to");
  const std::wstring source = folder_.Write(L"source", "new");
  const auto move = [&] { return Move(file, to); };
  const auto remove = [&] { return Delete(file); };
  const auto overwrite = [&] { return Copy(source, file); };
  const auto hide = [&] { SetFileAttributesW(file.c_str(), FILE_ATTRIBUTE_HIDDEN); };
  const auto show = [&] { SetFileAttributesW(file.c_str(), FILE_ATTRIBUTE_ARCHIVE); };
  ExpectRefused("move", hide, move);
  ExpectRefused("delete", show, remove);
  ExpectRefused(
      "overwrite", [&] { folder_.Write(L"file", "its"); }, overwrite);
  DeleteFileW(file.c_str());
  ExpectRefused(
      "make what has come", [&] { folder_.Write(L"file", "its"); }, overwrite);
}

// From the record on a file that is moved or deleted belongs to the change: nobody gets in between.
TEST_F(LastLook, FileIsHeldUntilItIsMovedOrDeleted) {
  const auto expectHeld = [&](const std::wstring& file) {
    EXPECT_FALSE(ScopedHandle(CreateFileW(file.c_str(), GENERIC_WRITE,
                                          FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                          OPEN_EXISTING, 0, nullptr)));
    EXPECT_FALSE(DeleteFileW(file.c_str()));
    EXPECT_FALSE(MoveFileW(file.c_str(), folder_.File(L"elsewhere").c_str()));
  };
  const std::wstring file = folder_.Write(L"file", "old");
  const std::wstring to = folder_.File(L"to");
  Checkpoint([&] {
    {
      const OutsideProgram program(guardkit_, [&] { expectHeld(file); });
      EXPECT_EQ(Move(file, to), ERROR_SUCCESS);
      EXPECT_TRUE(OutsideProgram::IsDone());
    }
    const OutsideProgram program(guardkit_, [&] { expectHeld(to); });
    EXPECT_EQ(Delete(to), ERROR_SUCCESS);
    EXPECT_TRUE(OutsideProgram::IsDone());
  });
  EXPECT_EQ(Files(), "");
}

// The library reads the file, keeps it open and calls: it is that file that is moved or deleted, or nothing.
TEST_F(LastLook, CallerMayHoldTheFile) {
  const std::wstring file = folder_.Write(L"file", "old");
  const std::wstring to = folder_.File(L"to");
  const std::uint32_t id = Checkpoint([&] {
    const ScopedHandle held(CreateFileW(file.c_str(), GENERIC_READ | DELETE,
                                        FILE_SHARE_READ | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING, 0,
                                        nullptr));
    EXPECT_EQ(Move(file, to), ERROR_SUCCESS);
    EXPECT_EQ(Delete(to), ERROR_SUCCESS);
    // The name is free though the file is open.
    EXPECT_EQ(GetFileAttributesW(to.c_str()), INVALID_FILE_ATTRIBUTES);
    EXPECT_EQ(GetLastError(), DWORD{ERROR_FILE_NOT_FOUND});
  });
  EXPECT_EQ(guardkit_.Undo(id).result, S_OK);
  EXPECT_EQ(ReadFileBytes(file), "old");

  const ScopedHandle held(CreateFileW(file.c_str(), GENERIC_READ | DELETE,
                                      FILE_SHARE_READ | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING, 0,
                                      nullptr));
  ExpectRefused(
      "another file got the name",
      [&] {
        MoveFileW(file.c_str(), folder_.File(L"elsewhere").c_str());
        folder_.Write(L"file", "its");
      },
      [&] { return Delete(file); });
}

// Who reads a file is waited for; what others write meanwhile stays.
TEST_F(LastLook, FilesInUseAreWaitedForAndLookedAtAgain) {
  const std::wstring file = folder_.Write(L"file", "old");
  const std::wstring source = folder_.Write(L"source", "new");
  const auto open = [&](DWORD access, DWORD sharing) {
    return ScopedHandle(CreateFileW(file.c_str(), access, sharing, nullptr, OPEN_EXISTING, 0, nullptr));
  };
  constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
  ScopedHandle other = open(GENERIC_READ, kShareAll);
  const auto after = [&](auto act) {
    return std::jthread([&other, act] {
      Sleep(200);
      act();
      other.Reset();
    });
  };
  Checkpoint([&] {
    const std::jthread reader = after([] {});
    EXPECT_EQ(Copy(source, file), ERROR_SUCCESS);
  });
  EXPECT_EQ(ReadFileBytes(file), "new");
  other = open(GENERIC_READ, FILE_SHARE_READ);
  {
    const std::jthread reader = after([] {});
    EXPECT_EQ(guardkit_.Undo(0).result, S_OK);
  }
  EXPECT_EQ(ReadFileBytes(file), "old");

  std::jthread writer;
  ExpectRefused(
      "overwrite",
      [&] {
        other = open(GENERIC_READ, kShareAll);
        writer = after([&] {
          // The change looks at the file now and then; nobody writes at that moment.
          ScopedHandle own;
          EXPECT_TRUE(WaitUntil([&] { return bool(own = open(GENERIC_WRITE, kShareAll)); }));
          DWORD written = 0;
          EXPECT_TRUE(WriteFile(own.Get(), "its", 3, &written, nullptr));
        });
      },
      [&] { return Copy(source, file); });
  writer = {};
  EXPECT_EQ(ReadFileBytes(file), "its");

  other = open(GENERIC_READ, kShareAll);
  Checkpoint([&] { EXPECT_EQ(Copy(source, file), ERROR_SHARING_VIOLATION); });
  EXPECT_EQ(ReadFileBytes(file), "its");
}

// The source of a copy goes while the undo is at it: the copy is all that is left.
TEST_F(LastLook, AnUndoLeavesACopyWhoseSourceHasGone) {
  Set({}, L"source", Sz(L"1"));
  const ScopedKey key = tree_.Key();
  const auto copy = [&] {
    EXPECT_EQ(guardkit_.Safeguard().SetSource(key.Get(), L"source", nullptr), ERROR_SUCCESS);
    EXPECT_EQ(Set({}, L"copy", Sz(L"1")), ERROR_SUCCESS);
  };
  const std::uint32_t id = Checkpoint(copy);
  {
    const OutsideProgram program(
        guardkit_, [&] { test::RemoveValue(HKEY_CURRENT_USER, kTree, L"source"); }, 1);
    EXPECT_EQ(guardkit_.Undo(id).result, HRESULT_FROM_WIN32(ERROR_REVISION_MISMATCH));
  }
  EXPECT_EQ(tree_.Get({}, L"copy"), Sz(L"1"));
  const UndoAnswer answer = guardkit_.Undo(id);
  EXPECT_EQ(answer.result, IJournal::kConflict);
  EXPECT_EQ(answer.outcomes, std::vector{StepOutcome::kConflict});
  EXPECT_NE(answer.texts.find(L"nothing else holds it"), std::wstring::npos);
  // Forced, it is recorded and comes back.
  const UndoAnswer forced = guardkit_.Undo(id, UndoMode::kForce);
  EXPECT_EQ(forced.outcomes, std::vector{StepOutcome::kOverwritten});
  EXPECT_FALSE(tree_.Get({}, L"copy"));
  EXPECT_EQ(guardkit_.Undo(forced.own).result, S_OK);
  EXPECT_EQ(tree_.Get({}, L"copy"), Sz(L"1"));
  // A change that is taken back leaves it, too.
  test::RemoveValue(HKEY_CURRENT_USER, kTree, L"copy");
  SetValue(HKEY_CURRENT_USER, kTree, L"source", Sz(L"1"));
  Checkpoint([&] {
    copy();
    test::RemoveValue(HKEY_CURRENT_USER, kTree, L"source");
    EXPECT_EQ(guardkit_.Safeguard().FailCheckpoint(), ERROR_REVISION_MISMATCH);
  });
  EXPECT_EQ(tree_.Get({}, L"copy"), Sz(L"1"));
  EXPECT_EQ(guardkit_.Safeguard().SetSource(key.Get(), L"source", nullptr), ERROR_INVALID_FUNCTION);
}

class CountingCheck : public IChangeCheck {
 public:
  LSTATUS STDMETHODCALLTYPE Check() override {
    ++asked;
    EXPECT_EQ(GetCurrentThreadId(), thread_);
    return answer;
  }
  int asked = 0;
  LSTATUS answer = ERROR_SUCCESS;

 private:
  DWORD thread_ = GetCurrentThreadId();
};

TEST_F(LastLook, CallersCheckEndsWithItsCheckpointAndTheOuterOnesIsAskedAgain) {
  ISafeguard& service = guardkit_.Safeguard();
  CountingCheck outer;
  CountingCheck inner;
  const auto set = [&](int number) {
    EXPECT_EQ(Set({}, L"v", Sz(std::to_wstring(number))), ERROR_SUCCESS);
    return std::pair(std::exchange(outer.asked, 0), std::exchange(inner.asked, 0));
  };
  Checkpoint([&] {
    service.SetChangeCheck(&outer);
    EXPECT_EQ(guardkit_.Begin(), ERROR_SUCCESS);
    EXPECT_EQ(set(1), std::pair(1, 0));
    service.SetChangeCheck(&inner);
    EXPECT_EQ(set(2), std::pair(0, 1));
    service.SetChangeCheck(nullptr);
    EXPECT_EQ(set(3), std::pair(0, 0));
    service.SetChangeCheck(&inner);
    EXPECT_EQ(guardkit_.End(), ERROR_SUCCESS);
    EXPECT_EQ(set(4), std::pair(1, 0));
  });
}

TEST_F(LastLook, CallersCheckIsAskedBeforeEveryChangeOfItsCheckpoint) {
  ISafeguard& service = guardkit_.Safeguard();
  CountingCheck check;
  EXPECT_EQ(service.SetChangeCheck(&check), ERROR_INVALID_FUNCTION);
  const std::wstring file = folder_.Write(L"file", "old");
  const std::uint32_t id = Checkpoint([&] {
    EXPECT_EQ(service.SetChangeCheck(&check), ERROR_SUCCESS);
    EXPECT_EQ(Set({}, L"v", Sz(L"new")), ERROR_SUCCESS);
    EXPECT_EQ(check.asked, 1);
    check.answer = ERROR_BUSY;
    const std::string found = Everything();
    EXPECT_EQ(Set({}, L"v", Sz(L"newer")), ERROR_BUSY);
    EXPECT_EQ(Remove(L"v"), ERROR_BUSY);
    EXPECT_EQ(RemoveKey(L"key"), ERROR_BUSY);
    EXPECT_EQ(Set(L"made", L"x", Dword(1)), ERROR_BUSY);
    EXPECT_EQ(Move(file, folder_.File(L"to")), ERROR_BUSY);
    EXPECT_EQ(Copy(file, folder_.File(L"to"), FALSE), ERROR_BUSY);
    EXPECT_EQ(Delete(file), ERROR_BUSY);
    EXPECT_EQ(check.asked, 8);
    EXPECT_EQ(Everything(), found);
    EXPECT_EQ(service.SetChangeCheck(nullptr), ERROR_SUCCESS);
    EXPECT_EQ(Set({}, L"v", Sz(L"newest")), ERROR_SUCCESS);
    service.SetChangeCheck(&check);
  });
  EXPECT_EQ(Set({}, L"after", Sz(L"the end")), ERROR_SUCCESS);
  EXPECT_EQ(check.asked, 8);
  EXPECT_EQ(guardkit_.Undo(id).result, S_OK);
  EXPECT_EQ(tree_.Get({}, L"v"), Sz(L"old"));
}

}  // namespace
}  // namespace smh::test
