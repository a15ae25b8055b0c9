// The window in dark and light, as it stands on the screen.
#include "hosts/common/text_encoding.h"
#include "hosts/gui/resource.h"
#include "tests/display/display_support.h"
#include "tests/hosts/gui/gui_program.h"
#include "tests/support/registry_fixture.h"
#include "tests/support/screen.h"
#include "tests/support/waiting.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <span>

namespace smh::test {

namespace {

const std::wstring kChoiceKey = L"Software\\Microsoft\\Windows\\CurrentVersion\\Themes\\Personalize";

void Choose(const GuiProgram& gui, bool light) {
  const ScopedKey key = MakeKey(HKEY_CURRENT_USER, kChoiceKey);
  const DWORD value = light ? 1 : 0;
  RegSetValueExW(key.Get(), L"AppsUseLightTheme", 0, REG_DWORD, reinterpret_cast<const BYTE*>(&value),
                 sizeof(value));
  SendMessageW(gui.Window(), WM_SETTINGCHANGE, 0, reinterpret_cast<LPARAM>(L"ImmersiveColorSet"));
}

// The part of the window's client area that is light on the screen: 0 to 1.
double LightPart(HWND window) {
  RECT area;
  GetClientRect(window, &area);
  MapWindowPoints(window, nullptr, reinterpret_cast<POINT*>(&area), 2);
  const std::vector<std::uint32_t> pixels = PixelsOf(area);
  const auto light = std::count_if(pixels.begin(), pixels.end(), [](std::uint32_t pixel) {
    return (pixel & 0xFF) + (pixel >> 8 & 0xFF) + (pixel >> 16 & 0xFF) > 3 * 128;
  });
  return static_cast<double>(light) / static_cast<double>(pixels.size());
}

BOOL CALLBACK ExpectDark(HWND control, LPARAM) {
  wchar_t name[64] = L"";
  GetClassNameW(control, name, ARRAYSIZE(name));
  if (!IsWindowVisible(control) || lstrcmpW(name, L"ComboLBox") == 0) return TRUE;
  EXPECT_TRUE(WaitUntil([&] { return LightPart(control) < 0.3; }, 3'000))
      << ToUtf8(name) << " " << GetDlgCtrlID(control) << ": " << LightPart(control);
  return TRUE;
}

void ExpectAllDark(HWND window) {
  ExpectDark(window, 0);
  EnumChildWindows(window, ExpectDark, 0);
}

TEST(ThemeWindowTest, FollowsTheUsersChoice) {
  const SavedKey saved(HKEY_CURRENT_USER, kChoiceKey);
  const GuiProgram gui(GuiProgram::Look::kFresh);
  const HWND list = gui.Control(IDC_ENTRIES);
  EXPECT_GT(LightPart(list), 0.6);
  Choose(gui, false);
  gui.Select(IDC_ENTRIES, {gui.RowOf(IDC_ENTRIES, L"Host")});
  EXPECT_TRUE(WaitUntil([&] { return !gui.Status(0).starts_with(L"Checking"); }, 60'000));
  gui.Screenshot(L"dark-entries");
  ExpectAllDark(gui.Window());
  gui.Search(L"what no entry is called");
  EXPECT_TRUE(WaitUntil([&] { return IsWindowVisible(gui.Control(IDC_EMPTY_NOTE)) != FALSE; }));
  gui.Screenshot(L"dark-empty");
  ExpectAllDark(gui.Window());
  gui.Search(L"");
  gui.Command(CMD_DEFAULT_PROGRAMS);
  EXPECT_TRUE(WaitUntil([&] { return gui.Count(IDC_PROGRAMS) > 0; }));
  gui.Screenshot(L"dark-programs");
  ExpectAllDark(gui.Window());
  gui.Command(CMD_UNDO_HISTORY);
  EXPECT_TRUE(WaitUntil([&] { return IsWindowVisible(gui.Control(IDC_CHECKPOINTS)) != FALSE; }));
  gui.Screenshot(L"dark-undo");
  ExpectAllDark(gui.Window());
  gui.Command(CMD_ENTRIES);
  Choose(gui, true);
  for (const int control : {IDC_ENTRIES, IDC_TREE, IDC_DETAILS, IDC_STATUS}) {
    EXPECT_TRUE(WaitUntil([&] { return LightPart(gui.Control(control)) > 0.6; })) << control;
  }
}

TEST(ThemeWindowTest, DialogsAndMenusAreDark) {
  const SavedKey saved(HKEY_CURRENT_USER, kChoiceKey);
  const GuiProgram gui(GuiProgram::Look::kFresh);
  Choose(gui, false);
  gui.Command(CMD_ADD);
  const HWND dialog = gui.WaitForDialog();
  ASSERT_NE(dialog, nullptr);
  ExpectAllDark(dialog);
  gui.Screenshot(L"dark-add");
  PostMessageW(dialog, WM_COMMAND, IDCANCEL, 0);
  EXPECT_TRUE(WaitUntil([&] { return !IsWindow(dialog); }));
  gui.Select(IDC_ENTRIES, {0});
  gui.Command(CMD_DELETE);
  const HWND question = gui.WaitForDialog();
  ASSERT_NE(question, nullptr);
  ExpectAllDark(question);
  gui.Screenshot(L"dark-question");
  PostMessageW(question, WM_COMMAND, IDCANCEL, 0);
  EXPECT_TRUE(WaitUntil([&] { return !IsWindow(question); }));
  PostMessageW(gui.Window(), WM_SYSCOMMAND, SC_KEYMENU, 'n');
  HWND popup = nullptr;
  EXPECT_TRUE(WaitUntil(
      [&] { return (popup = FindWindowW(L"#32768", nullptr)) != nullptr && IsWindowVisible(popup); }));
  ExpectDark(popup, 0);
  gui.Screenshot(L"dark-menu");
  PostMessageW(gui.Window(), WM_CANCELMODE, 0, 0);
  EXPECT_TRUE(WaitUntil([&] { return !IsWindowVisible(popup); }));
}

}  // namespace
}  // namespace smh::test
