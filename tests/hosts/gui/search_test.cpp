// Searching and filtering in the window, by the keyboard and by its buttons.
#include "hosts/gui/resource.h"
#include "tests/hosts/gui/gui_program.h"
#include "tests/support/waiting.h"

#include <gtest/gtest.h>

namespace smh::test {

namespace {

constexpr unsigned kFilterButtons[] = {CMD_FILTER_NOT_STARTING, CMD_FILTER_MISSING, CMD_FILTER_UNSIGNED,
                                       CMD_FILTER_RISKY, CMD_HIDE_VERIFIED};

std::wstring TextIn(HWND window) {
  wchar_t text[512] = L"";
  SendMessageW(window, WM_GETTEXT, ARRAYSIZE(text), reinterpret_cast<LPARAM>(text));
  return text;
}

std::wstring NoteIn(const GuiProgram& gui) {
  const HWND note = gui.Control(IDC_EMPTY_NOTE);
  return IsWindowVisible(note) ? TextIn(note) : std::wstring();
}

void PressEnter(HWND control) {
  PostMessageW(control, WM_KEYDOWN, VK_RETURN, 0);
}

bool IsDown(const GuiProgram& gui, unsigned command) {
  return SendMessageW(gui.Control(static_cast<int>(command)), BM_GETCHECK, 0, 0) == BST_CHECKED;
}

TEST(SearchTest, SaysWhereItSearchesAndLooksEverywhereOnEnter) {
  const GuiProgram gui(GuiProgram::Look::kFresh);
  EXPECT_EQ(gui.Cue(IDC_SEARCH), L"Search in all entries");
  ASSERT_TRUE(gui.SelectNode(L"Startup folder, this user"));
  EXPECT_EQ(gui.Cue(IDC_SEARCH), L"Search in Startup folder, this user");
  gui.Search(L"lost agent");
  ASSERT_TRUE(WaitUntil([&] { return NoteIn(gui).ends_with(L"Elsewhere there is 1."); })) << NoteIn(gui);
  gui.Screenshot(L"startupmanager-search-elsewhere");
  PressEnter(gui.Control(IDC_SEARCH));
  EXPECT_TRUE(
      WaitUntil([&] { return gui.Column(IDC_ENTRIES, 0) == std::vector<std::wstring>{L"Lost Agent"}; }));
  EXPECT_EQ(NoteIn(gui), L"");
  EXPECT_EQ(TextIn(gui.Control(IDC_SEARCH)), L"lost agent");
  gui.Search(L"no such thing");
  EXPECT_TRUE(WaitUntil([&] { return NoteIn(gui) == L"No entry matches \u201Cno such thing\u201D."; }));
  // By the button, as somebody does who came to it by the keyboard.
  PressEnter(GetDlgItem(gui.Control(IDC_EMPTY_NOTE), CMD_SHOW_ALL));
  EXPECT_TRUE(WaitUntil([&] { return TextIn(gui.Control(IDC_SEARCH)).empty() && NoteIn(gui).empty(); }));
}

TEST(SearchTest, FiltersHoldTogetherAndAreKept) {
  const auto click = [](const GuiProgram& gui, unsigned command) {
    SendMessageW(gui.Control(static_cast<int>(command)), BM_CLICK, 0, 0);
  };
  int missing = 0;
  {
    const GuiProgram gui(GuiProgram::Look::kFresh);
    const int all = gui.Count(IDC_ENTRIES);
    click(gui, CMD_FILTER_MISSING);
    missing = gui.Count(IDC_ENTRIES);
    EXPECT_GT(missing, 0);
    for (const std::wstring& status : gui.Column(IDC_ENTRIES, 1)) {
      EXPECT_TRUE(status.find(L"file missing") != std::wstring::npos ||
                  status.find(L"out of reach") != std::wstring::npos)
          << status;
    }
    EXPECT_TRUE(WaitUntil([&] {
      return gui.Status(1) == std::to_wstring(missing) + L" of " + std::to_wstring(all) + L" entries";
    }));
    gui.Command(CMD_FILTER_RISKY);
    ASSERT_TRUE(WaitUntil([&] { return IsDown(gui, CMD_FILTER_RISKY) && gui.Count(IDC_ENTRIES) == 0; }));
    EXPECT_NE(NoteIn(gui).find(L"hidden by \u201CMissing\u201D and \u201CRisky\u201D."), std::wstring::npos)
        << NoteIn(gui);
    gui.Screenshot(L"startupmanager-filters-empty");
    click(gui, CMD_FILTER_RISKY);
    EXPECT_EQ(gui.Count(IDC_ENTRIES), missing);
  }
  const GuiProgram gui(GuiProgram::Look::kAsLeft);
  EXPECT_TRUE(IsDown(gui, CMD_FILTER_MISSING) && !IsDown(gui, CMD_FILTER_RISKY));
  EXPECT_EQ(gui.Count(IDC_ENTRIES), missing);
  gui.Command(CMD_CLEAR_FILTERS);
  EXPECT_TRUE(
      WaitUntil([&] { return gui.Count(IDC_ENTRIES) > missing && !IsDown(gui, CMD_FILTER_MISSING); }));
}

TEST(SearchTest, TheButtonsFindRoomInANarrowWindow) {
  const GuiProgram gui(GuiProgram::Look::kFresh);
  const auto placeOf = [&](int id) {
    RECT rect;
    GetWindowRect(gui.Control(id), &rect);
    return rect;
  };
  for (const int dpi : {96, 192}) {
    gui.SendDpiChange(dpi, {0, 0, MulDiv(560, dpi, 96), MulDiv(420, dpi, 96)});
    const RECT list = placeOf(IDC_ENTRIES);
    for (const unsigned command : kFilterButtons) {
      const RECT button = placeOf(static_cast<int>(command));
      EXPECT_TRUE(button.left >= list.left && button.right <= list.right && button.bottom <= list.top)
          << dpi << L" " << command;
      for (const unsigned other : kFilterButtons) {
        const RECT place = placeOf(static_cast<int>(other));
        RECT both;
        EXPECT_TRUE(command == other || !IntersectRect(&both, &button, &place)) << dpi << L" " << command;
      }
    }
    gui.Screenshot(L"startupmanager-narrow-" + std::to_wstring(dpi) + L"dpi");
  }
}

}  // namespace
}  // namespace smh::test
