// The window by keyboard alone: keys go through the system's input to the window that has the focus.
#include "hosts/gui/resource.h"
#include "tests/display/display_support.h"
#include "tests/hosts/gui/gui_program.h"
#include "tests/support/registry_fixture.h"
#include "tests/support/screen.h"
#include "tests/support/waiting.h"

#include <gtest/gtest.h>

namespace smh::test {

namespace {

struct Chord {
  WORD key;
  std::vector<WORD> held = {};
};

std::vector<std::uint32_t> Look(HWND window) {
  RECT place;
  GetWindowRect(window, &place);
  return PixelsOf(place);
}

class KeyboardTest : public testing::Test {
 protected:
  KeyboardTest() { Activate(gui.Window()); }

  static void Activate(HWND window) {
    SetForegroundWindow(window);
    EXPECT_TRUE(WaitUntil([window] { return GetForegroundWindow() == window; }));
  }
  static void Press(const Chord& chord) {
    for (const WORD key : chord.held) keybd_event(static_cast<BYTE>(key), 0, 0, 0);
    keybd_event(static_cast<BYTE>(chord.key), 0, 0, 0);
    keybd_event(static_cast<BYTE>(chord.key), 0, KEYEVENTF_KEYUP, 0);
    for (const WORD key : chord.held) keybd_event(static_cast<BYTE>(key), 0, KEYEVENTF_KEYUP, 0);
  }
  static void Type(const std::string& letters) {
    for (const char letter : letters) Press({static_cast<WORD>(letter)});
  }
  int Focus() const { return GetDlgCtrlID(FocusOf(gui.Window())); }
  // Presses Tab until the control has the focus.
  void GoTo(int control) const {
    for (int i = 0; i < 12 && Focus() != control; ++i) {
      const int before = Focus();
      Press({VK_TAB});
      EXPECT_TRUE(WaitUntil([&] { return Focus() != before; }, 3'000)) << before;
    }
    EXPECT_EQ(Focus(), control);
  }
  void CloseByKey(HWND dialog, const Chord& chord) const {
    EXPECT_TRUE(WaitUntil([&] { return GetForegroundWindow() == dialog; }));
    Press(chord);
    EXPECT_TRUE(WaitUntil([&] { return !IsWindow(dialog) && GetForegroundWindow() == gui.Window(); }));
  }
  bool MenuIsOpen() const {
    GUITHREADINFO info = {};
    info.cbSize = sizeof(info);
    GetGUIThreadInfo(GetWindowThreadProcessId(gui.Window(), nullptr), &info);
    return info.hwndMenuOwner != nullptr;
  }
  void OpenMenu(const Chord& chord = {VK_F10, {VK_SHIFT}}) const {
    Press(chord);
    EXPECT_TRUE(WaitUntil([&] { return MenuIsOpen(); })) << Focus();
  }
  int Row(const std::wstring& name) const { return gui.RowOf(IDC_ENTRIES, name); }

  const SavedKey saved_{HKEY_CURRENT_USER, kRunKey};
  const GuiProgram gui{GuiProgram::Look::kFresh};
};

TEST_F(KeyboardTest, TabAndF6GoThroughEveryPaneAndShowWhere) {
  gui.Select(IDC_ENTRIES, {Row(L"Aurora Mixer")});
  struct Case {
    UINT view;
    std::vector<int> panes;
  };
  constexpr WORD kNextKeys[] = {VK_TAB, VK_F6};
  const Case cases[] = {
      {CMD_ENTRIES,
       {IDC_ENTRIES, IDC_DETAILS, IDC_TOOLBAR, IDC_SEARCH, IDC_TREE, CMD_FILTER_NOT_STARTING,
        CMD_FILTER_MISSING, CMD_FILTER_UNSIGNED, CMD_FILTER_RISKY, CMD_HIDE_VERIFIED}},
      {CMD_DEFAULT_PROGRAMS, {IDC_PROGRAMS, IDC_TOOLBAR, IDC_SEARCH, IDC_TREE}},
      {CMD_UNDO_HISTORY, {IDC_CHECKPOINTS, IDC_STEPS, IDC_TOOLBAR, IDC_SEARCH, IDC_TREE}},
  };
  for (const auto& [view, panes] : cases) {
    gui.Command(view);
    ASSERT_TRUE(WaitUntil([&] { return Focus() == panes.front(); })) << "the focus goes to the new view";
    for (const WORD key : kNextKeys) {
      for (std::size_t i = 1; i <= panes.size(); ++i) {
        Press({key});
        EXPECT_TRUE(WaitUntil([&] { return Focus() == panes[i % panes.size()]; }, 3'000)) << panes[i - 1];
      }
      for (std::size_t i = panes.size(); i-- > 0;) {
        Press({key, {VK_SHIFT}});
        EXPECT_TRUE(WaitUntil([&] { return Focus() == panes[i]; }, 3'000)) << panes[i];
      }
    }
    for (std::size_t i = 0; i < panes.size() && view == CMD_ENTRIES; ++i) {
      const HWND pane = gui.Control(panes[i]);
      GUITHREADINFO info = {};
      info.cbSize = sizeof(info);
      GetGUIThreadInfo(GetWindowThreadProcessId(pane, nullptr), &info);
      gui.Screenshot(L"keyboard-focus-" + std::to_wstring(panes[i]));
      const auto with = Look(pane);
      Press({VK_TAB});
      EXPECT_TRUE(WaitUntil([&] { return Focus() != panes[i]; }));
      EXPECT_TRUE(info.hwndCaret == pane || WaitUntil([&] { return Look(pane) != with; }, 3'000)) << panes[i];
    }
  }
}

TEST_F(KeyboardTest, TheFocusComesBackToItsPane) {
  GoTo(IDC_TREE);
  Press({VK_F1});
  const HWND keys = gui.WaitForDialog();
  ASSERT_NE(keys, nullptr);
  std::wstring text(4096, L'\0');
  text.resize(static_cast<std::size_t>(
      SendDlgItemMessageW(keys, IDC_KEYS, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()))));
  for (const wchar_t* line : {L"Run now\tCtrl+F9\r\n", L"Delete...\tDel\r\n", L"Next pane\tTab or F6\r\n"}) {
    EXPECT_NE(text.find(line), std::wstring::npos) << text;
  }
  RECT place;
  GetWindowRect(keys, &place);
  SaveScreenshot(L"keyboard-keys", place);
  CloseByKey(keys, {VK_ESCAPE});
  EXPECT_TRUE(WaitUntil([&] { return Focus() == IDC_TREE; }));
}

TEST_F(KeyboardTest, SpaceSwitchesAndEnterOpensTheDetails) {
  Press({VK_HOME});
  EXPECT_TRUE(WaitUntil([&] { return gui.Selection(IDC_ENTRIES) == std::vector<int>{0}; }));
  gui.Select(IDC_ENTRIES, {Row(L"Aurora Mixer")});
  const auto isOn = [&] { return gui.IsChecked(Row(L"Aurora Mixer")); };
  for (const bool on : {false, true}) {
    Press({VK_SPACE});
    EXPECT_TRUE(WaitUntil([&] { return isOn() == on; })) << on;
  }
  Press({VK_RETURN});
  EXPECT_TRUE(WaitUntil([&] { return Focus() == IDC_DETAILS; }));
  // The command keys mean the selected entry there, too.
  Press({VK_F2});
  CloseByKey(gui.WaitForDialog(), {VK_ESCAPE});
  Press({'C', {VK_CONTROL}});
  EXPECT_TRUE(WaitUntil([] { return ClipboardText().find(L"Aurora Mixer") != std::wstring::npos; }))
      << "details";
  for (const WORD key : {'K', 'H', 'C'}) {
    const std::wstring before = ClipboardText();
    Press({key, {VK_CONTROL, VK_SHIFT}});
    EXPECT_TRUE(WaitUntil([&] { return ClipboardText() != before; })) << key;
  }
  Press({VK_ESCAPE});
  EXPECT_TRUE(WaitUntil([&] { return Focus() == IDC_ENTRIES; }));
  Press({VK_DELETE});
  CloseByKey(gui.WaitForDialog(), {VK_ESCAPE});
  GoTo(IDC_TREE);
  Press({'C', {VK_CONTROL}});
  EXPECT_TRUE(WaitUntil([] { return ClipboardText().starts_with(L"All entries ("); })) << "tree";
  Press({VK_RETURN});
  EXPECT_TRUE(WaitUntil([&] { return Focus() == IDC_ENTRIES; }));
  Press({'A', {VK_CONTROL}});
  EXPECT_TRUE(WaitUntil(
      [&] { return static_cast<int>(gui.Selection(IDC_ENTRIES).size()) == gui.Count(IDC_ENTRIES); }));
}

TEST_F(KeyboardTest, TheSearchBoxKeepsItsKeys) {
  const int all = gui.Count(IDC_ENTRIES);
  gui.Select(IDC_ENTRIES, {Row(L"Aurora Mixer")});
  Press({'F', {VK_CONTROL}});
  EXPECT_TRUE(WaitUntil([&] { return Focus() == IDC_SEARCH; }));
  Type("AURORA");
  Press({VK_HOME});
  Press({VK_DELETE});
  const auto text = [&] {
    wchar_t typed[32] = L"";
    SendMessageW(gui.Control(IDC_SEARCH), WM_GETTEXT, ARRAYSIZE(typed), reinterpret_cast<LPARAM>(typed));
    return std::wstring(typed);
  };
  EXPECT_TRUE(WaitUntil([&] { return text() == L"urora"; })) << text();
  Press({'A', {VK_CONTROL}});
  Press({'X', {VK_CONTROL}});
  EXPECT_TRUE(WaitUntil([&] { return text().empty() && ClipboardText() == L"urora"; })) << text();
  Press({'V', {VK_CONTROL}});
  EXPECT_TRUE(WaitUntil([&] { return text() == L"urora"; }));
  EXPECT_TRUE(WaitUntil([&] { return gui.Count(IDC_ENTRIES) < all; }));
  Press({VK_ESCAPE});
  EXPECT_TRUE(WaitUntil([&] { return text().empty() && Focus() == IDC_ENTRIES; }));
}

TEST_F(KeyboardTest, TheToolBarIsPressed) {
  GoTo(IDC_TOOLBAR);
  // Without a selection "Add" is the first that can be pressed.
  Press({VK_SPACE});
  CloseByKey(gui.WaitForDialog(), {VK_ESCAPE});
  EXPECT_EQ(Focus(), IDC_TOOLBAR);
  gui.Select(IDC_ENTRIES, {Row(L"Aurora Mixer")});
  EXPECT_TRUE(WaitUntil([&] { return gui.CanRun(CMD_DELETE); }));
  Press({VK_LEFT});
  Press({VK_RETURN});
  CloseByKey(gui.WaitForDialog(), {VK_ESCAPE});
  EXPECT_GE(Row(L"Aurora Mixer"), 0);
}

TEST_F(KeyboardTest, EveryViewHasAMenu) {
  gui.Select(IDC_ENTRIES, {Row(L"Aurora Mixer")});
  // The menu is the entries': "&Disable".
  OpenMenu({VK_APPS});
  gui.Screenshot(L"keyboard-menu-entries");
  Press({'D'});
  EXPECT_TRUE(WaitUntil([&] { return !gui.IsChecked(Row(L"Aurora Mixer")); }));
  GoTo(IDC_TREE);
  OpenMenu();
  gui.Screenshot(L"keyboard-menu-tree");
  const int before = gui.Count(IDC_ENTRIES);
  Press({'A'});
  EXPECT_TRUE(WaitUntil([&] { return gui.Count(IDC_ENTRIES) > before; }));

  Press({'3', {VK_CONTROL}});
  EXPECT_TRUE(WaitUntil([&] { return IsWindowVisible(gui.Control(IDC_CHECKPOINTS)) != FALSE; }));
  GoTo(IDC_CHECKPOINTS);
  EXPECT_TRUE(
      WaitUntil([&] { return gui.Cell(IDC_CHECKPOINTS, 0, 0).ends_with(L"Disabling Aurora Mixer"); }));
  Press({VK_HOME});
  EXPECT_TRUE(WaitUntil([&] { return gui.Count(IDC_STEPS) > 0; }));
  OpenMenu();
  gui.Screenshot(L"keyboard-menu-history");
  Press({'U'});
  EXPECT_TRUE(WaitUntil([&] { return gui.Cell(IDC_CHECKPOINTS, 0, 1) == L"Undone"; }));
  // A change without parts has only its steps to show.
  Press({VK_RETURN});
  EXPECT_TRUE(WaitUntil([&] { return Focus() == IDC_STEPS; }));
}

TEST_F(KeyboardTest, DefaultProgramsSayWhatWindowsTakes) {
  const SavedKey clients(HKEY_CURRENT_USER, L"Software\\Clients");
  SetValue(HKEY_CURRENT_USER, L"Software\\Clients\\Mail", L"", Sz(L"Tidewater Mail"));
  Press({'2', {VK_CONTROL}});
  EXPECT_TRUE(WaitUntil([&] { return gui.Count(IDC_PROGRAMS) > 0; }));
  for (int row = 0; row < gui.Count(IDC_PROGRAMS); ++row) {
    const std::wstring name = gui.Cell(IDC_PROGRAMS, row, 0);
    EXPECT_EQ(gui.Cell(IDC_PROGRAMS, row, 2), name == L"Tidewater Mail" ? L"Default" : L"") << row;
  }
  GoTo(IDC_PROGRAMS);
  Press({VK_HOME});
  EXPECT_TRUE(WaitUntil([&] { return gui.Selection(IDC_PROGRAMS) == std::vector<int>{0}; }));
  OpenMenu();
  gui.Screenshot(L"keyboard-menu-programs");
  Press({'P'});
  const std::wstring path = gui.Cell(IDC_PROGRAMS, 0, 5);
  EXPECT_TRUE(WaitUntil([&] { return !MenuIsOpen() && ClipboardText() == path; })) << ClipboardText();
  Press({VK_RETURN});
  // Not every system has a sheet to show; one that has not says so.
  EXPECT_TRUE(WaitUntil([&] {
    return gui.Status(0).starts_with(L"Showed the properties of") || GetForegroundWindow() != gui.Window();
  }));
  if (GetForegroundWindow() != gui.Window()) CloseByKey(gui.WaitForDialog(), {VK_RETURN});
}

}  // namespace
}  // namespace smh::test
