// What the list and the details let read of the entries, and where the list stands.
#include "hosts/gui/resource.h"
#include "tests/hosts/gui/gui_program.h"
#include "tests/support/registry_fixture.h"
#include "tests/support/waiting.h"

#include <gtest/gtest.h>
#include <richedit.h>

#include <algorithm>

namespace smh::test {

namespace {

class ListTest : public testing::Test {
 protected:
  int Top() const { return static_cast<int>(SendMessageW(list, LVM_GETTOPINDEX, 0, 0)); }
  void ScrollDown() const {
    SendMessageW(list, LVM_SCROLL, 0, 120);
    EXPECT_GT(Top(), 0);
  }
  void Click(HWND control) const {
    SendMessageW(control, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(5, 5));
    SendMessageW(control, WM_LBUTTONUP, 0, MAKELPARAM(5, 5));
  }

  const SavedKey saved_{HKEY_CURRENT_USER, kRunKey};
  const GuiProgram gui{GuiProgram::Look::kFresh};
  const HWND list = gui.Control(IDC_ENTRIES);
};

TEST_F(ListTest, ShowsTheFirstRowsOfWhatWasAskedFor) {
  SetWindowPos(gui.Window(), nullptr, 0, 0, 800, 520, SWP_NOZORDER);
  EXPECT_EQ(Top(), 0);
  const int count = gui.Count(IDC_ENTRIES);
  const auto add = [&](const std::wstring& name, int more) {
    SetValue(HKEY_CURRENT_USER, kRunKey, name, Sz(L"C:\\Samples\\plain.exe new"));
    EXPECT_TRUE(WaitUntil([&] { return gui.Count(IDC_ENTRIES) == count + more; }));
  };
  add(L"Aaa Newcomer", 1);
  EXPECT_EQ(Top(), 0) << "a list at its top shows what comes in before its first row";
  ScrollDown();
  const std::wstring first = gui.Cell(IDC_ENTRIES, Top(), 0);
  add(L"Aab Newcomer", 2);
  EXPECT_EQ(gui.Cell(IDC_ENTRIES, Top(), 0), first) << "any other one keeps its place";
  gui.Search(L"e");
  EXPECT_EQ(Top(), 0);
  ScrollDown();
  gui.Search(L"");
  EXPECT_EQ(Top(), 0);
  for (const int column : {0, 1}) {
    ScrollDown();
    gui.ClickHeader(column);
    EXPECT_TRUE(WaitUntil([&] { return Top() == 0; })) << column;
  }
}

TEST_F(ListTest, TheDetailsShowAWholeCommand) {
  const std::wstring program = L"C:\\Samples\\plain.exe";
  std::wstring arguments;
  for (int i = 0; i < 60; ++i) arguments += L" --word" + std::to_wstring(i);
  const std::wstring command = program + std::wstring(300, L' ') + arguments;
  SetValue(HKEY_CURRENT_USER, kRunKey, L"Padded", Sz(command));
  ASSERT_TRUE(WaitUntil([&] { return gui.RowOf(IDC_ENTRIES, L"Padded") >= 0; }));
  gui.Select(IDC_ENTRIES, {gui.RowOf(IDC_ENTRIES, L"Padded")});
  const std::wstring shown = program + L"\u00B7\u00D7301" + arguments.substr(1);
  EXPECT_TRUE(WaitUntil([&] { return gui.Detail(L"Command") == shown; })) << gui.Detail(L"Command");
  EXPECT_TRUE(gui.Cell(IDC_ENTRIES, gui.RowOf(IDC_ENTRIES, L"Padded"), 4).starts_with(shown.substr(0, 60)));
  const HWND details = gui.Control(IDC_DETAILS);
  EXPECT_EQ(GetWindowLongW(details, GWL_STYLE) & WS_HSCROLL, 0);
  const std::wstring before = gui.Detail(L"Stored as");
  EXPECT_FALSE(before.empty());
  // The command takes three lines at least, and what is below it one each.
  EXPECT_TRUE(WaitUntil([&] { return !gui.Detail(L"SHA-256").empty(); }));
  const auto lines = [&] { return SendMessageW(details, EM_GETLINECOUNT, 0, 0); };
  const LRESULT wrapped = lines();
  SetWindowPos(gui.Window(), nullptr, 0, 0, 700, 560, SWP_NOZORDER);
  EXPECT_GT(lines(), wrapped);
  gui.Screenshot(L"startupmanager-padded-command");

  Click(details);
  for (const UINT each : {CMD_SELECT_ALL, CMD_COPY}) gui.Command(each);
  const std::wstring line = L"\r\nCommand\t" + command + L"\r\n";
  EXPECT_TRUE(WaitUntil([&] { return ClipboardText().find(line) != std::wstring::npos; })) << ClipboardText();
  EXPECT_NE(SendMessageW(details, EM_GETSEL, 0, 0), 0);
}

TEST_F(ListTest, CopiesWhileAnotherProgramLooksAtTheClipboard) {
  gui.Select(IDC_ENTRIES, {gui.RowOf(IDC_ENTRIES, L"Aurora Mixer")});
  ASSERT_TRUE(OpenClipboard(nullptr));
  EmptyClipboard();
  PostMessageW(gui.Window(), WM_COMMAND, CMD_COPY, 0);
  Sleep(100);
  CloseClipboard();
  EXPECT_TRUE(WaitUntil([] { return ClipboardText().starts_with(L"Aurora Mixer"); })) << ClipboardText();
}

TEST_F(ListTest, ATipShowsWhatACellHasNoRoomFor) {
  // Behind a jump of the pointer the place that it left can be told once more, so that it has to be moved
  // again.
  const auto tipAt = [&](int row, int column, const std::wstring& text) {
    bool isShown = false;
    for (int moves = 0; !isShown && moves < 10; ++moves) {
      gui.PointAt(IDC_ENTRIES, row, column);
      isShown = WaitUntil([&] { return gui.TipText() == text; }, 2'000);
    }
    return isShown;
  };
  const int row = gui.RowOf(IDC_ENTRIES, L"Aurora Mixer");
  SendMessageW(list, LVM_ENSUREVISIBLE, static_cast<WPARAM>(row), FALSE);
  for (const int column : {2, 0}) {
    SendMessageW(list, LVM_SETCOLUMNWIDTH, static_cast<WPARAM>(column), 60);
    EXPECT_TRUE(tipAt(row, column, gui.Cell(IDC_ENTRIES, row, column))) << gui.TipText();
  }
  gui.Screenshot(L"startupmanager-tip");
  SendMessageW(list, LVM_SETCOLUMNWIDTH, 0, 300);
  EXPECT_TRUE(tipAt(row + 1, 0, L"")) << gui.TipText();

  // The mouse rests, and the entry changes below it.
  const std::wstring program = L"C:\\Samples\\plain.exe ";
  SetValue(HKEY_CURRENT_USER, kRunKey, L"Resting", Sz(program + L"before"));
  ASSERT_TRUE(WaitUntil([&] { return gui.RowOf(IDC_ENTRIES, L"Resting") >= 0; }));
  const int resting = gui.RowOf(IDC_ENTRIES, L"Resting");
  SendMessageW(list, LVM_ENSUREVISIBLE, static_cast<WPARAM>(resting), FALSE);
  SendMessageW(list, LVM_SETCOLUMNWIDTH, 4, 60);
  EXPECT_TRUE(tipAt(resting, 4, program + L"before")) << gui.TipText();
  SetValue(HKEY_CURRENT_USER, kRunKey, L"Resting", Sz(program + L"after"));
  EXPECT_TRUE(WaitUntil([&] { return gui.TipText() == program + L"after"; })) << gui.TipText();
}

// The columns are those of the dialog, by keyboard; they are there again after a start.
TEST(ColumnsTest, AreChosenMovedAndKept) {
  const auto column = [](const GuiProgram& gui, int index) {
    return gui.Cell(IDC_ENTRIES, gui.RowOf(IDC_ENTRIES, L"Aurora Mixer"), index);
  };
  const auto headerOf = [](const GuiProgram& gui) {
    return reinterpret_cast<HWND>(SendMessageW(gui.Control(IDC_ENTRIES), LVM_GETHEADER, 0, 0));
  };
  const auto count = [&](const GuiProgram& gui) {
    return SendMessageW(headerOf(gui), HDM_GETITEMCOUNT, 0, 0);
  };
  std::wstring description;
  std::vector<std::wstring> order;
  {
    const GuiProgram gui(GuiProgram::Look::kFresh);
    SetWindowPos(gui.Window(), nullptr, 0, 0, 1500, 700, SWP_NOZORDER);
    gui.Select(IDC_ENTRIES, {gui.RowOf(IDC_ENTRIES, L"Aurora Mixer")});
    ASSERT_TRUE(WaitUntil([&] { return !gui.Detail(L"Description").empty(); }));
    description = gui.Detail(L"Description");
    ASSERT_EQ(count(gui), 6);
    // The last choice of the menu of the heads is the box.
    PostMessageW(gui.Control(IDC_ENTRIES), WM_CONTEXTMENU, reinterpret_cast<WPARAM>(headerOf(gui)),
                 MAKELPARAM(600, 200));
    const auto menuIsOpen = [] { return IsWindowVisible(FindWindowW(L"#32768", nullptr)) != FALSE; };
    ASSERT_TRUE(WaitUntil(menuIsOpen));
    for (const WPARAM key : {VK_UP, VK_RETURN}) PostMessageW(gui.Window(), WM_KEYDOWN, key, 0);
    const HWND dialog = gui.WaitForDialog();
    ASSERT_NE(dialog, nullptr);
    const HWND columns = GetDlgItem(dialog, IDC_COLUMN_LIST);
    for (int i = 0; i < 6; ++i) SendMessageW(columns, WM_KEYDOWN, VK_DOWN, 0);
    SendMessageW(columns, WM_KEYDOWN, VK_SPACE, 0);
    gui.Screenshot(L"startupmanager-columns");
    for (int i = 0; i < 5; ++i) SendMessageW(dialog, WM_COMMAND, IDC_COLUMN_UP, 0);
    PostMessageW(dialog, WM_COMMAND, IDOK, 0);
    EXPECT_TRUE(WaitUntil([&] { return count(gui) == 7 && column(gui, 1) == description; }));
    // Those that have one trust keep the order of their companies.
    for (const int clicked : {3, 4}) gui.ClickHeader(clicked);
    EXPECT_TRUE(WaitUntil([&] { return gui.Status(0) == L"Ready"; }));
    order = gui.Column(IDC_ENTRIES, 0);
    gui.Screenshot(L"startupmanager-more-columns");
    // The command takes what the window has more.
    const auto width = [&] { return SendMessageW(gui.Control(IDC_ENTRIES), LVM_GETCOLUMNWIDTH, 5, 0); };
    const LRESULT before = width();
    SetWindowPos(gui.Window(), nullptr, 0, 0, 1590, 700, SWP_NOZORDER);
    const LRESULT wide = width();
    EXPECT_GT(wide, before);
    SetWindowPos(gui.Window(), nullptr, 0, 0, 900, 700, SWP_NOZORDER);
    EXPECT_EQ(width(), 205);
    for (const int toggled : {8, 7}) {
      gui.Command(CMD_FIRST_COLUMN + 7);
      EXPECT_TRUE(WaitUntil([&] { return count(gui) == toggled; }));
    }
    gui.Command(CMD_FIRST_COLUMN);
  }
  const GuiProgram gui(GuiProgram::Look::kAsLeft);
  EXPECT_EQ(count(gui), 7);
  EXPECT_EQ(SendMessageW(headerOf(gui), HDM_ORDERTOINDEX, 1, 0), 1);
  EXPECT_EQ(column(gui, 1), description);
  EXPECT_TRUE(WaitUntil([&] { return gui.Column(IDC_ENTRIES, 0) == order; })) << "once all trust is known";
}

}  // namespace
}  // namespace smh::test
