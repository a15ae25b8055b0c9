// startupctl locate and the system's own tools that it opens.
#include "tests/display/display_support.h"
#include "tests/display/stand_ins/editor_settings.h"
#include "tests/hosts/cli/startupctl_fixture.h"
#include "tests/support/startup_folders.h"
#include "tests/support/waiting.h"

#include <commctrl.h>

namespace smh::test {

namespace {

const std::wstring kEditorSettings = L"Software\\Microsoft\\Windows\\CurrentVersion\\Applets\\Regedit";

class LocateTest : public StartupctlTest {
 protected:
  LocateTest() {
    CloseEditors();
    MakeKey(HKEY_CURRENT_USER, kEditorSettings);
  }
  ~LocateTest() override { CloseEditors(); }

  // The editor comes up anew, shows the key (which begins with the root's name), and is on the row of its
  // list, which has the focus. The row is selected too, but for the first one: in Wine that stays as it is
  // when Home is pressed on it.
  void ExpectShown(const std::wstring& item, const std::wstring& key, int row) {
    Run({L"locate", item});
    const HWND editor = WaitForEditor();
    ASSERT_NE(editor, nullptr) << item;
    EXPECT_NE(ProcessOf(editor), editorBefore_);
    editorBefore_ = ProcessOf(editor);
    const HWND list = ListInside(editor);
    EXPECT_EQ(RowInState(list, LVNI_FOCUSED), row) << item;
    EXPECT_EQ(RowInState(list, LVNI_SELECTED), row == 0 ? -1 : row) << item;
    EXPECT_TRUE(ShownKey(editor).ends_with(L"\\" + key)) << ShownKey(editor);
    EXPECT_EQ(FocusOf(editor), list);
    EXPECT_EQ(GetForegroundWindow(), editor);
  }

 private:
  const RegistryTree exchange_{kEditorTestKey};
  const SavedKey settings_{HKEY_CURRENT_USER, kEditorSettings};
  DWORD editorBefore_ = 0;
};

TEST_F(LocateTest, ValuesInTheSystemsRegistryEditor) {
  for (const wchar_t* name : {L"Aurora", L"Inkwell", L"Zebra"})
    SetRun(HKEY_CURRENT_USER, name, Command(L"a"));
  for (const wchar_t* name : {L"first", L"second"}) {
    SetRun(HKEY_LOCAL_MACHINE, name, Command(L"b"), OwnView());
  }
  ExpectShown(L"Inkwell", L"HKEY_CURRENT_USER\\" + kRunKey, 2);
  SaveScreenshot(L"locate-run-value");
  Run({L"disable", L"Zebra"});
  ExpectShown(L"Zebra", L"HKEY_CURRENT_USER\\" + kRunSide, 1);
  ExpectShown(L"second", L"HKEY_LOCAL_MACHINE\\" + kRunKey, 2);
  const std::string windows = Run({L"windows"}).output;
  EXPECT_NE(windows.find("regedit.exe"), std::string::npos) << windows;
  EXPECT_NE(windows.find("Registry Editor"), std::string::npos) << windows;
}

TEST_F(LocateTest, ShellExtensionsInTheSystemsRegistryEditor) {
  const std::wstring wave = L"{6F2C4B70-1D6E-4A1F-8B4C-7E2D308F9C01}";
  const std::wstring menus = L"Software\\Classes\\*\\shellex\\ContextMenuHandlers";
  const std::wstring approved = L"Software\\Microsoft\\Windows\\CurrentVersion\\Shell Extensions\\Approved";
  const EmptiedKeys emptied({menus, approved});
  const RegistryTree server(L"Software\\Classes\\CLSID\\" + wave, HKEY_LOCAL_MACHINE, OwnView());
  server.Set(L"InprocServer32", L"", Sz(Program()));
  SetValue(HKEY_LOCAL_MACHINE, menus + L"\\ctl wave", L"", Sz(wave));
  // The class is no value of that key, so its name must not be typed.
  SetValue(HKEY_LOCAL_MACHINE, menus + L"\\ctl wave", L"{6F2C}", Sz(L"another"));
  SetValue(HKEY_LOCAL_MACHINE, approved, L"{00000000-0000-0000-0000-000000000001}", Sz(L"first"), OwnView());
  SetValue(HKEY_LOCAL_MACHINE, approved, wave, Sz(L"ctl wave page"), OwnView());
  ExpectShown(L"ctl wave", L"HKEY_LOCAL_MACHINE\\" + menus + L"\\ctl wave", 0);
  SaveScreenshot(L"locate-handler");
  ExpectShown(L"ctl wave page", L"HKEY_LOCAL_MACHINE\\" + approved, 2);
  SaveScreenshot(L"locate-approved-extension");
}

TEST_F(LocateTest, ShortcutInTheFileBrowser) {
  const StartupPlaces places(StartupPlaces::Whose::kUser);
  Run({L"add", L"--location", L"FolderUser", L"--name", L"ctl shown", L"--command", Command(L"x")});
  const std::string output = Run({L"locate", L"ctl shown"}).output;
  EXPECT_NE(output.find(ToUtf8(places.startup) + "ctl shown.lnk\n"), std::string::npos) << output;
  // The browser of Wine shows the folder and selects nothing in it.
  HWND browser = nullptr;
  EXPECT_TRUE(WaitUntil([&] {
    browser = FindWindowW(nullptr, L"StartUp");
    return browser != nullptr && SendMessageW(ListInside(browser), LVM_GETITEMCOUNT, 0, 0) == 1;
  }));
  UpdateWindow(browser);
  SaveScreenshot(L"locate-shortcut");
  SendMessageW(browser, WM_CLOSE, 0, 0);
}

}  // namespace
}  // namespace smh::test
