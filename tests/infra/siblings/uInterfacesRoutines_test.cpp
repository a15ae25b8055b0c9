#include "core/contracts/message_box.h"
#include "infra/siblings/uInterfacesRoutines.h"

#include "infra/runtime/format.h"
#include "core/contracts/intf_DebugLog.h"
#include "core/contracts/intf_general.h"
#include "infra/log/uAxDebug.h"
#include "tests/support/child_process.h"
#include "tests/support/fake_siblings.h"
#include "tests/support/file_fixture.h"
#include "tests/support/import_patch.h"
#include "tests/support/recording_safeguard.h"
#include "tests/support/registry_fixture.h"
#include "tests/support/test_main.h"

#include <gtest/gtest.h>

#include <cstdio>

namespace smh {
namespace {

// The library list lives as long as one test.
class SiblingTest : public testing::Test {
 protected:
  SiblingTest() { StartLibraryList(); }
  ~SiblingTest() override { StopLibraryList(); }
};

TEST_F(SiblingTest, LibraryNameInAnyCaseIsOneEntryAndAFailedLoadNone) {
  TLibraryList list;
  const HMODULE version = list.GetHandle(L"version.dll");
  ASSERT_NE(version, nullptr);
  EXPECT_EQ(list.GetHandle(L"VERSION.dll"), version);
  EXPECT_EQ(list.Load(L"no such library.dll"), nullptr);
  EXPECT_EQ(list.IndexOf(L"no such library.dll"), -1);
  ASSERT_NE(list.GetHandle(L"shlwapi.dll"), nullptr);
  EXPECT_EQ(list.IndexOf(L"SHLWAPI.DLL"), 1);
}

TEST_F(SiblingTest, AnsweredServiceIsKept) {
  const auto safeguard = MakeComObject<test::RecordingSafeguard>();
  test::InstallFakeSibling(L"guardkit.dll", ISafeguard::kId, safeguard.Get());
  EXPECT_EQ(GetSafeguard(), safeguard.Get());
  const auto other = MakeComObject<test::RecordingSafeguard>();
  test::InstallFakeSibling(L"guardkit.dll", ISafeguard::kId, other.Get());
  EXPECT_EQ(GetSafeguard(), safeguard.Get());
  StopLibraryList();
  StartLibraryList();
  EXPECT_EQ(GetSafeguard(), other.Get());
  test::InstallFakeSibling(L"guardkit.dll", ISafeguard::kId, nullptr);
}

TEST_F(SiblingTest, FailingLibraryIsTriedOnce) {
  InterfaceCache failed;
  EXPECT_EQ(GetLibraryInterface(failed, L"guardkit.dll", L"{nobody}", 0), nullptr);
  const auto late = MakeComObject<test::RecordingSafeguard>();
  test::InstallFakeSibling(L"guardkit.dll", L"{nobody}", late.Get());
  EXPECT_EQ(GetLibraryInterface(failed, L"guardkit.dll", L"{nobody}", 0), nullptr);
  InterfaceCache fresh;
  EXPECT_EQ(GetLibraryInterface(fresh, L"guardkit.dll", L"{nobody}", 0), late.Get());
  InterfaceCache noExport;
  EXPECT_EQ(GetLibraryInterface(noExport, L"version.dll", L"{nobody}", 0), nullptr);
  test::InstallFakeSibling(L"guardkit.dll", L"{nobody}", nullptr);
}

// Says what would be shown.
int WINAPI PrintBox(HWND, const wchar_t* text, const wchar_t* caption, UINT) {
  std::printf("%ls: %ls", caption, text);
  return IDOK;
}

SMH_CHILD(AskForMissingRater) {
  const test::ImportPatch patch("MessageBoxW", &PrintBox);
  StartLibraryList();
  GetFileRater();
  return 0;
}

TEST(MissingSiblingTest, BoxNamesTheServiceAndTheProcessEnds) {
  const test::TemporaryFolder folder;
  const std::wstring program = folder.File(L"lonely.exe");
  ASSERT_TRUE(CopyFileW(test::ThisProgram().c_str(), program.c_str(), TRUE));
  const test::ChildResult result = test::RunProgram(program, {L"--child=AskForMissingRater"});
  EXPECT_EQ(result.exitCode, 1u);
  EXPECT_EQ(
      result.output,
      "Error: An error occurred while loading library raterkit.dll::File Rater. \r\r\n\r\r\nIt may have "
      "been removed. Please reinstall the application. If the problem persists, contact technical "
      "support.");
}

std::wstring g_shown;

int WINAPI RecordBox(HWND owner, const wchar_t* text, const wchar_t* caption, UINT flags) {
  const wchar_t* const place = owner == nullptr ? L"" : L" owned";
  g_shown += Format(L"%s: %s %d%s\n", caption, text, flags, place);
  return IDNO;
}

TEST_F(SiblingTest, MessageBoxIsCaptionedByTheProductAndOnTop) {
  const test::ImportPatch patch("MessageBoxW", &RecordBox);
  g_shown.clear();
  EXPECT_EQ(ShowMessageBox(L"Really?", MB_YESNO), IDNO);
  EXPECT_EQ(ShowMessageBoxOwned(GetDesktopWindow(), L"Failed", MB_ICONERROR), IDNO);
  EXPECT_EQ(g_shown, Format(L"Quillmark Startup Manager: Really? %d\n"
                            L"Quillmark Startup Manager: Failed %d owned\n",
                            0x42004, 0x42010));
}

TEST(AsciiTextTest, OnlyAsciiLettersFold) {
  EXPECT_EQ(AsciiLowerCase(L"@AZ[`az{ \x00C4\x0130"), L"@az[`az{ \x00C4\x0130");
  EXPECT_FALSE(SameAsciiText(L"\x00C4", L"\x00E4"));
}

constexpr wchar_t kSettings[] = L"Software\\Quillmark\\DebugMode";

SMH_CHILD(DebugDecision) {
  g_debugMode.Start();
  const bool decided = IsDebugMode();
  // What was decided at the start holds.
  SetDebugModeSetting(!decided);
  return IsDebugMode() == decided ? decided : 2;
}

struct DebugCase {
  bool library;
  std::optional<test::RawValue> setting;
  std::vector<std::wstring> arguments;
  DWORD expected;
};

TEST(DebugDecisionTest, LibraryThenRegistryThenFirstArgument) {
  const test::RawValue odd{REG_DWORD, {std::byte{1}}};
  const DebugCase cases[] = {
      {false, test::Dword(1), {L"-debug"}, 0},
      {true, std::nullopt, {}, 0},
      {true, test::Dword(1), {}, 1},
      {true, test::Dword(2), {}, 0},
      {true, test::Sz(L"1"), {}, 0},
      {true, odd, {}, 0},
      {true, std::nullopt, {L"-debug"}, 1},
      {true, test::Dword(0), {L"-DeBuG"}, 1},
      {true, std::nullopt, {L"x", L"-debug"}, 0},
      {true, std::nullopt, {L"-debugger"}, 0},
  };
  const test::SavedKey saved(HKEY_CURRENT_USER, kSettings);
  const test::TemporaryFolder folder;
  const std::wstring program = folder.File(L"host.exe");
  ASSERT_TRUE(CopyFileW(test::ThisProgram().c_str(), program.c_str(), TRUE));
  const std::wstring library = folder.File(L"tracekit.dll");
  for (const DebugCase& row : cases) {
    DeleteFileW(library.c_str());
    if (row.library) folder.Write(L"tracekit.dll", "only its presence counts");
    test::DeleteKeyTree(HKEY_CURRENT_USER, kSettings);
    if (row.setting) test::SetValue(HKEY_CURRENT_USER, kSettings, L"DebugMode", *row.setting);
    std::vector<std::wstring> arguments = row.arguments;
    arguments.push_back(L"--child=DebugDecision");
    const test::ChildResult result = test::RunProgram(program, arguments);
    EXPECT_EQ(result.exitCode, row.expected) << "case " << &row - cases << ": " << result.output;
    EXPECT_EQ(test::GetValue(HKEY_CURRENT_USER, kSettings, L"DebugMode"), test::Dword(1 - row.expected));
  }
}

}  // namespace
}  // namespace smh
