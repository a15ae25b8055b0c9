#include "sysutil/uFileUtils.h"

#include "support/file_fixture.h"
#include "support/registry_fixture.h"
#include "sysutil/file_utils_fixture.h"

#include <algorithm>
#include <thread>

namespace smh {
namespace {

using test::FileUtilsTest;
using test::HasTwoViews;
using test::ScopedEnvironment;
using test::StartedFileUtils;
using TextList = std::vector<std::wstring>;

// In the case in which the system writes it.
std::wstring WindowsFolder() {
  wchar_t folder[MAX_PATH];
  return std::wstring(folder, GetWindowsDirectoryW(folder, MAX_PATH)) + L'\\';
}

std::wstring UpperCase(std::wstring text) {
  CharUpperBuffW(text.data(), static_cast<DWORD>(text.size()));
  return text;
}

TEST_F(FileUtilsTest, EnvironmentValues) {
  const ScopedEnvironment usual(L"SMH_USUAL", L" a value ");
  const ScopedEnvironment longest(L"SMH_LONG", std::wstring(20'000, L'x'));
  const ScopedEnvironment missing(L"SMH_MISSING", std::nullopt);
  EXPECT_EQ(FileUtils::GetEnvironmentValue(L"SMH_USUAL"), L" a value ");
  EXPECT_EQ(FileUtils::GetEnvironmentValue(L"SMH_LONG"), std::wstring(20'000, L'x'));
  EXPECT_EQ(FileUtils::GetEnvironmentValue(L"SMH_MISSING"), L"");
  EXPECT_EQ(FileUtils::GetEnvironmentValue(L""), L"");
}

TEST_F(FileUtilsTest, Folders) {
  const std::wstring windows = WindowsFolder();
  EXPECT_EQ(FileUtils::GetWin16SystemDir(), windows + L"system\\");
  EXPECT_EQ(FileUtils::GetSystemDir(), windows + L"system32\\");
  EXPECT_EQ(FileUtils::GetSysnativeDir(), windows + (HasTwoViews() ? L"Sysnative\\" : L"system32\\"));
  EXPECT_EQ(FileUtils::GetProgramFilesX86Dir(),
            HasTwoViews() ? L"C:\\Program Files (x86)\\" : L"C:\\Program Files\\");
  EXPECT_EQ(FileUtils::GetProgramFilesNativeDir(), L"C:\\Program Files\\");
}

TEST_F(FileUtilsTest, Normalisation) {
  const ScopedEnvironment variable(L"SMH_DIR", L"C:\\some dir");
  struct Row {
    const wchar_t* text;
    const wchar_t* path;
    const wchar_t* folder;
  };
  const Row rows[] = {
      {L"", L"", L""},
      {L"\"\"", L"", L""},
      {L"name.exe", L"name.exe", L"name.exe\\"},
      {L"\"%SMH_DIR%\\x.exe\"", L"C:\\some dir\\x.exe", L"C:\\some dir\\x.exe\\"},
      {L"C:\\a\\.\\b\\..\\c\\", L"C:\\a\\c\\", L"C:\\a\\c\\"},
      {L"C:/a/b", L"C:\\a\\b", L"C:\\a\\b\\"},
      {L"%SMH_NOT_THERE%", L"%SMH_NOT_THERE%", L"%SMH_NOT_THERE%\\"},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(FileUtils::NormalizePath(row.text), row.path);
    EXPECT_EQ(FileUtils::NormalizeDirectory(row.text), row.folder);
  }
}

// What PATH becomes behind the three folders of the system.
TextList EntriesOf(const std::optional<std::wstring>& path) {
  const ScopedEnvironment variable(L"PATH", path);
  const StartedFileUtils started;
  const TextList& list = FileUtils::SearchDirectories();
  const TextList front(list.begin(), list.begin() + 3);
  const std::wstring windows = WindowsFolder();
  EXPECT_EQ(front, (TextList{windows + L"system\\", windows + L"system32\\", windows}));
  return TextList(list.begin() + 3, list.end());
}

TEST(SearchDirectoriesTest, EntriesOfPath) {
  const ScopedEnvironment variable(L"SMH_DIR", L"C:\\from variable");
  EXPECT_EQ(EntriesOf(std::nullopt), TextList());
  EXPECT_EQ(EntriesOf(L"C:\\b;C:\\a\\;C:\\b"), (TextList{L"C:\\b\\", L"C:\\a\\", L"C:\\b\\"}));
  EXPECT_EQ(EntriesOf(L";;"), (TextList{L"", L"", L""}));
  EXPECT_EQ(EntriesOf(L"C:\\a;"), (TextList{L"C:\\a\\", L""}));
  EXPECT_EQ(EntriesOf(L"C:\\with blank;%SMH_DIR%"), (TextList{L"C:\\with blank\\", L"C:\\from variable\\"}));
  EXPECT_EQ(EntriesOf(L"\"C:\\quoted\";\"C:\\semi;colon\";C:\\c"),
            (TextList{L"C:\\quoted\\", L"C:\\semi;colon\\", L"C:\\c\\"}));
  const TextList unclosed = EntriesOf(L"\"C:\\a;C:\\b");
  ASSERT_EQ(unclosed.size(), 2u);
  EXPECT_EQ(unclosed[1], L"C:\\b\\");
}

TEST(SearchDirectoriesTest, OneOccurrenceOfEachSystemFolderMovesToTheFront) {
  const std::wstring windows = WindowsFolder();
  const std::wstring upper = UpperCase(windows);
  EXPECT_EQ(EntriesOf(L"C:\\a;" + upper + L"SYSTEM32;C:\\b;" + upper + L";" + upper + L"SYSTEM\\"),
            (TextList{L"C:\\a\\", L"C:\\b\\"}));
  EXPECT_EQ(EntriesOf(windows + L"system32;C:\\a;" + windows + L"system32"),
            (TextList{L"C:\\a\\", windows + L"system32\\"}));
}

TextList ExtensionsOf(const std::optional<std::wstring>& pathExt) {
  const ScopedEnvironment variable(L"PATHEXT", pathExt);
  const StartedFileUtils started;
  return FileUtils::ExecutableExtensions();
}

TEST(ExecutableExtensionsTest, DefaultsFollowWhatPathExtNames) {
  EXPECT_EQ(ExtensionsOf(L"EXE;.BAT"), (TextList{L".EXE", L".BAT", L".com", L".cmd"}));
  EXPECT_EQ(ExtensionsOf(std::nullopt), (TextList{L".com", L".exe", L".bat", L".cmd"}));
  EXPECT_EQ(ExtensionsOf(L".Cmd;;js"), (TextList{L".Cmd", L".", L".js", L".com", L".exe", L".bat"}));
  EXPECT_EQ(ExtensionsOf(L".x;.x"), (TextList{L".x", L".x", L".com", L".exe", L".bat", L".cmd"}));
}

TEST(FileUtilsCachesTest, EnvironmentIsReadOncePerStart) {
  const ScopedEnvironment path(L"PATH", L"C:\\first");
  const ScopedEnvironment extensions(L"PATHEXT", L".one");
  {
    const StartedFileUtils started;
    EXPECT_EQ(FileUtils::SearchDirectories().back(), L"C:\\first\\");
    EXPECT_EQ(FileUtils::ExecutableExtensions().front(), L".one");
    SetEnvironmentVariableW(L"PATH", L"C:\\second");
    SetEnvironmentVariableW(L"PATHEXT", L".two");
    EXPECT_EQ(FileUtils::SearchDirectories().back(), L"C:\\first\\");
    EXPECT_EQ(FileUtils::ExecutableExtensions().front(), L".one");
  }
  const StartedFileUtils again;
  EXPECT_EQ(FileUtils::SearchDirectories().back(), L"C:\\second\\");
  EXPECT_EQ(FileUtils::ExecutableExtensions().front(), L".two");
}

TEST(FileUtilsCachesTest, ThreadsShareWhatTheFirstOneMade) {
  for (int round = 0; round < 20; ++round) {
    const StartedFileUtils started;
    constexpr std::size_t kThreads = 8;
    const void* seen[kThreads][3] = {};
    std::vector<std::thread> threads;
    for (auto& places : seen) {
      threads.emplace_back([&places] {
        places[0] = &FileUtils::SearchDirectories();
        places[1] = &FileUtils::ExecutableExtensions();
        places[2] = &FileUtils::GetSysnativeDir();
      });
    }
    for (std::thread& thread : threads) thread.join();
    for (const auto& places : seen) ASSERT_TRUE(std::ranges::equal(places, seen[0]));
  }
}

}  // namespace
}  // namespace smh
