// Commands in the form in which a shortcut holds them, and those that none can hold.
#include "locations/folders/shortcut_command.h"
#include "model/change_refused.h"
#include "sysutil/uFileUtils.h"
#include "sysutil/version/uWinVersionInfo.h"
#include "tests/locations/folders/folder_fixture.h"

#include <gtest/gtest.h>

#include <string>

namespace smh::test {
namespace {

class ShortcutCommandTest : public FolderTest {
 protected:
  ShortcutCommandTest() {
    SetEnvironmentVariableW(L"SmhTool", Folder().File(L"tool.exe").c_str());
    SetEnvironmentVariableW(L"SmhMore", (Program() + L" /more").c_str());
    Folder().Write(L"tool.exe", "x");
    Folder().Write(L"two words.exe", "x");
  }
  ~ShortcutCommandTest() override {
    SetEnvironmentVariableW(L"SmhTool", nullptr);
    SetEnvironmentVariableW(L"SmhMore", nullptr);
  }

  // "target|arguments", or the reason of the refusal.
  static std::wstring Outcome(const std::wstring& command) {
    constexpr std::wstring_view kRefused = L"A shortcut cannot hold this command: ";
    try {
      const ShortcutCommand made = CommandForShortcut(command);
      return made.target + L'|' + made.arguments;
    } catch (const EChangeRefused& refused) {
      EXPECT_EQ(refused.Code(), DWORD{ERROR_NOT_SUPPORTED});
      EXPECT_TRUE(refused.Message().starts_with(kRefused)) << refused.Message();
      return refused.Message().substr(kRefused.size());
    }
  }

