// Actions of several parts: recorded, listed, undone as a whole and in part, cut off and gone on with.
#include "siblings/guardkit/registry_place.h"
#include "tests/siblings/guardkit/changes_fixture.h"

#include <atomic>
#include <thread>

namespace smh::test {
namespace {

class JournalActions : public JournalChanges {
 protected:
  IJournal& Journal() const { return guardkit_.Journal(); }
  // One value a part.
  void Part(int number) {
    EXPECT_EQ(guardkit_.Begin((L"part " + std::to_wstring(number)).c_str()), ERROR_SUCCESS);
    EXPECT_EQ(Set({}, std::to_wstring(number), Dword(static_cast<DWORD>(number))), ERROR_SUCCESS);
    EXPECT_EQ(guardkit_.End(), ERROR_SUCCESS);
  }
  std::uint32_t End() {
    std::uint32_t id = 99;
    EXPECT_EQ(Journal().EndAction(&id), S_OK);
    return id;
  }
  std::uint32_t Action(int parts, const wchar_t* title = L"action") {
    EXPECT_EQ(Journal().BeginAction(title), S_OK);
    for (int number = 1; number <= parts; ++number) Part(number);
    return End();
  }
  // As a process that dies leaves it: without the end, nobody has it open. An undo was to take back all
  // parts.
  void CutOff(std::uint32_t id) const {
    const std::wstring closed = FileOf(id, true);
    std::string bytes = ReadFileBytes(closed);
    CheckpointHeader header = DecodeJournal(std::as_bytes(std::span(bytes)))->header;
    const std::size_t length = EncodeBeginning(header).size();
    header.chosen.clear();
    const ByteVector beginning = EncodeBeginning(header);
    bytes.replace(0, length, reinterpret_cast<const char*>(beginning.data()), beginning.size());
    bytes.resize(bytes.size() - EncodeEnd(0, JournalEnd::kDone).size());
    bytes.append(kRoomBehindPartEnd, '\0');
    DeleteFileW(closed.c_str());
    WriteFileBytes(FileOf(id, false), bytes);
  }
  static std::wstring FileOf(std::uint32_t id, bool closed) {
    const JournalName name{.id = id, .closed = closed};
    return JournalFolderPath() + L'\\' + name.FileName();
  }
  CheckpointState StateOf(std::uint32_t id) const {
    for (const ListedCheckpoint& row : guardkit_.List()) {
      if (row.id == id) return row.state;
    }
    return CheckpointState::kDropped;
  }
};

TEST_F(JournalActions, AreOneUndoWhoseLockIsFreeBetweenParts) {
  tree_.Set({}, L"2", Dword(7));
  const std::string before = Everything();
  EXPECT_EQ(Journal().BeginAction(L"empty"), S_OK);
  EXPECT_EQ(Journal().BeginAction(L"nested"), HRESULT_FROM_WIN32(ERROR_BUSY));
  EXPECT_EQ(End(), 0u);
  const auto revision = [&] {
    std::uint64_t number = 0;
    EXPECT_EQ(Journal().GetRevision(&number), S_OK);
    return number;
  };
  EXPECT_EQ(Action(1, L""), 1u);
  const std::uint64_t first = revision();
  EXPECT_EQ(revision(), first);
  EXPECT_EQ(guardkit_.List().back().title, L"part 1");
  EXPECT_EQ(guardkit_.Undo().result, S_OK);
  EXPECT_NE(revision(), first);

  EXPECT_EQ(Journal().BeginAction(L"action"), S_OK);
  Part(1);
  Checkpoint([] {});
  std::jthread([&] {
    // Another thread's change, and its undo, come between; this action's is refused.
    const std::uint32_t other = Checkpoint([&] { Set({}, L"other", Dword(1)); });
    EXPECT_EQ(StateOf(3), CheckpointState::kOpen);
    const UndoAnswer refused = guardkit_.Undo(3);
    EXPECT_EQ(refused.result, HRESULT_FROM_WIN32(ERROR_BUSY));
    EXPECT_EQ(refused.checkpoint, 3u) << "it says what stands in the way";
    EXPECT_EQ(guardkit_.Forget({3})[0], HRESULT_FROM_WIN32(ERROR_BUSY));
    EXPECT_EQ(guardkit_.Undo(other).result, S_OK);
  }).join();
  EXPECT_EQ(guardkit_.Undo(1).result, HRESULT_FROM_WIN32(ERROR_BUSY));
  for (int number = 2; number <= 4; ++number) Part(number);
  const std::uint32_t id = End();
  EXPECT_EQ(id, 3u);
  const auto row = guardkit_.List()[2];
  EXPECT_EQ(row.state, CheckpointState::kDone);
  EXPECT_EQ(row.title, L"action");
  EXPECT_EQ(row.steps, 4u);
  EXPECT_EQ(row.parts, 4u);
  const std::string after = Everything();
  const UndoAnswer undone = guardkit_.Undo();
  EXPECT_EQ(undone.checkpoint, id);
  EXPECT_EQ(undone.outcomes, std::vector(4, StepOutcome::kUndo));
  EXPECT_EQ(Everything(), before);
  EXPECT_EQ(guardkit_.Parts(undone.own)[0].title, L"Undo: part 4");
  EXPECT_EQ(guardkit_.Redo(id).result, S_OK);
  EXPECT_EQ(Everything(), after);
  EXPECT_EQ(StateOf(id), CheckpointState::kDone);
}

TEST_F(JournalActions, PartsAreTakenBackAloneAndCountInWhatBecameOfTheWhole) {
  const std::string before = Everything();
  EXPECT_EQ(Journal().BeginAction(L"action"), S_OK);
  Part(1);
  guardkit_.Begin(L"fails");
  Set({}, L"gone again", Dword(1));
  EXPECT_EQ(guardkit_.Safeguard().FailCheckpoint(), ERROR_SUCCESS);
  guardkit_.End();
  Part(3);
  const std::uint32_t id = End();
  using enum CheckpointState;
  const auto states = [&] {
    std::vector<CheckpointState> all = {StateOf(id)};
    for (const ListedCheckpoint& part : guardkit_.Parts(id)) all.push_back(part.state);
    return all;
  };
  EXPECT_EQ(states(), (std::vector{kPartlyDone, kDone, kFailed, kDone}));
  EXPECT_EQ(guardkit_.UndoParts(id, {4}).result, HRESULT_FROM_WIN32(ERROR_NOT_FOUND));
  EXPECT_EQ(guardkit_.UndoParts(id, {3}).result, S_OK);
  EXPECT_EQ(states(), (std::vector{kPartlyDone, kDone, kFailed, kUndone}));
  EXPECT_EQ(guardkit_.UndoParts(id, {3}).result, IJournal::kWrongState);
  EXPECT_EQ(guardkit_.Undo().checkpoint, id);
  EXPECT_EQ(Everything(), before);
  EXPECT_EQ(states(), (std::vector{kUndone, kUndone, kUndone, kUndone}));
  EXPECT_EQ(guardkit_.Undo().result, HRESULT_FROM_WIN32(ERROR_NOT_FOUND));
  EXPECT_EQ(guardkit_.Redo(id).result, S_OK);
  EXPECT_EQ(tree_.Get({}, L"3"), Dword(3));
}

// An undo that was cut off is gone on with by the same call, in whatever state its last part was left.
TEST_F(JournalActions, UndoThatWasCutOffIsGoneOnWith) {
  for (const bool inPart : {false, true}) {
    ClearJournal();
    const std::string before = Everything();
    const std::uint32_t id = Action(4);
    const std::string after = Everything();
    const std::uint32_t undo = guardkit_.UndoParts(id, {3, 4}).own;
    CutOff(undo);
    if (inPart) {
      // In part 2, of which the one step is undone and has no mark.
      std::string bytes = ReadFileBytes(FileOf(undo, false));
      bytes.resize(bytes.size() - kRoomBehindPartEnd);
      const ValueStep step{PlaceOf(tree_.Key().Get()), L"2", {true, REG_DWORD, Dword(2).bytes}, {}};
      for (const ByteVector& part : {EncodePart({.number = 3, .undoesAction = id, .undoesPart = 2}),
                                     EncodeStep(2, step), ByteVector(kRoomBehindStep)}) {
        bytes.append(reinterpret_cast<const char*>(part.data()), part.size());
      }
      WriteFileBytes(FileOf(undo, false), bytes);
      RegDeleteValueW(tree_.Key().Get(), L"2");
    }
    EXPECT_EQ(StateOf(id), CheckpointState::kPartlyDone);
    EXPECT_EQ(guardkit_.List(true).size(), 1u);
    EXPECT_EQ(guardkit_.Undo(id).result, S_OK);
    EXPECT_EQ(Everything(), before);
    EXPECT_EQ(StateOf(id), CheckpointState::kUndone);
    EXPECT_TRUE(guardkit_.List(true).empty());
    EXPECT_EQ(guardkit_.Redo(id).result, S_OK);
    EXPECT_EQ(Everything(), after);
    EXPECT_EQ(guardkit_.Undo(id).result, S_OK);
  }
}

LSTATUS WINAPI RefuseSecond(HKEY key, const wchar_t* name) {
  static const auto real = RealFunction<decltype(RegDeleteValueW)>(L"advapi32.dll", "RegDeleteValueW");
  return name == std::wstring_view(L"2") ? ERROR_ACCESS_DENIED : real(key, name);
}

// In the place of what it takes back. One that came to its last part is in nobody's way, and neither is one
// of some parts.
TEST_F(JournalActions, BareUndoGoesOnWithTheUndoThatWasCutOff) {
  const std::uint32_t other = Action(1, L"other");
  RegDeleteValueW(tree_.Key().Get(), L"1");
  const std::uint32_t id = Action(4);
  const auto refused = [&](auto&& undo) {
    const ImportPatch patch("RegDeleteValueW", &RefuseSecond, guardkit_.Module());
    EXPECT_EQ(undo().result, HRESULT_FROM_WIN32(ERROR_ACCESS_DENIED));
    EXPECT_EQ(guardkit_.List(true).size(), 1u);
  };
  refused([&] { return guardkit_.Undo(id); });
  EXPECT_EQ(StateOf(id), CheckpointState::kPartlyDone);
  const UndoAnswer rest = guardkit_.Undo();
  EXPECT_EQ(rest.checkpoint, id);
  EXPECT_EQ(rest.outcomes.size(), 2u);
  EXPECT_EQ(StateOf(id), CheckpointState::kUndone);
  EXPECT_TRUE(guardkit_.List(true).empty());
  EXPECT_EQ(guardkit_.Redo(id).result, S_OK);

  refused([&] { return guardkit_.UndoParts(id, {3, 2, 2}); });
  EXPECT_EQ(guardkit_.UndoParts(id, {2}).result, S_OK);
  EXPECT_TRUE(guardkit_.List(true).empty()) << "part 1 was never meant";
  EXPECT_EQ(tree_.Get({}, L"1"), Dword(1));

  const std::uint32_t whole = guardkit_.Undo().own;
  CutOff(whole);
  EXPECT_EQ(guardkit_.Undo(0, UndoMode::kShow).checkpoint, other);
  EXPECT_TRUE(guardkit_.List(true).empty());
  Action(1);
  EXPECT_TRUE(std::filesystem::exists(FileOf(whole, true))) << "the next change closes it";
  EXPECT_EQ(StateOf(whole), CheckpointState::kDone);
}

TEST_F(JournalActions, ThatLoseTheirOwnerAreInterruptedWithWhatWasDone) {
  const std::string before = Everything();
  std::jthread([&] {
    EXPECT_EQ(Journal().BeginAction(L"action"), S_OK);
    for (int number = 1; number <= 3; ++number) Part(number);
    guardkit_.Begin();
    Set({}, L"4", Dword(4));
  }).join();
  // The next change of the process finds the thread ended.
  Checkpoint([] {});
  ASSERT_EQ(guardkit_.List(true).size(), 1u);
  EXPECT_EQ(guardkit_.Parts(1).size(), 4u);
  EXPECT_EQ(guardkit_.Undo().outcomes.size(), 4u);
  EXPECT_EQ(Everything(), before);
  EXPECT_TRUE(guardkit_.List(true).empty());
}

std::atomic<int> g_listings;
std::atomic<int> g_opened;
HANDLE WINAPI CountListing(const wchar_t* pattern, WIN32_FIND_DATAW* found) {
  static const auto real = RealFunction<decltype(FindFirstFileW)>(L"kernel32.dll", "FindFirstFileW");
  ++g_listings;
  return real(pattern, found);
}
HANDLE WINAPI CountOpening(const wchar_t* name, DWORD access, DWORD sharing, SECURITY_ATTRIBUTES* security,
                           DWORD disposition, DWORD flags, HANDLE like) {
  static const auto real = RealFunction<decltype(CreateFileW)>(L"kernel32.dll", "CreateFileW");
  ++g_opened;
  return real(name, access, sharing, security, disposition, flags, like);
}

// What a part costs does not grow with the others, neither done nor undone: only the lock's file is opened.
TEST_F(JournalActions, FoldersAreListedAndFilesReadOnceAnAction) {
  const ImportPatch listing("FindFirstFileW", &CountListing, guardkit_.Module());
  const ImportPatch opening("CreateFileW", &CountOpening, guardkit_.Module());
  int listings[2][2];
  int opened[2][2];
  Action(1);
  ClearJournal();
  for (const int row : {0, 1}) {
    for (const int column : {0, 1}) {
      g_listings = 0;
      g_opened = 0;
      if (column == 0) {
        Action(row == 0 ? 5 : 25);
      } else {
        EXPECT_EQ(guardkit_.Undo().result, S_OK);
      }
      listings[row][column] = g_listings;
      opened[row][column] = g_opened;
    }
    ClearJournal();
  }
  for (const int column : {0, 1}) {
    EXPECT_EQ(listings[0][column], listings[1][column]) << column;
    EXPECT_EQ(opened[1][column], opened[0][column] + 20) << column;
  }
}

// More than one file takes: all of them are the action, and none is without the others.
TEST_F(JournalActions, SpanSeveralFiles) {
  const std::string before = Everything();
  const RawValue large{REG_BINARY, Bytes(900'000, std::byte{7})};
  EXPECT_EQ(Journal().BeginAction(L"action"), S_OK);
  for (int number = 1; number <= 20; ++number) {
    EXPECT_EQ(Set({}, std::to_wstring(number), large), ERROR_SUCCESS);
  }
  const std::uint32_t id = End();
  EXPECT_EQ(guardkit_.Parts(id).size(), 20u);
  ASSERT_EQ(guardkit_.List().size(), 1u);
  const std::wstring second = FileOf(id + 1, true);
  const std::string bytes = ReadFileBytes(second);
  DeleteFileW(second.c_str());
  EXPECT_EQ(guardkit_.Undo(id).result, IJournal::kDamaged);
  WriteFileBytes(second, bytes);
  EXPECT_EQ(guardkit_.UndoParts(id, {1, 20}).result, S_OK);
  EXPECT_EQ(guardkit_.Undo(id).outcomes.size(), 18u);
  EXPECT_EQ(Everything(), before);
  EXPECT_EQ(guardkit_.Forget({id})[0], S_OK);
  EXPECT_FALSE(std::filesystem::exists(second));
}

// One bad file costs that one: listed, refused in every mode, in nobody's way.
TEST_F(JournalActions, FilesThatAreNoneCostThemselvesOnly) {
  const std::uint32_t id = Action(3);
  const std::string whole = ReadFileBytes(FileOf(id, true));
  CreateDirectoryW(FileOf(40, true).c_str(), nullptr);
  WriteFileBytes(FileOf(41, true), whole);
  WriteFileBytes(FileOf(kGreatestJournalId, false), "no journal");
  WriteFileBytes(FileOf(43, false), "");
  WriteFileBytes(FileOf(44, true), whole.substr(0, whole.size() / 2));
  const ScopedHandle large(
      CreateFileW(FileOf(42, true).c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr, CREATE_NEW, 0, nullptr));
  SetFilePointer(large.Get(), static_cast<LONG>(kLargestJournal + 1), nullptr, FILE_BEGIN);
  SetEndOfFile(large.Get());
  WriteFileBytes(FileOf(45, true), whole);
  const ScopedHandle scanned(
      CreateFileW(FileOf(45, true).c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
  for (const std::uint32_t bad : {40u, 41u, 42u, 44u, 45u, kGreatestJournalId}) {
    EXPECT_EQ(StateOf(bad), CheckpointState::kDamaged) << bad;
    EXPECT_EQ(guardkit_.Undo(bad, UndoMode::kForce).result, IJournal::kDamaged) << bad;
  }
  EXPECT_EQ(StateOf(43), CheckpointState::kDropped);
  EXPECT_TRUE(guardkit_.List(true).empty());
  // The next change takes the next number, and removes the empty file.
  EXPECT_EQ(Action(4), 46u);
  EXPECT_FALSE(std::filesystem::exists(FileOf(43, false)));
  EXPECT_EQ(guardkit_.Undo(46).result, S_OK);
  EXPECT_EQ(guardkit_.Undo(id).result, S_OK);
  EXPECT_EQ(guardkit_.Forget({41})[0], S_OK);
  RemoveDirectoryW(FileOf(40, true).c_str());
}

// What was taken back, or made again, by one that is damaged by now is compared: all of it is undone, however
// much of the damaged file can be read.
TEST_F(JournalActions, WhatADamagedUndoDidIsFoundOut) {
  for (const bool isRedo : {false, true}) {
    const std::string before = Everything();
    const std::uint32_t id = Action(3);
    std::uint32_t damaged = guardkit_.Undo(id).own;
    if (isRedo) damaged = guardkit_.Redo(id).own;
    const std::string whole = ReadFileBytes(FileOf(damaged, true));
    WriteFileBytes(FileOf(damaged, true), whole.substr(0, whole.size() / 2));
    EXPECT_EQ(StateOf(damaged), CheckpointState::kDamaged);
    EXPECT_EQ(guardkit_.Undo().checkpoint, id);
    EXPECT_EQ(Everything(), before);
    EXPECT_EQ(StateOf(id), CheckpointState::kUndone);
    EXPECT_EQ(guardkit_.Undo().result, HRESULT_FROM_WIN32(ERROR_NOT_FOUND));
    ClearJournal();
  }
}

// A file of several parts, ended and not, cut off at all its places and flipped there: some of the bytes,
// since all of them are tried where the files are read (tests/native).
TEST_F(JournalActions, DamageIsNeverUndone) {
  for (const bool ended : {true, false}) {
    const std::uint32_t id = Action(3);
    if (!ended) CutOff(id);
    const std::wstring file = FileOf(id, ended);
    const std::string whole = ReadFileBytes(file);
    const std::string found = Everything();
    for (std::size_t at = 0; at < 2 * whole.size(); at += 17) {
      const bool isCut = at >= whole.size();
      std::string damaged = whole.substr(0, isCut ? at - whole.size() : whole.size());
      if (!isCut) damaged[at] = static_cast<char>(damaged[at] ^ (1 << at % 8));
      WriteFileBytes(file, damaged);
      const UndoAnswer answer = guardkit_.Undo(id, UndoMode::kForce);
      const HRESULT expected = damaged.empty() ? HRESULT_FROM_WIN32(ERROR_NOT_FOUND) : IJournal::kDamaged;
      ASSERT_EQ(answer.result, expected) << at;
      ASSERT_EQ(guardkit_.Undo().own, 0u) << at;
      ASSERT_EQ(StateOf(id), damaged.empty() ? CheckpointState::kDropped : CheckpointState::kDamaged) << at;
    }
    EXPECT_EQ(Everything(), found);
    WriteFileBytes(file, whole);
    EXPECT_EQ(guardkit_.Undo(id).result, S_OK);
    ClearJournal();
  }
}

}  // namespace
}  // namespace smh::test
