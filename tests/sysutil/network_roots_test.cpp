#include "infra/runtime/exceptions.h"
#include "infra/runtime/handle.h"
#include "sysutil/network_roots.h"
#include "tests/support/import_patch.h"
#include "tests/sysutil/file_utils_fixture.h"

#include <atomic>
#include <optional>

namespace smh::test {
namespace {

constexpr wchar_t kDead[] = L"\\\\smh-dead\\share\\a.exe";
constexpr wchar_t kSlow[] = L"\\\\smh-slow\\share\\a.exe";
constexpr wchar_t kFlaky[] = L"\\\\smh-flaky\\share\\";
constexpr wchar_t kLocked[] = L"\\\\smh-locked\\share\\";
constexpr wchar_t kStopped[] = L"\\\\smh-stopped\\share\\";

// A network: one server that does not answer until it is released, one that takes its time, one that goes
// away behind its root, and one that lets nobody in.
class NetworkRootsTest : public FileUtilsTest {
 protected:
  NetworkRootsTest() {
    ResetEvent(s_release.Get());
    s_calls = 0;
    s_isAskedToEnd = false;
  }
  ~NetworkRootsTest() override { SetEvent(s_release.Get()); }

  static DWORD WINAPI Attributes(const wchar_t* path) {
    const std::wstring_view text(path);
    if (!text.starts_with(L"\\\\smh-")) {
      return RealFunction<decltype(GetFileAttributesW)>(L"kernel32.dll", "GetFileAttributesW")(path);
    }
    ++s_calls;
    if (text.starts_with(L"\\\\smh-dead")) WaitForSingleObject(s_release.Get(), 7000);
    if (text.starts_with(L"\\\\smh-slow")) Sleep(1500);
    if (text.starts_with(L"\\\\smh-slow") || text == kFlaky) return FILE_ATTRIBUTE_ARCHIVE;
    // The second look is cancelled.
    if (text == kStopped && s_calls == 2) {
      s_isAskedToEnd = true;
      SetLastError(ERROR_OPERATION_ABORTED);
      return INVALID_FILE_ATTRIBUTES;
    }
    SetLastError(text.starts_with(kLocked) ? DWORD{ERROR_ACCESS_DENIED} : DWORD{ERROR_NETNAME_DELETED});
    return INVALID_FILE_ATTRIBUTES;
  }
  static UINT WINAPI DriveType(const wchar_t* root) { return *root == L'Z' ? DRIVE_REMOTE : DRIVE_FIXED; }

