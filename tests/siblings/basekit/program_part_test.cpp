#include "core/contracts/intf_general.h"
#include "infra/runtime/text.h"
#include "siblings/basekit/program_part.h"
#include "siblings/basekit/redirected_twin.h"
#include "tests/siblings/common/sibling_library.h"
#include "tests/support/file_fixture.h"
#include "tests/support/registry_fixture.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

namespace smh::test {
namespace {

// A disk of a test's own, which notes what was looked for.
struct FakeDisk {
  std::set<std::wstring> files;
  std::vector<std::wstring> probes;

  std::wstring ProgramOf(std::wstring_view command) {
    return ProgramPart(command, [this](const std::wstring& path) {
      probes.push_back(path);
      return files.contains(path);
    });
  }
};

TEST(ProgramPartTest, CommandsAndTheFilesThatDecideThem) {
  SetEnvironmentVariableW(L"SMH_TOOLS", L"C:\\My Tools");
  SetEnvironmentVariableW(L"SMH_QUOTED", L"\"C:\\My Tools\"");
  SetEnvironmentVariableW(L"SMH_SHARE", L"\\\\dead\\share");
  const std::set<std::wstring> none;
  const std::set<std::wstring> tools = {L"C:\\My Tools\\a b.exe", L"C:\\My Tools\\a b.exe -x"};
  const std::set<std::wstring> others = {L"C:\\Other.cmd", L"C:\\notes.txt.exe", L"C:\\setup.msi",
                                         L"C:\\later.bat", L"C:\\later on.exe"};
  const std::set<std::wstring> system = {L"C:\\windows\\system32\\cmd.exe",
                                         L"C:\\windows\\system32\\WindowsPowerShell\\v1.0\\powershell.exe"};
  const struct {
    const std::set<std::wstring>& files;
    const wchar_t* command;
    const wchar_t* program;
    bool looksForFiles;
  } rows[] = {
      // A quoted program ends at the next quote.
      {tools, L"\"C:\\My Tools\\a.exe\" -x \"y\"", L"C:\\My Tools\\a.exe", false},
      {tools, L" \t\"C:\\a b.exe\"-x", L"C:\\a b.exe", false},
      {tools, L"\"C:\\a b.exe -x", L"C:\\a b.exe -x", false},
      {tools, L"\"\" x", L"", false},
      {tools, L"\"", L"", false},
      // The first prefix that names a file wins, also one without its extension; what only the shell tries
      // comes behind all that.
      {tools, L"C:\\My Tools\\a b.exe -x -y", L"C:\\My Tools\\a b.exe", true},
      {tools, L"C:\\My Tools\\a\tb.exe", L"C:\\My Tools\\a\tb.exe", true},
      {tools, L"C:\\My Tools\\a b /min", L"C:\\My Tools\\a b", true},
      {others, L"C:\\Other Tools\\x.exe", L"C:\\Other", true},
      {others, L"C:\\notes.txt x.exe y", L"C:\\notes.txt x.exe", true},
      {others, L"C:\\setup helper.exe /x", L"C:\\setup helper.exe", true},
      {others, L"C:\\later on /x", L"C:\\later on", true},
      // References are expanded for the test only.
      {tools, L"%SMH_TOOLS%\\a b.exe -x", L"%SMH_TOOLS%\\a b.exe", true},
      {tools, L"%SMH_QUOTED%\\a b.exe -x", L"%SMH_QUOTED%\\a b.exe", true},
      // A dead server is not waited for, and names without a folder are nobody's file.
      {none, L"\\\\dead\\share\\my app.exe -x", L"\\\\dead\\share\\my app.exe", false},
      {none, L"%SMH_SHARE%\\my app.exe -x", L"%SMH_SHARE%\\my app.exe", false},
      {none, L"//dead/share/app -x", L"//dead/share/app", false},
      {none, L"\\\\?\\UNC\\dead\\share\\app.exe", L"\\\\?\\UNC\\dead\\share\\app.exe", false},
      {none, L"tools\\app -x", L"tools\\app", false},
      // Without a file the extension ends the program.
      {none, L"C:\\My Tools\\gone.exe -x C:\\b.exe", L"C:\\My Tools\\gone.exe", true},
      {none, L"my app.exeter.cmd x", L"my app.exeter.cmd", true},
      // But a program of the system's goes before.
      {system, L"cmd /c x.bat", L"cmd", true},
      {system, L"powershell -File C:\\x.ps1", L"powershell", true},
      {system, L"cmdx /c x.bat", L"cmdx /c x.bat", true},
      {none, L"my app.dll,Entry x", L"my", false},
      {none, L" \t ", L"", false},
      // Stray quotes are dropped.
      {tools, L"C:\\\"My Tools\"\\a b.exe -x", L"C:\\My Tools\\a b.exe", true},
      {tools, L"C:\\My Tools\\a b.exe\" -x", L"C:\\My Tools\\a b.exe", true},
      {none, L"app\" -x", L"app", false},
  };
  for (const auto& row : rows) {
    FakeDisk disk{row.files, {}};
    EXPECT_EQ(disk.ProgramOf(row.command), row.program) << row.command;
    EXPECT_EQ(!disk.probes.empty(), row.looksForFiles) << row.command;
  }
  for (const wchar_t* const name : {L"SMH_TOOLS", L"SMH_QUOTED", L"SMH_SHARE"}) {
    SetEnvironmentVariableW(name, nullptr);
  }
}

TEST(ProgramPartTest, LongCommandsAreTestedInTheirFirstUnitsOnly) {
  std::wstring command = L"C:\\x";
  while (command.size() < 32'000) command += L" \t a";
  FakeDisk disk;
  EXPECT_EQ(disk.ProgramOf(command), L"C:\\x");
  for (const std::wstring& path : disk.probes) EXPECT_LE(path.size(), 260u + 4u);
  // Every blank of a run ends the same prefix, which is tested once.
  EXPECT_EQ(std::ranges::count(disk.probes, L"C:\\x"), 1);

  const std::wstring longest = L"C:\\" + std::wstring(257, L'n');
  FakeDisk exact{{longest, longest + L" b"}, {}};
  EXPECT_EQ(exact.ProgramOf(longest + L" b"), longest);
  EXPECT_EQ(exact.probes.size(), 1u);
}

class RealProgramTest : public testing::Test {
 protected:
  std::wstring ProgramOf(const std::wstring& command) {
    return TakeText([&](BoundaryText* out) { return shell_->GetProgramPart(command.c_str(), out); });
  }

  SiblingLibrary basekit_{L"basekit.dll"};
  IShellHelper* shell_ = basekit_.Service<IShellHelper>();
};

TEST_F(RealProgramTest, FilesAreFoundAndFoldersAreNot) {
  const TemporaryFolder folder;
  const std::wstring file = folder.Write(L"two words\\my app.exe", "");
  folder.MakeFolder(L"two");
  EXPECT_EQ(ProgramOf(file + L" -a b"), file);
  EXPECT_EQ(ProgramOf(folder.File(L"two words\\my app -a b")), folder.File(L"two words\\my app"));
  folder.Write(L"two.exe", "");
  EXPECT_EQ(ProgramOf(file + L" -a b"), folder.File(L"two"));
}

TEST_F(RealProgramTest, ProgramOfTheOtherProgramFilesFolderIsFound) {
  const std::vector<FolderTwin> twins = GatherFolderTwins();
  ASSERT_EQ(twins.size(), HasTwoViews() ? 4u : 0u);
  if (twins.empty()) return;
  // Row 3: the native Program Files folder, and the 32-bit one behind it.
  const std::wstring folder = twins[3].folder + L"smh two words";
  CreateDirectoryW(folder.c_str(), nullptr);
  WriteFileBytes(folder + L"\\app", "");
  EXPECT_EQ(ProgramOf(twins[3].twin + L"smh two words\\app -x"), twins[3].twin + L"smh two words\\app");
  DeleteFileW((folder + L"\\app").c_str());
  RemoveDirectoryW(folder.c_str());
}

TEST(RedirectedTwinTest, FirstRowThatBeginsThePathIsReplaced) {
  const FolderTwin rows[] = {{L"C:\\Windows\\system32\\", L"C:\\Windows\\Sysnative\\"},
                             {L"C:\\P (x86)\\", L"C:\\P\\"},
                             {L"C:\\P\\", L"C:\\P (x86)\\"}};
  EXPECT_EQ(RedirectedTwin(L"c:\\windows\\SYSTEM32\\a.exe", rows), L"C:\\Windows\\Sysnative\\a.exe");
  EXPECT_EQ(RedirectedTwin(L"C:\\P\\C:\\P\\a.exe", rows), L"C:\\P (x86)\\C:\\P\\a.exe");
  EXPECT_EQ(RedirectedTwin(L"C:\\Windows\\system32", rows), L"");
}

}  // namespace
}  // namespace smh::test
