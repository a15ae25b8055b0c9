#include "infra/runtime/text.h"
#include "sysutil/command_line.h"
#include "sysutil/program_file.h"
#include "tests/support/file_fixture.h"
#include "tests/sysutil/file_utils_fixture.h"

namespace smh::test {
namespace {

struct Row {
  std::wstring command;
  std::wstring path;
  std::wstring arguments;
};

TEST_F(FileUtilsTest, MakeCommandLine) {
  const Row rows[] = {
      {L"", L"", L""},
      {L"C:\\a.exe", L"C:\\a.exe", L" \t "},
      {L"C:\\a.exe -x  -y", L"  C:\\a.exe ", L"  -x  -y "},
      {L"\"C:\\a b.exe\" -x", L"C:\\a b.exe", L" -x "},
      {L"\"C:\\a \"\"b\"\".exe\" \"c\"", L"C:\\a \"b\".exe", L"\"c\""},
      {L" -x", L"", L"-x"},
  };
  for (const Row& row : rows) EXPECT_EQ(FileUtils::MakeCommandLine(row.path, row.arguments), row.command);
}

TEST_F(FileUtilsTest, SplitCommandLine) {
  const Row rows[] = {
      {L"   ", L"", L""},
      {L"\"", L"", L""},
      {L"\"C:\\a b\\c.exe\" -x \"y\"", L"C:\\a b\\c.exe", L"-x \"y\""},
      {L"\"C:\\a b\\c.exe\"  \"y\" z", L"C:\\a b\\c.exe", L"y\" z"},
      {L"\"C:\\a b\\c.exe -x", L"C:\\a b\\c.exe -x", L""},
      {L"C:\\a b\\c.exe -x", L"C:\\a b\\c.exe", L"-x"},
      {L"a.exe run A.EXE b.exe", L"a.exe", L"run  b.exe"},
      {L"\"aab\" aaab aaaaab", L"aab", L"a aaa"},
  };
  for (const Row& row : rows) {
    const CommandParts parts = FileUtils::SplitCommandLine(row.command.c_str());
    EXPECT_EQ(parts.path, row.path) << row.command;
    EXPECT_EQ(parts.arguments, row.arguments) << row.command;
  }
}

TEST(ResolveCommandTest, FromCommandToFile) {
  const TemporaryFolder folder;
  const std::wstring tool = folder.Write(L"smh tool.exe", "x");
  const std::wstring unquoted = folder.Write(L"with blank\\inner.exe", "x");
  const ScopedEnvironment path(L"PATH", folder.Path());
  const ScopedEnvironment extensions(L"PATHEXT", L".exe");
  const ScopedEnvironment variable(L"SMH_DIR", folder.Path());
  const StartedFileUtils started;
  const std::wstring native = FileUtils::GetSysnativeDir() + L"smh native.exe";
  WriteFileBytes(native, "x");
  const Row rows[] = {
      {L"\"%SMH_DIR%\\smh tool.exe\"", tool, L""},
      {unquoted + L" -x", unquoted, L"-x"},
      {L"\"smh tool\" -x", tool, L"-x"},
      {L"notepad.exe", FileUtils::GetSystemDir() + L"notepad.exe", L""},
      {L"smhmissing.exe a b", L"smhmissing.exe", L"a b"},
      {L"C:\\missing\\..\\smh.exe a", L"C:\\smh.exe", L"a"},
      // On a 32-bit Windows the two folders are one.
      {L"\"" + FileUtils::GetSystemDir() + L"smh native.exe\" -x", native, L"-x"},
      {L"\"smh native.exe\" -x", native, L"-x"},
  };
  for (const Row& row : rows) {
    const CommandParts parts = ResolveCommand(row.command.c_str());
    EXPECT_EQ(parts.path, row.path) << row.command;
    EXPECT_EQ(parts.arguments, row.arguments) << row.command;
    EXPECT_EQ(ResolveCommandToFile(row.command.c_str()), row.path);
  }
  DeleteFileW(native.c_str());
}

// Until the end of the scope.
class ScopedCurrentFolder {
 public:
  explicit ScopedCurrentFolder(const std::wstring& folder) : old_(*FullPathOf(L".")) {
    SetCurrentDirectoryW(folder.c_str());
  }
  ~ScopedCurrentFolder() { SetCurrentDirectoryW(old_.c_str()); }
  ScopedCurrentFolder(const ScopedCurrentFolder&) = delete;
  ScopedCurrentFolder& operator=(const ScopedCurrentFolder&) = delete;

