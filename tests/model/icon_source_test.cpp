// Icons by a process of our own, which may fault or hang.
#include "infra/runtime/exceptions.h"
#include "model/icon_source.h"
#include "tests/support/file_fixture.h"
#include "tests/support/import_patch.h"

#include <gtest/gtest.h>
#include <shellapi.h>

#include <algorithm>
#include <optional>
#include <utility>
#include <vector>

namespace smh::test {
namespace {

constexpr wchar_t kProgram[] = L"C:\\windows\\regedit.exe";
// A hundred milliseconds for what the system does besides.
constexpr DWORD kAtOnceMs = 250;

std::vector<ScopedHandle> g_started;
DWORD g_flags = 0;

// Counts; with CREATE_SUSPENDED the process never answers.
BOOL WINAPI Start(const wchar_t* file, wchar_t* command, SECURITY_ATTRIBUTES* a, SECURITY_ATTRIBUTES* b,
                  BOOL inherit, DWORD flags, void* environment, const wchar_t* folder, STARTUPINFOW* start,
                  PROCESS_INFORMATION* made) {
  static const auto real = RealFunction<decltype(CreateProcessW)>(L"kernel32.dll", "CreateProcessW");
  if (!real(file, command, a, b, inherit, flags | g_flags, environment, folder, start, made)) return FALSE;
  DuplicateHandle(GetCurrentProcess(), made->hProcess, GetCurrentProcess(), g_started.emplace_back().Put(), 0,
                  FALSE, DUPLICATE_SAME_ACCESS);
  return TRUE;
}

class IconSourceTest : public testing::Test {
 protected:
  IconSourceTest() {
    g_started.clear();
    g_flags = 0;
    EndIdleProgram();
  }

