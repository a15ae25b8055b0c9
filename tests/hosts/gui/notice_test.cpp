// What the window says of itself above its panes.
#include "hosts/gui/resource.h"
#include "tests/display/display_support.h"
#include "tests/hosts/gui/gui_program.h"
#include "tests/support/waiting.h"

#include <gtest/gtest.h>

namespace smh::test {

namespace {

std::wstring NoticeOf(const GuiProgram& gui) {
  const HWND bar = gui.Control(IDC_BANNER);
  wchar_t text[256] = L"";
  if (IsWindowVisible(bar)) SendMessageW(bar, WM_GETTEXT, ARRAYSIZE(text), reinterpret_cast<LPARAM>(text));
  return text;
}

void PressInNotice(const GuiProgram& gui, int button) {
  // From the search box the next pane is the notice.
  for (const UINT command : {CMD_FIND, CMD_NEXT_PANE}) gui.Command(command);
  const HWND control = GetDlgItem(gui.Control(IDC_BANNER), button);
  for (int i = 0; i < 2 && !WaitUntil([&] { return FocusOf(gui.Window()) == control; }, 2'000); ++i) {
    gui.Command(CMD_NEXT_PANE);
  }
  ASSERT_EQ(FocusOf(gui.Window()), control);
  PostMessageW(control, WM_KEYDOWN, VK_RETURN, 0);
}

TEST(NoticeTest, TheFirstStartSaysWhatThisIsUntilThatWasRead) {
  {
    const GuiProgram gui(GuiProgram::Look::kFirst);
    EXPECT_TRUE(NoticeOf(gui).starts_with(L"This is what Windows starts by itself")) << NoticeOf(gui);
    gui.Screenshot(L"notice-first-start");
    PressInNotice(gui, CMD_HIDE_NOTICE);
    EXPECT_TRUE(WaitUntil([&] { return NoticeOf(gui).empty(); }));
    EXPECT_TRUE(WaitUntil([&] { return FocusOf(gui.Window()) == gui.Control(IDC_ENTRIES); }));
  }
  EXPECT_EQ(NoticeOf(GuiProgram(GuiProgram::Look::kAsLeft)), L"");
}

TEST(NoticeTest, LimitedRightsAreSaidWithAWayOut) {
  const GuiProgram gui(GuiProgram::Look::kFresh, GuiProgram::Rights::kLimited);
  EXPECT_TRUE(NoticeOf(gui).starts_with(L"You can change the entries of this user.")) << NoticeOf(gui);
  gui.Screenshot(L"notice-limited-rights");
  SetWindowPos(gui.Window(), nullptr, 0, 0, 560, 520, SWP_NOZORDER);
  gui.Screenshot(L"notice-limited-rights-narrow");
  RECT bar, tree, restart;
  GetWindowRect(gui.Control(IDC_BANNER), &bar);
  GetWindowRect(gui.Control(IDC_TREE), &tree);
  GetWindowRect(GetDlgItem(gui.Control(IDC_BANNER), CMD_RESTART_ELEVATED), &restart);
  EXPECT_TRUE(bar.bottom <= tree.top && restart.bottom <= bar.bottom && restart.left > bar.left);
  PressInNotice(gui, CMD_HIDE_NOTICE);
  EXPECT_TRUE(WaitUntil([&] { return NoticeOf(gui).empty(); }));
}

}  // namespace
}  // namespace smh::test
