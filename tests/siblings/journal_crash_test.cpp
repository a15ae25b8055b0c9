// Owners that die, disks that fill up, journals that are torn.
#include "siblings/journal_fixture.h"

#include "support/child_process.h"
#include "support/file_fixture.h"
#include "support/import_patch.h"
#include "support/state_dump.h"
#include "support/test_main.h"

#include <atomic>
#include <filesystem>
#include <optional>
#include <thread>

namespace smh::test {
namespace {

constexpr wchar_t kTree[] = L"Software\\SmhJournalCrash";

[[noreturn]] void Die() {
  TerminateProcess(GetCurrentProcess(), 1);
  std::abort();
}

LSTATUS WINAPI DieBeforeSetting(HKEY, const wchar_t*, DWORD, DWORD, const BYTE*, DWORD) {
  Die();
}
LSTATUS WINAPI DieAfterSetting(HKEY key, const wchar_t* name, DWORD reserved, DWORD type, const BYTE* data,
                               DWORD size) {
  RegSetValueExW(key, name, reserved, type, data, size);
  Die();
}

// Changes "v" from "1" to "2" in a checkpoint and dies: "before" or "after" the call, or "open" behind it.
SMH_CHILD(JournalCrash) {
  const Guardkit guardkit;
  guardkit.Begin(L"crash");
  guardkit.Set(HKEY_CURRENT_USER, std::wstring(kTree) + L"\\made", L"first", Sz(L"done"));
  std::optional<ImportPatch> patch;
  if (arguments[0] == L"before") patch.emplace("RegSetValueExW", &DieBeforeSetting, guardkit.Module());
  if (arguments[0] == L"after") patch.emplace("RegSetValueExW", &DieAfterSetting, guardkit.Module());
  guardkit.Set(HKEY_CURRENT_USER, kTree, L"v", Sz(L"2"));
  Die();
}

TEST_F(JournalTest, OwnersDeathAtAnyPointIsTakenBack) {
  using enum StepOutcome;
  const struct {
    const wchar_t* when;
    StepOutcome last;
  } rows[] = {{L"before", kNothing}, {L"after", kUndo}, {L"open", kUndo}};
  for (const auto& row : rows) {
    SCOPED_TRACE(testing::PrintToString(std::wstring(row.when)));
    ClearJournal();
    const RegistryTree tree(kTree);
    tree.Set({}, L"v", Sz(L"1"));
    const std::string before = DumpKey(HKEY_CURRENT_USER, kTree);
    EXPECT_EQ(RunChild(L"JournalCrash", {row.when}).exitCode, 1u);
    const auto interrupted = guardkit_.List(true);
    ASSERT_EQ(interrupted.size(), 1u);
    EXPECT_EQ(interrupted[0].state, CheckpointState::kInterrupted);
    EXPECT_EQ(interrupted[0].title, L"crash");
    EXPECT_EQ(interrupted[0].steps, 3u);
    // The next checkpoint is not held up by it.
    Checkpoint([&] { guardkit_.Set(HKEY_CURRENT_USER, kTree, L"other", Sz(L"1")); });
    EXPECT_EQ(guardkit_.Undo().result, S_OK);
    const UndoAnswer answer = guardkit_.Undo();
    EXPECT_EQ(answer.checkpoint, interrupted[0].id);
    EXPECT_EQ(answer.outcomes, (std::vector{row.last, kUndo, kUndo}));
    EXPECT_EQ(DumpKey(HKEY_CURRENT_USER, kTree), before);
    EXPECT_TRUE(guardkit_.List(true).empty());
  }
}

TEST_F(JournalTest, TornTailLeavesTheStepsBeforeIt) {
  const RegistryTree tree(kTree);
  const std::uint32_t id = Checkpoint([&] {
    guardkit_.Set(HKEY_CURRENT_USER, kTree, L"v", Sz(L"1"));
    guardkit_.Set(HKEY_CURRENT_USER, kTree, L"w", Sz(L"1"));
  });
  const std::wstring file = JournalFolderPath() + L"\\00000001.journal";
  std::string bytes = ReadFileBytes(file);
  // The end and half of the last mark.
  bytes.resize(bytes.size() - 13 - 8);
  WriteFileBytes(file, bytes);
  EXPECT_EQ(guardkit_.List().front().state, CheckpointState::kInterrupted);
  EXPECT_EQ(guardkit_.Undo(id).result, S_OK);
  EXPECT_FALSE(tree.Get({}, L"v"));
  EXPECT_FALSE(tree.Get({}, L"w"));
}

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
