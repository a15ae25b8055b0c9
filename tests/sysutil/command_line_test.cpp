#include "sysutil/command_file.h"

#include "support/file_fixture.h"
#include "sysutil/file_utils_fixture.h"

#include <vector>

namespace smh {
namespace {

using test::FileUtilsTest;
using test::ScopedEnvironment;
using test::StartedFileUtils;

TEST(MakeCommandLineTest, QuotesAndJoins) {
  struct Row {
    const wchar_t* path;
    const wchar_t* arguments;
    const wchar_t* command;
  };
  const Row rows[] = {
      {L"", L"", L""},
      {L"C:\\a.exe", L"", L"C:\\a.exe"},
      {L"C:\\a.exe", L" \t ", L"C:\\a.exe"},
      {L"  C:\\a.exe ", L"  -x  -y ", L"C:\\a.exe -x  -y"},
      {L"C:\\a b.exe", L" -x ", L"\"C:\\a b.exe\" -x"},
      {L"C:\\a\tb.exe", L"", L"C:\\a\tb.exe"},
      {L"C:\\a \"b\".exe", L"\"c\"", L"\"C:\\a \"\"b\"\".exe\" \"c\""},
      {L"", L"-x", L" -x"},
  };
  for (const Row& row : rows) EXPECT_EQ(FileUtils::MakeCommandLine(row.path, row.arguments), row.command);
}

TEST_F(FileUtilsTest, SplitCommandLine) {
  struct Row {
    const wchar_t* command;
    const wchar_t* path;
    const wchar_t* arguments;
  };
  const Row rows[] = {
      {L"", L"", L""},
      {L"   ", L"", L""},
      {L"\"", L"", L""},
      {L"\"\"", L"", L""},
      {L"\"\" -x", L"", L"-x"},
      {L"a.exe", L"a.exe", L""},
      {L"  a.exe   -x  ", L"a.exe", L"-x"},
      {L"\"C:\\a b\\c.exe\" -x \"y\"", L"C:\\a b\\c.exe", L"-x \"y\""},
      {L"\"C:\\a b\\c.exe\"  \"y\" z", L"C:\\a b\\c.exe", L"y\" z"},
      {L"\"C:\\a b\\c.exe -x", L"C:\\a b\\c.exe -x", L""},
      {L"C:\\a b\\c.exe -x", L"C:\\a b\\c.exe", L"-x"},
      {L"a.exe run A.EXE b.exe", L"a.exe", L"run  b.exe"},
      {L"\"C:\\x\\a.exe\" \"/in:C:\\X\\A.exe\"", L"C:\\x\\a.exe", L"/in:\""},
      {L"x xyx", L"x", L"y"},
      {L"\"aab\" aaab aaaaab", L"aab", L"a aaa"},
      {L"\"aba\" ababa", L"aba", L"ba"},
  };
  for (const Row& row : rows) {
    const CommandParts parts = FileUtils::SplitCommandLine(row.command);
    EXPECT_EQ(parts.path, row.path) << row.command;
    EXPECT_EQ(parts.arguments, row.arguments) << row.command;
  }
}

TEST(ResolveCommandTest, FromCommandToFile) {
  const test::TemporaryFolder folder;
  const std::wstring tool = folder.Write(L"smh tool.exe", "x");
  const std::wstring unquoted = folder.Write(L"with blank\\inner.exe", "x");
  const ScopedEnvironment path(L"PATH", folder.Path());
  const ScopedEnvironment extensions(L"PATHEXT", L".exe");
  const ScopedEnvironment variable(L"SMH_DIR", folder.Path());
  const StartedFileUtils started;
  struct Row {
    std::wstring command;
    std::wstring file;
    std::wstring arguments;
  };
  const Row rows[] = {
      {L"\"" + tool + L"\" -x", tool, L"-x"},
      {L"\"%SMH_DIR%\\smh tool.exe\"", tool, L""},
      {unquoted + L" -x", unquoted, L"-x"},
      {L"\"smh tool\" -x", tool, L"-x"},
      {L"\"smh tool.exe\" -x", tool, L"-x"},
      {L"notepad.exe", FileUtils::GetSystemDir() + L"notepad.exe", L""},
      {L"smhmissing.exe a b", L"smhmissing.exe", L"a b"},
      {L"C:\\missing\\..\\smh.exe a", L"C:\\smh.exe", L"a"},
  };
  for (const Row& row : rows) {
    const CommandParts parts = ResolveCommand(row.command);
    EXPECT_EQ(parts.path, row.file) << row.command;
    EXPECT_EQ(parts.arguments, row.arguments) << row.command;
  }
  EXPECT_EQ(ResolveCommandToFile(L"\"smh tool\" -x"), tool);
}

// On a 32-bit Windows the two folders are one.
TEST_F(FileUtilsTest, ResolvedFileIsMappedToItsTwin) {
  const std::wstring native = FileUtils::GetSysnativeDir() + L"smh native.exe";
  test::WriteFileBytes(native, "x");
  EXPECT_EQ(ResolveCommandToFile(L"\"" + FileUtils::GetSystemDir() + L"smh native.exe\" -x"), native);
  EXPECT_EQ(ResolveCommandToFile(L"\"smh native.exe\" -x"), native);
  DeleteFileW(native.c_str());
}

// Whatever stands in the registry: nothing is raised and nothing takes long.
void ExpectHarmless(const std::wstring& command) {
  const ULONGLONG begin = GetTickCount64();
  EXPECT_NO_THROW(ResolveCommand(command)) << command.substr(0, 20);
  EXPECT_LT(GetTickCount64() - begin, 1500u) << command.substr(0, 20) << " of " << command.size();
}

TEST_F(FileUtilsTest, OddCommands) {
  for (const wchar_t* const command : {L"",
                                       L" ",
                                       L"\t\r\n",
                                       L"\"",
                                       L"\"\"\"",
                                       L"%",
                                       L"%%",
                                       L"%a",
                                       L".",
                                       L"..",
                                       L"\\",
                                       L"C:",
                                       L"C:\\",
                                       L"*",
                                       L"?",
                                       L"|",
                                       L"<>",
                                       L"con",
                                       L"\\\\",
                                       L"\\\\.\\",
                                       L"\\\\?\\C:\\x",
                                       L"\\\\smh-missing\\share\\x.exe -a",
                                       L"Q:\\x.exe",
                                       L"C:\\windows -x",
                                       L"a:b:c",
                                       L"http://x/y.exe",
                                       L"\xD800.exe",
                                       L"\xDC00\xD800 \xFFFF",
                                       L"\x01\x02"}) {
    ExpectHarmless(command);
  }
}

TEST_F(FileUtilsTest, LongCommands) {
  for (const std::size_t size : {32'000u, 524'288u}) {
    for (const wchar_t unit : {L'a', L' ', L'"', L'%', L'.', L'\\', L':', L'*'}) {
      const std::wstring many(size, unit);
      ExpectHarmless(many);
      ExpectHarmless(L"\"" + many);
      ExpectHarmless(L"C:\\" + many + L".exe -x");
    }
    std::wstring words = L"C:\\";
    while (words.size() < size) words += L"a.e %x%";
    ExpectHarmless(words);
    // A program part that nearly occurs at every place of the arguments.
    ExpectHarmless(L"\"" + std::wstring(size / 3, L'a') + L"b\" " + std::wstring(size, L'a'));
  }
}

}  // namespace
}  // namespace smh
