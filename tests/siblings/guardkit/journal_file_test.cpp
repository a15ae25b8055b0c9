// File changes recorded, undone and redone.
#include "infra/files/folder_access.h"
#include "infra/runtime/exceptions.h"
#include "siblings/common/product.h"
#include "siblings/guardkit/file_state.h"
#include "tests/siblings/guardkit/changes_fixture.h"
#include "tests/siblings/guardkit/outside_program.h"

namespace smh::test {
namespace {

using JournalFiles = JournalChanges;

TEST_F(JournalFiles, ConflictsChangeNothingUnlessForced) {
  const std::wstring moved = folder_.Write(L"moved", "moved");
  const std::wstring gone = folder_.Write(L"gone", "gone");
  const std::wstring deleted = folder_.Write(L"deleted", "deleted");
  const std::uint32_t id = Checkpoint([&] {
    Move(moved, folder_.File(L"to"));
    Move(gone, folder_.File(L"to nowhere"));
    Delete(deleted);
  });
  folder_.Write(L"to", "edited");
  folder_.Write(L"moved", "in the way");
  folder_.Write(L"deleted", "another");
  DeleteFileW(folder_.File(L"to nowhere").c_str());
  const std::string found = Files();

  using enum StepOutcome;
  EXPECT_EQ(guardkit_.Undo(id).result, IJournal::kConflict);
  EXPECT_EQ(Files(), found);
  const UndoAnswer forced = guardkit_.Undo(id, UndoMode::kForce);
  EXPECT_EQ(forced.outcomes, (std::vector{kOverwritten, kImpossible, kOverwritten}));
  EXPECT_EQ(ReadFileBytes(deleted), "deleted");
  EXPECT_EQ(ReadFileBytes(moved), "edited");
  EXPECT_EQ(guardkit_.Undo(forced.own).result, S_OK);
  EXPECT_EQ(Files(), found);
}

// Renames and deletions by handle: those from number `g_firstRefused` on are refused.
int g_firstRefused;
BOOL WINAPI RefuseByHandle(HANDLE file, FILE_INFO_BY_HANDLE_CLASS kind, void* data, DWORD size) {
  static const auto real =
      RealFunction<decltype(SetFileInformationByHandle)>(L"kernel32.dll", "SetFileInformationByHandle");
  if (--g_firstRefused > 0) return real(file, kind, data, size);
  SetLastError(ERROR_ACCESS_DENIED);
  return FALSE;
}

TEST_F(JournalFiles, ReadOnlyFileKeepsItsAttributeUnlessAnUndoDeletesIt) {
  const std::wstring source = folder_.Write(L"source", "content");
  const std::wstring made = folder_.File(L"made");
  const std::uint32_t id = Checkpoint([&] { EXPECT_EQ(Copy(source, made, FALSE), ERROR_SUCCESS); });
  SetFileAttributesW(made.c_str(), FILE_ATTRIBUTE_READONLY);
  const std::string found = Files();
  EXPECT_EQ(Delete(made), ERROR_ACCESS_DENIED);
  EXPECT_EQ(Files(), found);
  {
    g_firstRefused = 1;
    const ImportPatch patch("SetFileInformationByHandle", &RefuseByHandle, guardkit_.Module());
    EXPECT_EQ(guardkit_.Undo(id).result, HRESULT_FROM_WIN32(ERROR_ACCESS_DENIED));
    EXPECT_EQ(Files(), found);
  }
  const UndoAnswer undone = guardkit_.Undo(id);
  EXPECT_EQ(undone.result, S_OK);
  EXPECT_FALSE(std::filesystem::exists(made));
  EXPECT_EQ(guardkit_.Undo(undone.own).result, S_OK);
  EXPECT_EQ(Files(), found);
  SetFileAttributesW(made.c_str(), FILE_ATTRIBUTE_NORMAL);
}

// What makes room for a file that is moved back is there again when the move is refused, on a full disk too.
TEST_F(JournalFiles, WhatMakesRoomIsPutBackWhenTheMoveFails) {
  const std::wstring moved = folder_.Write(L"moved", "moved");
  const std::uint32_t id = Checkpoint([&] { Move(moved, folder_.File(L"to")); });
  folder_.Write(L"moved", "in the way");
  const std::string found = Files();
  g_firstRefused = 2;
  const ImportPatch patch("SetFileInformationByHandle", &RefuseByHandle, guardkit_.Module());
  EXPECT_EQ(guardkit_.Undo(id, UndoMode::kForce).result, HRESULT_FROM_WIN32(ERROR_ACCESS_DENIED));
  EXPECT_EQ(Files(), found);
}

// An addition is undone without a trace in the folder of temporary shortcuts.
TEST_F(JournalFiles, WhatComesFromTheTemporaryFolderWasMade) {
  std::wstring temporary = DataFolder() + L"TempShortcuts\\";
  MakeFolders(temporary);
  const std::wstring made = temporary + L"journal test.lnk";
  WriteFileBytes(made, "new");
  const std::wstring target = folder_.File(L"added.lnk");
  const std::uint32_t id = Checkpoint([&] { EXPECT_EQ(Move(made, target), ERROR_SUCCESS); });
  EXPECT_EQ(guardkit_.Undo(id).result, S_OK);
  EXPECT_EQ(Files(), "");
  EXPECT_FALSE(std::filesystem::exists(made));
  EXPECT_EQ(guardkit_.Redo(id).result, S_OK);
  EXPECT_EQ(ReadFileBytes(target), "new");
}

TEST_F(JournalFiles, AnotherVolumeIsReachedByACopy) {
  // Whatever file system the prefix is on, this one is another. All prefixes share it, and have processes of
  // the same numbers.
  LARGE_INTEGER now;
  QueryPerformanceCounter(&now);
  const std::wstring other = L"Z:\\dev\\shm\\smh-journal-test-" + std::to_wstring(now.QuadPart);
  ASSERT_TRUE(CreateDirectoryW(other.c_str(), nullptr));
  // A Startup folder that was led there: others an undo leaves alone.
  const wchar_t* const folders =
      L"Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\User Shell Folders";
  const SavedKey saved(HKEY_CURRENT_USER, folders);
  SetValue(HKEY_CURRENT_USER, folders, L"Startup", Sz(other));
  const std::wstring file = folder_.Write(L"file", "content");
  SetFileAttributesW(file.c_str(), FILE_ATTRIBUTE_READONLY);
  const std::string before = Files();
  const std::uint32_t id = Checkpoint([&] { EXPECT_EQ(Move(file, other + L"\\file"), ERROR_SUCCESS); });
  EXPECT_EQ(ReadFileBytes(other + L"\\file"), "content");
  EXPECT_EQ(Files(), "");
  EXPECT_EQ(guardkit_.Undo(id).result, S_OK);
  EXPECT_EQ(Files(), before);
  EXPECT_EQ(DumpFolder(other), "");

  // What another program writes after the copy was made is not deleted with the source.
  SetFileAttributesW(file.c_str(), FILE_ATTRIBUTE_NORMAL);
  Checkpoint([&] {
    const OutsideProgram program(guardkit_, [&] { folder_.Write(L"file", "its"); });
    EXPECT_EQ(Move(file, other + L"\\file"), ERROR_REVISION_MISMATCH);
  });
  EXPECT_EQ(ReadFileBytes(file), "its");
  EXPECT_EQ(DumpFolder(other), "");
  std::filesystem::remove_all(other);
}

// A file system with streams, which the one here is not: a stream is a file with a colon in its name.
std::wstring g_fileWithStreams;
HANDLE WINAPI FindTwoStreams(const wchar_t* file, STREAM_INFO_LEVELS, void* found, DWORD) {
  auto* const data = static_cast<WIN32_FIND_STREAM_DATA*>(found);
  lstrcpyW(data->cStreamName, L"::$DATA");
  if (file != g_fileWithStreams) {
    SetLastError(ERROR_HANDLE_EOF);
    return INVALID_HANDLE_VALUE;
  }
  WIN32_FIND_DATAW ignored;
  return FindFirstFileW(L"C:\\*", &ignored);
}
BOOL WINAPI FindNextOfTwo(HANDLE, void* found) {
  auto* const data = static_cast<WIN32_FIND_STREAM_DATA*>(found);
  SetLastError(ERROR_HANDLE_EOF);
  if (std::wstring_view(data->cStreamName) != L"::$DATA") return FALSE;
  lstrcpyW(data->cStreamName, L":zone:$DATA");
  return TRUE;
}

TEST_F(JournalFiles, OtherStreamsAreKeptAndMade) {
  const ImportPatch first("FindFirstStreamW", &FindTwoStreams);
  const ImportPatch next("FindNextStreamW", &FindNextOfTwo);
  g_fileWithStreams = folder_.Write(L"file", "abc");
  folder_.Write(L"file:zone", "zone");
  const JournalFolder journal = JournalFolder::Open();
  const BlobStore blobs(journal);
  FileState state = KeepFileState(g_fileWithStreams, blobs);
  ASSERT_EQ(state.streams.size(), 2u);
  EXPECT_EQ(state.streams[1].name, L":zone");
  EXPECT_EQ(state.streams[1].size, 4u);
  // SHA-256 of "abc".
  EXPECT_EQ(std::to_integer<int>(state.streams[0].hash[0]), 0xBA);
  EXPECT_EQ(std::to_integer<int>(state.streams[0].hash[31]), 0xAD);
  const std::wstring made = folder_.File(L"made");
  MakeFile(state, made, blobs);
  EXPECT_EQ(ReadFileBytes(made), "abc");
  EXPECT_EQ(ReadFileBytes(made + L":zone"), "zone");

  // Neither a name that leads elsewhere nor a content that was damaged is used.
  state.streams[1].name = L"\\..\\other";
  EXPECT_THROW(MakeFile(state, folder_.File(L"other"), blobs), EOSError);
  state.streams[1].name = L":zone";
  for (const auto& blob : std::filesystem::directory_iterator(journal.File(L"Blobs"))) {
    WriteFileBytes(blob.path().wstring(), "damaged");
  }
  EXPECT_THROW(MakeFile(state, folder_.File(L"other"), blobs), EOSError);
  EXPECT_FALSE(std::filesystem::exists(folder_.File(L"other")));
}

BOOL WINAPI ReportReparsePoint(HANDLE file, BY_HANDLE_FILE_INFORMATION* information) {
  static const auto real =
      RealFunction<decltype(GetFileInformationByHandle)>(L"kernel32.dll", "GetFileInformationByHandle");
  const BOOL succeeded = real(file, information);
  if ((information->dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0) {
    information->dwFileAttributes |= FILE_ATTRIBUTE_REPARSE_POINT;
  }
  return succeeded;
}

TEST_F(JournalFiles, ReparsePointInTheWayIsNotFollowed) {
  const std::wstring file = folder_.Write(L"file", "content");
  const std::uint32_t id = Checkpoint([&] { Delete(file); });
  {
    EXPECT_NO_THROW(HeldPath{folder_.Path()});
    const ImportPatch patch("GetFileInformationByHandle", &ReportReparsePoint);
    EXPECT_THROW(HeldPath{folder_.Path()}, EOSError);
  }
  {
    // The journal's own folder is refused so, too.
    const ImportPatch patch("GetFileInformationByHandle", &ReportReparsePoint, guardkit_.Module());
    EXPECT_EQ(guardkit_.Undo(id).result, HRESULT_FROM_WIN32(ERROR_CANT_ACCESS_FILE));
    EXPECT_EQ(guardkit_.Begin(), ERROR_CANT_ACCESS_FILE);
  }
  EXPECT_EQ(Files(), "");
  EXPECT_EQ(guardkit_.Undo(id).result, S_OK);
}

}  // namespace
}  // namespace smh::test