  static inline const ScopedHandle s_release{CreateEventW(nullptr, TRUE, FALSE, nullptr)};
  static inline std::atomic<int> s_calls{0};
  static inline std::atomic<bool> s_isAskedToEnd{false};
  const ImportPatch attributes_{"GetFileAttributesW", Attributes};
  const ImportPatch driveType_{"GetDriveTypeW", DriveType};
};

ULONGLONG TimeOf(const std::function<void()>& work) {
  const ULONGLONG begin = GetTickCount64();
  work();
  return GetTickCount64() - begin;
}

TEST_F(NetworkRootsTest, RootsOfPaths) {
  const std::pair<const wchar_t*, const wchar_t*> rows[] = {
      {L"\\\\Server\\Share\\a\\b.exe", L"\\\\server\\share\\"},
      {L"//server/share/a", L"\\\\server\\share\\"},
      {L"\\\\server\\share", L"\\\\server\\share\\"},
      {L"\\\\server", L"\\\\server\\"},
      {L"\\\\?\\UNC\\server\\share\\a", L"\\\\server\\share\\"},
      {L"Z:\\a", L"Z:\\"},
      {L"\\\\?\\z:\\a", L"Z:\\"},
      {L"C:\\a", L""},
      {L"\\\\?\\C:\\a", L""},
      {L"\\\\.\\pipe\\a", L""},
      {L"a\\b", L""},
      {L"", L""},
  };
  for (const auto& [path, root] : rows) EXPECT_EQ(NetworkRootOf(path), root) << path;
}

TEST_F(NetworkRootsTest, ADeadRootIsWaitedForOnceAPassAndHasOneThread) {
  const std::wstring dead = kDead;
  bool isAskedToEnd = false;
  const auto look = [&] {
    return TimeOf([&] {
      EXPECT_FALSE(IsReachableFile(dead));
      EXPECT_EQ(GetLastError(), DWORD{ERROR_BAD_NETPATH});
    });
  };
  ReadingPass pass([&] { return isAskedToEnd; });
  const ULONGLONG first = look();
  EXPECT_GE(first, 1'900u);
  EXPECT_LT(first, 3'000u);
  EXPECT_LT(TimeOf([&] {
              for (int i = 0; i < 50; ++i) look();
              EXPECT_FALSE(IsReachable(dead));
              EXPECT_FALSE(ReachableStamp(dead).has_value());
            }),
            500u);
  pass.Begin();
  EXPECT_GE(look(), 1'900u);
  EXPECT_EQ(s_calls, 1);
  pass.Begin();
  isAskedToEnd = true;
  EXPECT_LT(TimeOf([&] { EXPECT_THROW(IsReachableFile(dead), EAbort); }), 200u);
  EXPECT_THROW(IsReachableFile(std::wstring(L"C:\\windows\\notepad.exe")), EAbort);
  // Outside of a pass nobody ends it, and what is known holds.
  isAskedToEnd = false;
  SetEvent(s_release.Get());
}

TEST_F(NetworkRootsTest, ASlowRootAnswersAndOneThatFailsBehindItsRootIsMarked) {
  const ReadingPass pass(nullptr);
  EXPECT_TRUE(IsReachableFile(std::wstring(kSlow)));
  EXPECT_TRUE(IsReachable(kSlow));
  EXPECT_EQ(s_calls, 2);
  s_calls = 0;
  EXPECT_TRUE(IsReachable(kFlaky));
  EXPECT_FALSE(IsReachableFile(kFlaky + std::wstring(L"a.exe")));
  EXPECT_EQ(s_calls, 2);
  EXPECT_FALSE(IsReachable(kFlaky));
  EXPECT_EQ(s_calls, 2);
  // It answers, if only to refuse.
  EXPECT_FALSE(IsReachableFile(kLocked + std::wstring(L"a.exe")));
  EXPECT_TRUE(IsReachable(kLocked));
}

TEST_F(NetworkRootsTest, WhatAStopHasCancelledIsNoAnswer) {
  {
    const ReadingPass pass([] { return s_isAskedToEnd.load(); });
    EXPECT_THROW(IsReachable(kStopped), EAbort);
  }
  EXPECT_FALSE(IsReachable(kStopped)) << "asked again";
}

LPTHREAD_START_ROUTINE g_start = nullptr;

HANDLE WINAPI NotedThread(SECURITY_ATTRIBUTES* security, SIZE_T stack, LPTHREAD_START_ROUTINE start,
                          void* argument, DWORD flags, DWORD* id) {
  g_start = start;
  return RealFunction<decltype(CreateThread)>(L"kernel32.dll", "CreateThread")(security, stack, start,
                                                                               argument, flags, id);
}

// The module may be gone before it ends.
TEST_F(FileUtilsTest, TheThreadOfALookRunsNothingOfTheModule) {
  const ImportPatch threads("CreateThread", NotedThread);
  const ReadingPass pass(nullptr);
  IsReachable(L"\\\\smh-none\\share\\");
  HMODULE module = nullptr;
  ASSERT_NE(GetModuleHandleExW(
                GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                reinterpret_cast<const wchar_t*>(g_start), &module),
            FALSE);
  EXPECT_NE(module, GetModuleHandleW(nullptr));
}

}  // namespace
}  // namespace smh::test
