// Threads that leave, disks that fill up. Owners that die have a proof of their own.
#include "tests/siblings/guardkit/changes_fixture.h"

#include <atomic>
#include <thread>

namespace smh::test {
namespace {

using JournalCrash = JournalChanges;

BOOL WINAPI FlushFails(HANDLE) {
  SetLastError(ERROR_WRITE_FAULT);
  return FALSE;
}

TEST_F(JournalCrash, WhatCannotBeWrittenDownIsNotDone) {
  const std::wstring file = folder_.Write(L"file", "content");
  const auto expectRefused = [&](LSTATUS status) {
    EXPECT_EQ(Set({}, L"v", Sz(L"1")), status);
    EXPECT_EQ(Delete(file), status);
    EXPECT_FALSE(tree_.Get({}, L"v"));
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
    EXPECT_EQ(Set({}, L"w", Sz(L"1")), ERROR_SUCCESS);
  });
  EXPECT_EQ(guardkit_.Undo(id).outcomes.size(), 1u);
  EXPECT_FALSE(tree_.Get({}, L"w"));
}

// Ten seconds pass in a moment.
ULONGLONG WINAPI FastClock() {
  static std::atomic<ULONGLONG> now{0};
  return now += 1'000;
}

TEST_F(JournalCrash, OneCheckpointAtATime) {
  const ImportPatch patch("GetTickCount64", &FastClock, guardkit_.Module());
  Checkpoint([&] {
    std::jthread([&] {
      EXPECT_EQ(guardkit_.Begin(), ERROR_LOCK_VIOLATION);
      EXPECT_EQ(Set({}, L"v", Sz(L"1")), ERROR_LOCK_VIOLATION);
      EXPECT_EQ(guardkit_.Undo().result, HRESULT_FROM_WIN32(ERROR_NOT_FOUND));
    }).join();
    Set({}, L"w", Sz(L"1"));
    EXPECT_EQ(guardkit_.List().back().state, CheckpointState::kOpen);
    EXPECT_TRUE(guardkit_.List(true).empty());
    std::jthread([&] {
      const auto list = guardkit_.List();
      EXPECT_EQ(guardkit_.Undo(list.back().id).result, HRESULT_FROM_WIN32(ERROR_BUSY));
    }).join();
    EXPECT_EQ(guardkit_.Undo().result, HRESULT_FROM_WIN32(ERROR_BUSY));
  });
  EXPECT_FALSE(tree_.Get({}, L"v"));
}

TEST_F(JournalCrash, ThreadThatEndsInACheckpointHoldsNobodyUp) {
  std::jthread([&] {
    guardkit_.Begin(L"left open");
    Set({}, L"v", Sz(L"1"));
  }).join();
  EXPECT_EQ(Set({}, L"w", Sz(L"1")), ERROR_SUCCESS);
  const auto list = guardkit_.List();
  ASSERT_EQ(list.size(), 2u);
  EXPECT_EQ(list[0].state, CheckpointState::kInterrupted);
}

}  // namespace
}  // namespace smh::test