  std::wstring In(const wchar_t* name) const { return Folder().File(name); }
};

TEST_F(ShortcutCommandTest, TheArgumentsAreTheRawTail) {
  const std::wstring tool = In(L"tool.exe");
  const std::wstring two = In(L"two words.exe");
  const struct {
    std::wstring command;
    std::wstring outcome;
  } cases[] = {
      {tool, tool + L'|'},
      {L" \t" + tool + L" \t a  b ", tool + L"|a  b "},
      {L'"' + tool + L"\" \"two three\"", tool + L"|\"two three\""},
      {tool + L" \"\" " + tool + L" \"" + tool + L'"', tool + L"|\"\" " + tool + L" \"" + tool + L'"'},
      {two + L" \\\"x\\\\\"", two + L"|\\\"x\\\\\""},
      {L"%SmhTool% %SmhTool%", tool + L"|%SmhTool%"},
      {L"\"%smhtool%\"\t/x", tool + L"|/x"},
      {In(L"tool") + L" /x", tool + L"|/x"},
      {In(L"sub\\..\\tool.exe"), tool + L'|'},
      {L"Q:\\gone\\app /c " + tool, L"Q:\\gone\\app|/c " + tool},
      {L"Q:\\gone folder\\app.exe /c " + tool, L"Q:\\gone folder\\app.exe|/c " + tool},
      {L"Q:/gone/app.exe /x", L"Q:\\gone\\app.exe|/x"},
      {L"\"Q:\\gone app\\a%b.exe\" /x", L"Q:\\gone app\\a%b.exe|/x"},
      {L"\\\\server\\share\\a b.exe /x", L"\\\\server\\share\\a b.exe|/x"},
      {L"Q:\\" + std::wstring(252, L'a') + L".exe", L"Q:\\" + std::wstring(252, L'a') + L".exe|"},
  };
  for (const auto& row : cases) EXPECT_EQ(Outcome(row.command), row.outcome) << row.command;
}

TEST_F(ShortcutCommandTest, WhatNoShortcutHoldsIsRefusedWithItsReason) {
  const std::wstring tool = In(L"tool.exe");
  const struct {
    std::wstring command;
    const wchar_t* reason;
  } cases[] = {
      {L"", L"it names no program."},
      {L"\"\" /x", L"it names no program."},
      {L"\" \"", L"it names no program."},
      {L"   ", L"it names no program."},
      {L'"' + tool, L"its quotes are not closed."},
      {L'"' + tool + L"\"/x", L"its program ends in the middle of a word."},
      {L"C:\\\"two words\"\\a.exe /x", L"there are quotes inside its program."},
      {L"http://example.org/x", L"it is a URL."},
      {L"\"mailto:someone@example.org\"", L"it is a URL."},
      {L"shell:startup", L"it is a URL."},
      {L"folder\\tool.exe", L"its path is relative."},
      {L".\\tool.exe /x", L"its path is relative."},
      {L"\"..\\tool.exe\" a", L"its path is relative."},
      {L"C:tool.exe", L"its path is relative."},
      {L"\\Windows\\notepad.exe", L"its path is relative."},
      {L"\\\\?\\C:\\Windows\\notepad.exe", L"the shell does not know its kind of path."},
      {L"C:\\nul /x", L"the shell does not know its kind of path."},
      {L"%SmhUnknown%\\tool.exe", L"it names an unknown variable."},
      {L"%SmhUnknown%", L"it names an unknown variable."},
      {L"%SmhMore% /x", L"its variable holds more than the path of a program."},
      {L"no-such-program-anywhere /x", L"its program is not found."},
      {L"Q:\\" + std::wstring(253, L'a') + L".exe", L"the path of its program is too long."},
      {tool + L' ' + std::wstring(32'767, L'a'), L"it is too long."},
      {tool + std::wstring(L"\0 /x", 4), L"it holds a NUL."},
  };
  for (const auto& row : cases) EXPECT_EQ(Outcome(row.command), row.reason) << row.command.substr(0, 80);
}

TEST_F(ShortcutCommandTest, TheLongestCommandFitsWithTheQuotesOfItsProgram) {
  const std::wstring tool = In(L"tool.exe");
  const std::size_t room = 32'766 - tool.size() - 3;
  EXPECT_EQ(Outcome(tool + L' ' + std::wstring(room, L'a')), tool + L'|' + std::wstring(room, L'a'));
  EXPECT_EQ(Outcome(tool + L' ' + std::wstring(room + 1, L'a')), L"it is too long.");
}

TEST_F(ShortcutCommandTest, ABareNameIsSearchedFor) {
  const std::wstring system = FileUtils::GetSystemDir();
  EXPECT_EQ(Outcome(L"rundll32.exe shell32.dll,Control_RunDLL"),
            system + L"rundll32.exe|shell32.dll,Control_RunDLL");
  EXPECT_EQ(Outcome(L"cmd /c \"echo \"x\"\""), system + L"cmd.exe|/c \"echo \"x\"\"");
}

TEST_F(ShortcutCommandTest, FilesAreNamedAsA64BitProcessSeesThem) {
  if (!WinVersionInfo::IsWow64()) GTEST_SKIP() << "one system folder";
  const std::wstring system = FileUtils::GetSystemDir();
  const std::wstring name = L"smh-twin.exe";
  EXPECT_EQ(Outcome(FileUtils::GetSysnativeDir() + L"cmd.exe /x"), system + L"cmd.exe|/x");
  EXPECT_EQ(Outcome(system + L"cmd.exe /x"), system + L"cmd.exe|/x") << "both twins are there";
  EXPECT_EQ(Outcome(system + name + L" /x"), system + name + L"|/x") << "none is there";
  WriteFileBytes(system + name, "x");
  EXPECT_EQ(Outcome(system + name + L" /x"), L"C:\\windows\\SysWOW64\\" + name + L"|/x");
  EXPECT_EQ(Outcome(name), L"C:\\windows\\SysWOW64\\" + name + L'|');
  DeleteFileW((system + name).c_str());
  EXPECT_EQ(Outcome(L"\"%ProgramFiles%\\gone\\a.exe\""), L"C:\\Program Files\\gone\\a.exe|");
}

}  // namespace
}  // namespace smh::test
