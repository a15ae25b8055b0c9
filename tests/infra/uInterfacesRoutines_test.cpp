#include "infra/uInterfacesRoutines.h"

#include "infra/intf_DebugLog.h"
#include "infra/intf_general.h"
#include "infra/text.h"
#include "support/child_process.h"
#include "support/fake_basekit.h"
#include "support/fake_siblings.h"
#include "support/file_fixture.h"
#include "support/import_patch.h"
#include "support/recording_safeguard.h"
#include "support/test_main.h"

#include <gtest/gtest.h>

namespace smh {
namespace {

using test::ChildProcess;

// The library list lives as long as one test.
class SiblingTest : public testing::Test {
 protected:
  SiblingTest() { StartLibraryList(); }
  ~SiblingTest() override { StopLibraryList(); }
};

using LibraryListTest = SiblingTest;

TEST_F(LibraryListTest, OneNameInAnyCaseIsOneEntry) {
  TLibraryList list;
  EXPECT_EQ(list.IndexOf(L"version.dll"), -1);
  const HMODULE version = list.GetHandle(L"version.dll");
  ASSERT_NE(version, nullptr);
  EXPECT_EQ(list.GetHandle(L"VERSION.dll"), version);
  EXPECT_EQ(list.IndexOf(L"Version.DLL"), 0);
  ASSERT_NE(list.GetHandle(L"shlwapi.dll"), nullptr);
  EXPECT_EQ(list.IndexOf(L"SHLWAPI.DLL"), 1);
}

TEST_F(LibraryListTest, FailedLoadIsNotStored) {
  TLibraryList list;
  EXPECT_EQ(list.Load(L"no such library.dll"), nullptr);
  EXPECT_EQ(list.IndexOf(L"no such library.dll"), -1);
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

TEST_F(SiblingTest, WhatIsNotReplacedComesFromTheRealLibrary) {
  const auto globals = MakeComObject<test::FakeGlobals>();
  test::InstallFakeSibling(L"basekit.dll", IGlobals::kId, globals.Get());
  EXPECT_EQ(GetGlobals(), globals.Get());
  IHelper* const helper = GetHelper();
  EXPECT_TRUE(
      EndsText(L"\\windows", TakeText([&](BoundaryText* text) { return helper->GetWindowsFolder(text); })));
  test::InstallFakeSibling(L"basekit.dll", IGlobals::kId, nullptr);
}

TEST_F(SiblingTest, FailingLibraryIsTriedOnce) {
  InterfaceCache noExport;
  EXPECT_EQ(GetLibraryInterface(noExport, L"version.dll", ISafeguard::kId, 0), nullptr);
  EXPECT_EQ(noExport.state, InterfaceCache::State::kFailed);

  InterfaceCache unknownService;
  EXPECT_EQ(GetLibraryInterface(unknownService, L"guardkit.dll", L"{nobody}", 0), nullptr);
  const auto late = MakeComObject<test::RecordingSafeguard>();
  test::InstallFakeSibling(L"guardkit.dll", L"{nobody}", late.Get());
  EXPECT_EQ(GetLibraryInterface(unknownService, L"guardkit.dll", L"{nobody}", 0), nullptr);
  InterfaceCache fresh;
  EXPECT_EQ(GetLibraryInterface(fresh, L"guardkit.dll", L"{nobody}", 0), late.Get());
  test::InstallFakeSibling(L"guardkit.dll", L"{nobody}", nullptr);
}

// Every getter asks the library and the identifier of its own row.
TEST_F(SiblingTest, GettersAskTheirOwnLibraryAndIdentifier) {
  struct Row {
    const wchar_t* library;
    const wchar_t* id;
    IUnknown* (*get)();
  };
  const Row rows[] = {
      {L"basekit.dll", L"{5C9ABD04-59E8-4686-8E32-FF648BB7FDD5}",
       [] { return static_cast<IUnknown*>(GetHelper()); }},
      {L"basekit.dll", L"{E3B78765-F359-4D65-86A3-5FE2CA92922E}",
       [] { return static_cast<IUnknown*>(GetGlobals()); }},
      {L"basekit.dll", L"{6773075A-4E7A-4292-A6B9-12F24F316C36}",
       [] { return static_cast<IUnknown*>(GetShellHelper()); }},
      {L"basekit.dll", L"{77E19BE1-1240-496E-9650-2D951D7396DF}",
       [] { return static_cast<IUnknown*>(GetShellDialogsHelper()); }},
      {L"raterkit.dll", L"{A90B8362-CEEF-4902-A639-A0125EDD0201}",
       [] { return static_cast<IUnknown*>(GetFileRater()); }},
      {L"guardkit.dll", L"{5C2990D5-37CD-4FE8-8EC4-A23723A7D4F1}",
       [] { return static_cast<IUnknown*>(GetSafeguard()); }},
      {L"prefkit.dll", L"{EFD8173C-C76D-4A9A-87BF-359D2ED08AFD}",
       [] { return static_cast<IUnknown*>(GetSettings()); }},
      {L"tracekit.dll", L"{F7CF8DA8-ADCC-4d0b-BB10-66552FC851A9}",
       [] { return static_cast<IUnknown*>(GetDebugLogService()); }},
  };
  for (const Row& row : rows) {
    // Never called: only its address matters.
    const auto object = MakeComObject<test::FakeFileRater>();
    test::InstallFakeSibling(row.library, row.id, object.Get());
    EXPECT_EQ(row.get(), object.Get()) << row.id;
    test::InstallFakeSibling(row.library, row.id, nullptr);
  }
}

SMH_CHILD(AskForMissingRater) {
  StartLibraryList();
  GetFileRater();
  return 0;
}

// A message box of another process.
struct Box {
  DWORD process = 0;
  HWND window = nullptr;
  std::wstring caption;
  // The longest of its texts, which is longer than those of its buttons.
  std::wstring text;
};

std::wstring TextOf(HWND window) {
  wchar_t text[512];
  return std::wstring(text, static_cast<std::size_t>(GetWindowTextW(window, text, 512)));
}

BOOL CALLBACK TakeLongerText(HWND window, LPARAM parameter) {
  auto& box = *reinterpret_cast<Box*>(parameter);
  std::wstring text = TextOf(window);
  if (text.size() > box.text.size()) box.text = std::move(text);
  return TRUE;
}

BOOL CALLBACK TakeDialog(HWND window, LPARAM parameter) {
  auto& box = *reinterpret_cast<Box*>(parameter);
  DWORD process = 0;
  wchar_t className[16];
  GetWindowThreadProcessId(window, &process);
  GetClassNameW(window, className, 16);
  if (process != box.process || !IsWindowVisible(window) || std::wstring_view(className) != L"#32770")
    return TRUE;
  box.window = window;
  box.caption = TextOf(window);
  EnumChildWindows(window, &TakeLongerText, parameter);
  return FALSE;
}

// Without window after half a minute, or when the process ended.
Box WaitForBox(const ChildProcess& child) {
  Box box{child.Id(), nullptr, {}, {}};
  for (int tries = 0; tries < 600 && box.window == nullptr && !child.WaitFor(50); ++tries) {
    EnumWindows(&TakeDialog, reinterpret_cast<LPARAM>(&box));
  }
  return box;
}

TEST(MissingSiblingTest, BoxNamesTheServiceAndTheProcessEnds) {
  const test::TemporaryFolder folder;
  const std::wstring program = folder.File(L"lonely.exe");
  ASSERT_TRUE(CopyFileW(test::ThisProgram().c_str(), program.c_str(), TRUE));
  ChildProcess child(program, {L"--child=AskForMissingRater"});
  const Box box = WaitForBox(child);
  ASSERT_NE(box.window, nullptr);
  EXPECT_EQ(box.caption, L"Error");
  EXPECT_EQ(
      box.text,
      L"An error occurred while loading library raterkit.dll::File Rater. \r\n\r\nIt may have been removed. "
      L"Please reinstall the application. If the problem persists, contact technical support.");
  PostMessageW(box.window, WM_CLOSE, 0, 0);
  const test::ChildResult result = child.Finish(20'000);
  EXPECT_FALSE(result.timedOut);
  EXPECT_EQ(result.exitCode, 1u) << result.output;
}

struct ShownBox {
  HWND owner;
  std::wstring text;
  std::wstring caption;
  UINT flags;
  bool operator==(const ShownBox&) const = default;
};
std::vector<ShownBox> g_shown;

int WINAPI RecordBox(HWND owner, const wchar_t* text, const wchar_t* caption, UINT flags) {
  g_shown.push_back({owner, text, caption, flags});
  return IDNO;
}

TEST_F(SiblingTest, MessageBoxIsCaptionedByTheProductAndOnTop) {
  const auto globals = MakeComObject<test::FakeGlobals>();
  test::InstallFakeSibling(L"basekit.dll", IGlobals::kId, globals.Get());
  const test::ImportPatch patch("MessageBoxW", &RecordBox);
  g_shown.clear();
  const HWND owner = GetDesktopWindow();
  EXPECT_EQ(ShowMessageBox(L"Really?", MB_YESNO), IDNO);
  EXPECT_EQ(ShowMessageBoxOwned(owner, L"Failed", MB_ICONERROR), IDNO);
  EXPECT_EQ(g_shown, (std::vector<ShownBox>{{nullptr, L"Really?", L"Quillmark Startup Manager", 0x42004},
                                            {owner, L"Failed", L"Quillmark Startup Manager", 0x42010}}));
  test::InstallFakeSibling(L"basekit.dll", IGlobals::kId, nullptr);
}

TEST(AsciiTextTest, OnlyAsciiLettersFold) {
  EXPECT_EQ(AsciiLowerCase(L"@AZ[`az{ \x00C4\x0130"), L"@az[`az{ \x00C4\x0130");
  EXPECT_TRUE(SameAsciiText(L"Run\\Name", L"rUN\\nAME"));
  EXPECT_FALSE(SameAsciiText(L"\x00C4", L"\x00E4"));
  EXPECT_FALSE(SameAsciiText(L"ab", L"abc"));
  EXPECT_TRUE(SameAsciiText(L"", {}));
}

}  // namespace
}  // namespace smh