  static void EndIdleProgram() {
    g_idleIconProgram.Stop();
    g_idleIconProgram.Start();
  }
  static bool HaveAllEnded() {
    return std::ranges::all_of(g_started, [](const ScopedHandle& process) {
      return WaitForSingleObject(process.Get(), 1'000) == WAIT_OBJECT_0;
    });
  }
  // The shell's reader of icons faults on it.
  std::wstring Fatal(std::wstring_view name) const { return folder_.Write(name, FaultyIconBytes()); }

  const TemporaryFolder folder_;
  const ImportPatch patch_{"CreateProcessW", &Start};
  IconSource source_{nullptr, [] {}};
};

// As drawn on a grey ground.
std::vector<DWORD> Drawn(HICON icon, int side) {
  std::vector<DWORD> pixels(static_cast<std::size_t>(side * side));
  BITMAPINFO form = {{sizeof(BITMAPINFOHEADER), side, -side, 1, 32, BI_RGB, 0, 0, 0, 0, 0}, {}};
  void* bits = nullptr;
  const HDC context = CreateCompatibleDC(nullptr);
  const HBITMAP bitmap = CreateDIBSection(context, &form, DIB_RGB_COLORS, &bits, nullptr, 0);
  SelectObject(context, bitmap);
  std::fill_n(static_cast<DWORD*>(bits), pixels.size(), 0x808080);
  DrawIconEx(context, 0, 0, icon, side, side, 0, nullptr, DI_NORMAL);
  GdiFlush();
  const auto* const drawn = static_cast<const DWORD*>(bits);
  std::transform(drawn, drawn + pixels.size(), pixels.begin(), [](DWORD pixel) { return pixel & 0xFFFFFF; });
  DeleteDC(context);
  DeleteObject(bitmap);
  return pixels;
}

TEST_F(IconSourceTest, IconsAreThoseOfTheShell) {
  ScopedIcon large;
  ScopedIcon small;
  ASSERT_EQ(ExtractIconExW(kProgram, 0, large.Put(), small.Put(), 1), 2u);
  const IconPair icons = source_.OfFile(kProgram, 0);
  EXPECT_EQ(Drawn(icons.large.Get(), 32), Drawn(large.Get(), 32));
  EXPECT_EQ(Drawn(icons.small.Get(), 16), Drawn(small.Get(), 16));
  EXPECT_GT(std::ranges::count_if(Drawn(icons.large.Get(), 32), [](DWORD at) { return at != 0x808080; }),
            100);
  const std::wstring text = folder_.Write(L"x.txt", "x");
  EXPECT_FALSE(source_.OfFile(text, 0).large);
  const IconPair shown = source_.OfShell(text);
  EXPECT_TRUE(shown.large && shown.small);
  EXPECT_EQ(Drawn(source_.OfEither(text, 0).large.Get(), 32), Drawn(shown.large.Get(), 32));
  EXPECT_EQ(Drawn(source_.OfEither(kProgram, 0).small.Get(), 16), Drawn(small.Get(), 16));
  EXPECT_FALSE(source_.OfFile(folder_.File(L"gone.exe"), 0).large);
  EXPECT_EQ(g_started.size(), 1u);
}

TEST_F(IconSourceTest, AFaultCostsTheIconAndARefusedShortcutNotEvenThat) {
  EXPECT_FALSE(source_.OfFile(Fatal(L"refused.LNK"), 0).large);
  EXPECT_FALSE(source_.OfShell(folder_.File(L"refused.LNK")).large);
  EXPECT_TRUE(g_started.empty()) << "handed to the shell";
  EXPECT_FALSE(source_.OfFile(Fatal(L"icon.exe"), 0).large);
  EXPECT_TRUE(source_.OfFile(kProgram, 0).large);
  EXPECT_EQ(g_started.size(), 2u);
  // One file after the other: the end of it.
  for (int i = 0; i < 20; ++i) source_.OfFile(folder_.File(L"icon.exe"), 0);
  EXPECT_EQ(g_started.size(), 10u);
  EXPECT_TRUE(HaveAllEnded());
}

TEST_F(IconSourceTest, WhatIsAskedAheadIsAnsweredInItsTurn) {
  const std::wstring text = folder_.Write(L"x.txt", "x");
  const std::vector<DWORD> shown = Drawn(source_.OfShell(text).large.Get(), 32);
  const std::vector<DWORD> program = Drawn(source_.OfFile(kProgram, 0).large.Get(), 32);
  ASSERT_NE(shown, program);
  std::optional<IconQuestion> next;
  source_.SetNext([&] { return std::exchange(next, std::nullopt); });
  next = {IconRequest::kOfShell, text};
  EXPECT_EQ(Drawn(source_.OfFile(kProgram, 0).large.Get(), 32), program);
  EXPECT_EQ(Drawn(source_.OfShell(text).large.Get(), 32), shown);
  // Something else is asked then.
  next = {IconRequest::kOfShell, text};
  source_.OfShell(text);
  EXPECT_EQ(Drawn(source_.OfFile(kProgram, 0).large.Get(), 32), program);
  EXPECT_EQ(g_started.size(), 1u);
  // The fault is the file's that was asked for, in its turn or not at all.
  for (const bool isAsked : {true, false}) {
    next = {IconRequest::kOfFile, Fatal(L"icon.exe")};
    EXPECT_TRUE(source_.OfFile(kProgram, 0).large);
    if (isAsked) {
      EXPECT_FALSE(source_.OfFile(folder_.File(L"icon.exe"), 0).large);
    }
    EXPECT_EQ(Drawn(source_.OfShell(text).large.Get(), 32), shown);
  }
  EXPECT_EQ(g_started.size(), 3u);
  int worked = 0;
  {
    const IconSource::Meanwhile work(source_, [&] { ++worked; });
    source_.OfFile(kProgram, 0);
    source_.OfFile(kProgram, 0);
  }
  EXPECT_EQ(worked, 1);
}

TEST_F(IconSourceTest, AnAnswerThatNobodyWaitedForIsNotTheNextSources) {
  const std::wstring text = folder_.Write(L"x.txt", "x");
  const std::vector<DWORD> program = Drawn(source_.OfFile(kProgram, 0).large.Get(), 32);
  {
    IconSource left(nullptr, [] {});
    left.SetNext([&] { return IconQuestion{IconRequest::kOfShell, text}; });
    left.OfFile(kProgram, 0);
  }
  IconSource other(nullptr, [] {});
  EXPECT_EQ(Drawn(other.OfFile(kProgram, 0).large.Get(), 32), program);
}

TEST_F(IconSourceTest, OneProcessServesOneSourceAfterTheOther) {
  for (int i = 0; i < 3; ++i) {
    IconSource source(nullptr, [] {});
    EXPECT_TRUE(source.OfFile(kProgram, 0).large);
    if (i == 1) TerminateProcess(g_started.front().Get(), 0);
  }
  EXPECT_EQ(g_started.size(), 2u);
  EndIdleProgram();
  EXPECT_TRUE(HaveAllEnded());
}

TEST_F(IconSourceTest, AShellThatHangsIsGivenUpAndAStopDoesNotWaitForIt) {
  g_flags = CREATE_SUSPENDED;
  DWORD since = GetTickCount();
  for (int i = 0; i < 3; ++i) EXPECT_FALSE(source_.OfFile(kProgram, 0).large);
  EXPECT_NEAR(static_cast<double>(GetTickCount() - since), 10'000, 1'000) << "two waits, then none";
  EXPECT_EQ(g_started.size(), 2u);
  const ScopedHandle asked(CreateEventW(nullptr, TRUE, TRUE, nullptr));
  IconSource other(asked.Get(), [] { throw EAbort(); });
  since = GetTickCount();
  EXPECT_THROW(other.OfFile(kProgram, 0), EAbort);
  EXPECT_LT(GetTickCount() - since, kAtOnceMs);
  EXPECT_TRUE(HaveAllEnded());
}

}  // namespace
}  // namespace smh::test
