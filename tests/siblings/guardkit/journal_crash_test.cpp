// Threads that leave, disks that fill up, undos that fail. Owners that die have a proof of their own.
#include "tests/siblings/guardkit/journal_fixture.h"
#include "tests/support/file_fixture.h"
#include "tests/support/import_patch.h"
#include "tests/support/state_dump.h"

#include <atomic>
#include <thread>

namespace smh::test {
namespace {

constexpr wchar_t kTree[] = L"Software\\SmhJournalCrash";

BOOL WINAPI DiskIsFull(HANDLE, const void*, DWORD, DWORD* written, OVERLAPPED*) {
  *written = 0;
  SetLastError(ERROR_DISK_FULL);
  return FALSE;
}
BOOL WINAPI FlushFails(HANDLE) {
  SetLastError(ERROR_WRITE_FAULT);
  return FALSE;
}

TEST_F(JournalTest, WhatCannotBeWrittenDownIsNotDone) {
  const RegistryTree tree(kTree);
  const TemporaryFolder folder;
  const std::wstring file = folder.Write(L"file", "content");
  const auto expectRefused = [&](LSTATUS status) {
    EXPECT_EQ(guardkit_.Set(HKEY_CURRENT_USER, kTree, L"v", Sz(L"1")), status);
    EXPECT_EQ(guardkit_.Safeguard().DeleteRecordedFile(file.c_str()), status);
    EXPECT_FALSE(tree.Get({}, L"v"));
    EXPECT_EQ(ReadFileBytes(file), "content");
  };
  {
    const ImportPatch patch("WriteFile", &DiskIsFull, guardkit_.Module());
    EXPECT_EQ(guardkit_.Begin(), ERROR_DISK_FULL);
    expectRefused(ERROR_DISK_FULL);
  }
  {
    const ImportPatch patch("FlushFileBuffers", &FlushFails, guardkit_.Module());
    EXPECT_EQ(guardkit_.Begin(), ERROR_WRITE_FAULT);
    expectRefused(ERROR_WRITE_FAULT);
  }
  EXPECT_TRUE(guardkit_.List().empty());
  const std::uint32_t id = Checkpoint([&] {
    {
      const ImportPatch patch("FlushFileBuffers", &FlushFails, guardkit_.Module());
      expectRefused(ERROR_WRITE_FAULT);
    }
    EXPECT_EQ(guardkit_.Set(HKEY_CURRENT_USER, kTree, L"w", Sz(L"1")), ERROR_SUCCESS);
  });
  EXPECT_EQ(guardkit_.Undo(id).outcomes.size(), 1u);
  EXPECT_FALSE(tree.Get({}, L"w"));
}

// Ten seconds pass in a moment.
ULONGLONG WINAPI FastClock() {
  static std::atomic<ULONGLONG> now{0};
  return now += 1'000;
}

TEST_F(JournalTest, OneCheckpointAtATime) {
  const RegistryTree tree(kTree);
  const ImportPatch patch("GetTickCount64", &FastClock, guardkit_.Module());
  Checkpoint([&] {
    std::jthread([&] {
      EXPECT_EQ(guardkit_.Begin(), ERROR_LOCK_VIOLATION);
      EXPECT_EQ(guardkit_.Set(HKEY_CURRENT_USER, kTree, L"v", Sz(L"1")), ERROR_LOCK_VIOLATION);
      EXPECT_EQ(guardkit_.Undo().result, HRESULT_FROM_WIN32(ERROR_NOT_FOUND));
    }).join();
    guardkit_.Set(HKEY_CURRENT_USER, kTree, L"w", Sz(L"1"));
    EXPECT_EQ(guardkit_.List().back().state, CheckpointState::kOpen);
    EXPECT_TRUE(guardkit_.List(true).empty());
    std::jthread([&] {
      const auto list = guardkit_.List();
      EXPECT_EQ(guardkit_.Undo(list.back().id).result, HRESULT_FROM_WIN32(ERROR_BUSY));
    }).join();
    EXPECT_EQ(guardkit_.Undo().result, HRESULT_FROM_WIN32(ERROR_BUSY));
  });
  EXPECT_FALSE(tree.Get({}, L"v"));
}

TEST_F(JournalTest, ThreadThatEndsInACheckpointHoldsNobodyUp) {
  const RegistryTree tree(kTree);
  std::jthread([&] {
    guardkit_.Begin(L"left open");
    guardkit_.Set(HKEY_CURRENT_USER, kTree, L"v", Sz(L"1"));
  }).join();
  EXPECT_EQ(guardkit_.Set(HKEY_CURRENT_USER, kTree, L"w", Sz(L"1")), ERROR_SUCCESS);
  const auto list = guardkit_.List();
  ASSERT_EQ(list.size(), 2u);
  EXPECT_EQ(list[0].state, CheckpointState::kInterrupted);
}

LSTATUS WINAPI SettingFails(HKEY, const wchar_t*, DWORD, DWORD, const BYTE*, DWORD) {
  return ERROR_ACCESS_DENIED;
}

TEST_F(JournalTest, UndoThatFailsHalfwayCanItselfBeUndone) {
  const RegistryTree tree(kTree);
  tree.Set({}, L"v", Sz(L"1"));
  const std::uint32_t id = Checkpoint([&] {
    guardkit_.Set(HKEY_CURRENT_USER, kTree, L"v", Sz(L"2"));
    guardkit_.Set(HKEY_CURRENT_USER, kTree, L"made", Sz(L"1"));
  });
  const std::string after = DumpKey(HKEY_CURRENT_USER, kTree);
  {
    const ImportPatch patch("RegSetValueExW", &SettingFails, guardkit_.Module());
    const UndoAnswer answer = guardkit_.Undo(id);
    EXPECT_EQ(answer.result, HRESULT_FROM_WIN32(ERROR_ACCESS_DENIED));
    EXPECT_EQ(answer.own, id + 1);
  }
  EXPECT_FALSE(tree.Get({}, L"made"));
  EXPECT_EQ(guardkit_.Undo().checkpoint, id + 1);
  EXPECT_EQ(DumpKey(HKEY_CURRENT_USER, kTree), after);
  EXPECT_EQ(guardkit_.Undo().checkpoint, id);
  EXPECT_EQ(tree.Get({}, L"v"), Sz(L"1"));
}

}  // namespace
}  // namespace smh::test
