#include "basekit/program_part.h"

#include "basekit/redirected_twin.h"
#include "infra/intf_general.h"
#include "infra/text.h"
#include "siblings/sibling_library.h"
#include "support/file_fixture.h"
#include "support/registry_fixture.h"

#include <gtest/gtest.h>
#include <shlobj.h>

#include <algorithm>
#include <set>

namespace smh {
namespace {

// A disk of a test's own, which notes what was looked for.
class FakeDisk {
 public:
  explicit FakeDisk(std::set<std::wstring> files = {}) : files_(std::move(files)) {}

  std::wstring ProgramOf(std::wstring_view command) {
    probes.clear();
    return ProgramPart(command, [this](const std::wstring& path) {
      probes.push_back(path);
      return files_.contains(path);
    });
  }

  std::vector<std::wstring> probes;

 private:
  std::set<std::wstring> files_;
};

TEST(ProgramPartTest, QuotedProgramEndsAtTheNextQuote) {
  FakeDisk disk;
  EXPECT_EQ(disk.ProgramOf(L"\"C:\\My Tools\\a.exe\" -x \"y\""), L"C:\\My Tools\\a.exe");
  EXPECT_EQ(disk.ProgramOf(L" \t\"C:\\a b.exe\"-x"), L"C:\\a b.exe");
  EXPECT_EQ(disk.ProgramOf(L"\"C:\\a b.exe -x"), L"C:\\a b.exe -x");
  EXPECT_EQ(disk.ProgramOf(L"\"\" x"), L"");
  EXPECT_EQ(disk.ProgramOf(L"\""), L"");
  EXPECT_TRUE(disk.probes.empty());
}

TEST(ProgramPartTest, FirstPrefixThatNamesAFileWins) {
  FakeDisk disk({L"C:\\My Tools\\a b.exe", L"C:\\My Tools\\a b.exe -x"});
  EXPECT_EQ(disk.ProgramOf(L"C:\\My Tools\\a b.exe -x -y"), L"C:\\My Tools\\a b.exe");
  EXPECT_EQ(disk.ProgramOf(L"C:\\My Tools\\a b.exe"), L"C:\\My Tools\\a b.exe");
  EXPECT_EQ(disk.ProgramOf(L"C:\\My Tools\\a\tb.exe"), L"C:\\My Tools\\a\tb.exe");

  FakeDisk extensions({L"C:\\My Tools\\a b.exe", L"C:\\Other.cmd", L"C:\\notes.txt.exe"});
  EXPECT_EQ(extensions.ProgramOf(L"C:\\My Tools\\a b /min"), L"C:\\My Tools\\a b");
  EXPECT_EQ(extensions.ProgramOf(L"C:\\Other Tools\\x.exe"), L"C:\\Other");
  EXPECT_EQ(extensions.ProgramOf(L"C:\\notes.txt x.exe y"), L"C:\\notes.txt");

  // Every blank of a run ends the same prefix, which is tested once.
  EXPECT_EQ(disk.ProgramOf(L"C:\\gone.exe  \t -x"), L"C:\\gone.exe");
  EXPECT_EQ(std::ranges::count(disk.probes, L"C:\\gone.exe"), 1);
}

TEST(ProgramPartTest, ReferencesAreExpandedForTheTestOnly) {
  SetEnvironmentVariableW(L"SMH_TOOLS", L"C:\\My Tools");
  SetEnvironmentVariableW(L"SMH_QUOTED", L"\"C:\\My Tools\"");
  FakeDisk disk({L"C:\\My Tools\\my app.exe"});
  EXPECT_EQ(disk.ProgramOf(L"%SMH_TOOLS%\\my app.exe -x"), L"%SMH_TOOLS%\\my app.exe");
  EXPECT_EQ(disk.ProgramOf(L"%SMH_QUOTED%\\my app.exe -x"), L"%SMH_QUOTED%\\my app.exe");
  SetEnvironmentVariableW(L"SMH_TOOLS", nullptr);
  SetEnvironmentVariableW(L"SMH_QUOTED", nullptr);
}

TEST(ProgramPartTest, OnlyPathsOnADriveAreLookedFor) {
  SetEnvironmentVariableW(L"SMH_SHARE", L"\\\\dead\\share");
  FakeDisk disk;
  EXPECT_EQ(disk.ProgramOf(L"\\\\dead\\share\\my app.exe -x"), L"\\\\dead\\share\\my app.exe");
  EXPECT_EQ(disk.ProgramOf(L"%SMH_SHARE%\\my app.exe -x"), L"%SMH_SHARE%\\my app.exe");
  EXPECT_EQ(disk.ProgramOf(L"//dead/share/app -x"), L"//dead/share/app");
  EXPECT_EQ(disk.ProgramOf(L"\\\\?\\UNC\\dead\\share\\app.exe"), L"\\\\?\\UNC\\dead\\share\\app.exe");
  EXPECT_EQ(disk.ProgramOf(L"app -x"), L"app");
  EXPECT_EQ(disk.ProgramOf(L"tools\\app -x"), L"tools\\app");
  EXPECT_TRUE(disk.probes.empty());
  SetEnvironmentVariableW(L"SMH_SHARE", nullptr);
}

TEST(ProgramPartTest, WithoutAFileTheExtensionEndsTheProgram) {
  FakeDisk disk;
  EXPECT_EQ(disk.ProgramOf(L"C:\\My Tools\\gone.exe -x C:\\b.exe"), L"C:\\My Tools\\gone.exe");
  EXPECT_EQ(disk.ProgramOf(L"my app.BAT"), L"my app.BAT");
  EXPECT_EQ(disk.ProgramOf(L"my app.exeter.cmd x"), L"my app.exeter.cmd");
  EXPECT_EQ(disk.ProgramOf(L"my app.dll,Entry x"), L"my");
  EXPECT_EQ(disk.ProgramOf(L"rundll32 shell32.dll,Control_RunDLL"), L"rundll32");
  EXPECT_EQ(disk.ProgramOf(L""), L"");
  EXPECT_EQ(disk.ProgramOf(L" \t "), L"");
}

TEST(ProgramPartTest, StrayQuotesAreDropped) {
  FakeDisk disk({L"C:\\My Tools\\a.exe"});
  EXPECT_EQ(disk.ProgramOf(L"C:\\\"My Tools\"\\a.exe -x"), L"C:\\My Tools\\a.exe");
  EXPECT_EQ(disk.ProgramOf(L"C:\\My Tools\\a.exe\" -x"), L"C:\\My Tools\\a.exe");
  EXPECT_EQ(disk.ProgramOf(L"app\" -x"), L"app");
}

TEST(ProgramPartTest, LongCommandsAreTestedInTheirFirstUnitsOnly) {
  std::wstring command = L"C:\\x";
  while (command.size() < 32'000) command += L" a";
  FakeDisk disk;
  EXPECT_EQ(disk.ProgramOf(command), L"C:\\x");
  EXPECT_FALSE(disk.probes.empty());
  for (const std::wstring& path : disk.probes) EXPECT_LE(path.size(), 260u + 4u);

  const std::wstring longest = L"C:\\" + std::wstring(257, L'n');
  EXPECT_EQ(FakeDisk({longest + L" b"}).ProgramOf(longest + L" b"), longest);
  FakeDisk exact({longest});
  EXPECT_EQ(exact.ProgramOf(longest + L" b"), longest);
  ASSERT_EQ(exact.probes.size(), 1u);
}

TEST(ProgramPartTest, RealFilesAreFoundThroughTheService) {
  const test::SiblingLibrary basekit(L"basekit.dll");
  auto* const shell = basekit.Service<IShellHelper>();
  const auto program = [&](const std::wstring& command) {
    return TakeText([&](BoundaryText* out) { return shell->GetProgramPart(command.c_str(), out); });
  };
  const test::TemporaryFolder folder;
  const std::wstring file = folder.Write(L"two words\\my app.exe", "");
  // A folder of the same name as a shorter prefix is no program.
  folder.MakeFolder(L"two");
  EXPECT_EQ(program(file + L" -a b"), file);
  EXPECT_EQ(program(folder.File(L"two words\\my app -a b")), folder.File(L"two words\\my app"));
  folder.Write(L"two.com", "");
  EXPECT_EQ(program(file + L" -a b"), folder.File(L"two"));
}

TEST(RedirectedTwinTest, FirstRowThatBeginsThePathIsReplaced) {
  const FolderTwin rows[] = {{L"C:\\Windows\\system32\\", L"C:\\Windows\\Sysnative\\"},
                             {L"C:\\P (x86)\\", L"C:\\P\\"},
                             {L"C:\\P\\", L"C:\\P (x86)\\"}};
  EXPECT_EQ(RedirectedTwin(L"c:\\windows\\SYSTEM32\\a.exe", rows), L"C:\\Windows\\Sysnative\\a.exe");
  EXPECT_EQ(RedirectedTwin(L"C:\\P\\C:\\P\\a.exe", rows), L"C:\\P (x86)\\C:\\P\\a.exe");
  EXPECT_EQ(RedirectedTwin(L"C:\\P (x86)\\a.exe", rows), L"C:\\P\\a.exe");
  EXPECT_EQ(RedirectedTwin(L"C:\\Windows\\system32", rows), L"");
}

TEST(RedirectedTwinTest, ProgramOfTheOtherProgramFilesFolderIsFound) {
  const std::vector<FolderTwin> twins = GatherFolderTwins();
  if (!test::HasTwoViews()) {
    EXPECT_TRUE(twins.empty());
    return;
  }
  const test::SiblingLibrary basekit(L"basekit.dll");
  auto* const shell = basekit.Service<IShellHelper>();
  ASSERT_EQ(twins.size(), 4u);
  // Row 3: the native Program Files folder, and the 32-bit one behind it.
  const std::wstring folder = twins[3].folder + L"smh two words";
  CreateDirectoryW(folder.c_str(), nullptr);
  test::WriteFileBytes(folder + L"\\app", "");
  const std::wstring command = twins[3].twin + L"smh two words\\app -x";
  EXPECT_EQ(TakeText([&](BoundaryText* out) { return shell->GetProgramPart(command.c_str(), out); }),
            twins[3].twin + L"smh two words\\app");
  DeleteFileW((folder + L"\\app").c_str());
  RemoveDirectoryW(folder.c_str());
}

}  // namespace
}  // namespace smh