 private:
  std::wstring old_;
};

TEST(ResolveCommandTest, ExtensionsAreImpliedAndTheCurrentFolderIsNobodys) {
  const TemporaryFolder folder;
  const TemporaryFolder here;
  for (const wchar_t* file : {L"setup.msi", L"setup helper.exe", L"both.exe", L"both.com", L"shell.cmd",
                              L"late.bat", L"late.cmd", L"v1.2.exe", L"in\\deep.exe"}) {
    folder.Write(file, "x");
  }
  for (const wchar_t* file : {L"smh-here.exe", L"in\\smh-here.exe"}) here.Write(file, "x");
  const ScopedEnvironment path(L"PATH", folder.Path());
  const StartedFileUtils started;
  const ScopedCurrentFolder current(here.Path());
  const std::wstring profile = WithoutTrailingBackslash(FileUtils::GetProfileDir());
  const std::wstring own = WriteFileBytes(profile + L"\\smh-own\\a.exe", "x");
  const std::wstring bare = WriteFileBytes(profile + L"\\smh-own.bat", "x");
  const auto in = [&](std::wstring_view name) { return folder.File(name); };
  const Row rows[] = {
      {L"C:\\windows\\notepad /x", L"C:\\windows\\notepad.exe", L"/x"},
      {L"\"C:\\windows\\notepad\" /x", L"C:\\windows\\notepad.exe", L"/x"},
      {L"%windir%\\notepad", L"C:\\windows\\notepad.exe", L""},
      {in(L"setup helper.exe"), in(L"setup helper.exe"), L""},
      {in(L"setup /x"), in(L"setup"), L"/x"},
      {in(L"both /x"), in(L"both.exe"), L"/x"},
      {in(L"shell /x"), in(L"shell.cmd"), L"/x"},
      {in(L"late"), in(L"late.bat"), L""},
      {in(L"v1.2"), in(L"v1.2"), L""},
      {L"in\\deep /x", in(L"in\\deep.exe"), L"/x"},
      {L"in\\smh-here.exe", profile + L"\\in\\smh-here.exe", L""},
      {L".\\in\\deep.exe", profile + L"\\in\\deep.exe", L""},
      {L"smh-own\\a /x", own, L"/x"},
      {L"C:smh-own\\a.exe", own, L""},
      {L"Q:smh-own\\a.exe", L"Q:\\smh-own\\a.exe", L""},
      {L"\\windows\\notepad.exe", L"C:\\windows\\notepad.exe", L""},
      {L"smh-own /x", bare, L"/x"},
      {L"smh-here.exe /x", L"smh-here.exe", L"/x"},
      {L"http://example.org/x.exe", L"http://example.org/x.exe", L""},
      {L"con", L"con", L""},
  };
  for (const Row& row : rows) {
    const CommandParts parts = ResolveCommand(row.command.c_str());
    EXPECT_TRUE(SameText(parts.path, row.path)) << row.command << " gave " << parts.path;
    EXPECT_EQ(parts.arguments, row.arguments) << row.command;
  }
  EXPECT_EQ(ExistingFile(L"smh-here.exe"), L"");
  EXPECT_EQ(ExistingFile(in(L"both")), L"");
  DeleteFileW(own.c_str());
  DeleteFileW(bare.c_str());
  RemoveDirectoryW((profile + L"\\smh-own").c_str());
}

// Whatever stands in the registry: nothing is raised and nothing takes long.
void ExpectHarmless(const std::wstring& command) {
  const ULONGLONG begin = GetTickCount64();
  EXPECT_NO_THROW(ResolveCommand(command.c_str())) << command.substr(0, 20);
  EXPECT_LT(GetTickCount64() - begin, 6000u) << command.substr(0, 20) << " of " << command.size();
}

TEST_F(FileUtilsTest, HostileCommands) {
  const wchar_t* const odd[] = {
      L"",  L"\t\r\n", L"\"\"\"", L"%",          L"%a",  L"..",      L"\\",           L"C:",
      L"*", L"|",      L"con",    L"\\\\?\\C:x", L"a:b", L"Q:\\x.e", L"\xDC00\xD800", L"\\\\smh-no\\x.exe -a",
  };
  for (const wchar_t* const command : odd) ExpectHarmless(command);
  constexpr std::size_t kSize = 524'288;
  for (const wchar_t unit : {L'a', L' ', L'"', L'%', L'.', L'\\', L':', L'*'}) {
    const std::wstring many(kSize, unit);
    ExpectHarmless(many);
    ExpectHarmless(L"\"" + many);
    ExpectHarmless(L"C:\\" + many + L".exe -x");
  }
  // A program part that nearly occurs at every place of the arguments.
  ExpectHarmless(L"\"" + std::wstring(kSize / 3, L'a') + L"b\" " + std::wstring(kSize, L'a'));
}

}  // namespace
}  // namespace smh::test
