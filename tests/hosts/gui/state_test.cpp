// Saving the state of all entries, and comparing with it.
#include "hosts/gui/resource.h"
#include "tests/hosts/gui/gui_program.h"
#include "tests/support/file_fixture.h"
#include "tests/support/registry_fixture.h"
#include "tests/support/waiting.h"

#include <gtest/gtest.h>

namespace smh::test {

namespace {

// Answers the dialog that asks for a file.
void Answer(const GuiProgram& gui, const std::wstring& file) {
  const HWND dialog = gui.WaitForDialog();
  ASSERT_NE(dialog, nullptr);
  // The field for the file name has one of these numbers, depending on the look of the dialog.
  for (const int field : {0x47C, 0x480}) {
    if (const HWND edit = GetDlgItem(dialog, field)) {
      SendMessageW(edit, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(file.c_str()));
    }
  }
  PostMessageW(dialog, WM_COMMAND, IDOK, 0);
  WaitUntil([&] { return !IsWindow(dialog); });
}

std::wstring StatusOf(const GuiProgram& gui, const wchar_t* name) {
  const int row = gui.RowOf(IDC_ENTRIES, name);
  return row < 0 ? std::wstring() : gui.Cell(IDC_ENTRIES, row, 1);
}

TEST(StateTest, ShowsWhatDiffersFromASavedState) {
  const SavedKey saved(HKEY_CURRENT_USER, kRunKey);
  const TemporaryFolder folder;
  const std::wstring file = folder.File(L"state.json");
  const GuiProgram gui(GuiProgram::Look::kFresh);
  const int usual = gui.Count(IDC_ENTRIES);
  gui.Command(CMD_SAVE_STATE);
  Answer(gui, file);
  ASSERT_TRUE(WaitUntil([&] { return gui.Status(0).starts_with(L"Saved the state of "); })) << gui.Status(0);
  gui.WaitUntilRead();
  EXPECT_EQ(gui.Count(IDC_ENTRIES), usual);
  RegDeleteKeyValueW(HKEY_CURRENT_USER, kRunKey.c_str(), L"Office Sync");
  SetValue(HKEY_CURRENT_USER, kRunKey, L"Newcomer", Sz(L"C:\\Samples\\plain.exe new"));
  SetValue(HKEY_CURRENT_USER, kRunKey, L"Inkwell", Sz(L"C:\\Samples\\plain.exe other"));
  gui.Command(CMD_COMPARE_STATE);
  Answer(gui, file);
  ASSERT_TRUE(WaitUntil([&] { return StatusOf(gui, L"Newcomer").starts_with(L"Added: On"); }, 60'000));
  EXPECT_TRUE(WaitUntil([&] { return gui.Count(IDC_ENTRIES) == 3; })) << gui.Count(IDC_ENTRIES);
  gui.Screenshot(L"startupmanager-compare");
  EXPECT_TRUE(StatusOf(gui, L"Inkwell").starts_with(L"Changed: On")) << StatusOf(gui, L"Inkwell");
  gui.Select(IDC_ENTRIES, {gui.RowOf(IDC_ENTRIES, L"Inkwell")});
  EXPECT_TRUE(WaitUntil([&] { return !gui.Detail(L"Command before").empty(); }));
  const int gone = gui.RowOf(IDC_ENTRIES, L"Office Sync");
  ASSERT_GE(gone, 0);
  EXPECT_EQ(gui.Cell(IDC_ENTRIES, gone, 1), L"Removed");
  gui.Select(IDC_ENTRIES, {gone});
  EXPECT_TRUE(WaitUntil(
      [&] { return !gui.CanRun(CMD_DELETE) && !gui.CanRun(CMD_DISABLE) && !gui.CanRun(CMD_MOVE); }));
  // Esc on the bar ends it.
  PostMessageW(GetDlgItem(gui.Control(IDC_COMPARE_BAR), CMD_STOP_COMPARING), WM_KEYDOWN, VK_ESCAPE, 0);
  EXPECT_TRUE(WaitUntil([&] { return gui.Count(IDC_ENTRIES) == usual; }, 60'000));
  EXPECT_EQ(gui.RowOf(IDC_ENTRIES, L"Office Sync"), -1);
  EXPECT_FALSE(IsWindowVisible(gui.Control(IDC_COMPARE_BAR)));
}

TEST(StateTest, AForeignFileIsRefusedAndNothingChanges) {
  const TemporaryFolder folder;
  const std::wstring file = folder.Write(L"foreign.json", R"({"snapshotVersion": 1, "entries": 7})");
  const GuiProgram gui(GuiProgram::Look::kFresh);
  const auto before = gui.Column(IDC_ENTRIES, 1);
  gui.Command(CMD_COMPARE_STATE);
  Answer(gui, file);
  const HWND box = gui.WaitForDialog();
  ASSERT_NE(box, nullptr);
  wchar_t text[512] = L"";
  SendMessageW(GetDlgItem(box, IDC_PROMPT), WM_GETTEXT, ARRAYSIZE(text), reinterpret_cast<LPARAM>(text));
  EXPECT_NE(std::wstring(text).find(L"is no snapshot that this program can use"), std::wstring::npos) << text;
  PostMessageW(box, WM_COMMAND, IDOK, 0);
  EXPECT_TRUE(WaitUntil([&] { return !IsWindow(box); }));
  EXPECT_EQ(gui.Column(IDC_ENTRIES, 1), before);
  EXPECT_FALSE(IsWindowVisible(gui.Control(IDC_COMPARE_BAR)));
}

}  // namespace
}  // namespace smh::test
