#include "infra/runtime/exceptions.h"
#include "infra/runtime/text.h"
#include "sysutil/uRegEditUtils.h"
#include "sysutil/windows/uWindowsExt.h"
#include "tests/display/display_support.h"
#include "tests/display/stand_ins/editor_settings.h"
#include "tests/support/child_process.h"
#include "tests/support/import_patch.h"
#include "tests/support/registry_fixture.h"
#include "tests/support/waiting.h"
#include "tests/sysutil/file_utils_fixture.h"

#include <shellapi.h>

namespace smh::test {

namespace {

const std::wstring kEditorSettings = L"Software\\Microsoft\\Windows\\CurrentVersion\\Applets\\Regedit";
const std::wstring kEditedKey = L"Software\\Startup Manager Edited";

// The stand-in, whose list has "(Default)" and the three values. No blanks in them: the list of Wine takes
// none.
class RegEditTest : public testing::Test {
 protected:
  RegEditTest() {
    CloseEditors();
    MakeKey(HKEY_CURRENT_USER, kEditorSettings);
    exchange_.Set(L"", kEditorValue, Sz(L'"' + ThisFolder() + L"stand_ins\\regedit.exe\""));
    for (const wchar_t* name : {L"Aurora", L"Aurora-Mixer", L"inkwell"}) edited_.Set(L"", name, Sz(L"x"));
  }
  ~RegEditTest() override { CloseEditors(); }

  static void Open(const std::wstring& valueName, REGSAM view = 0) {
    RegEditUtils::OpenRegEdit(view | KEY_READ, HKEY_CURRENT_USER, valueName, L"\\" + kEditedKey);
  }
  static std::wstring Title() { return WindowsExt::GetWindowCaption(WaitForEditor()); }
  static std::wstring LastKey() { return TextOf(GetValue(HKEY_CURRENT_USER, kEditorSettings, L"LastKey")); }
  std::wstring StarterLine() const { return TextOf(exchange_.Get(L"", kStarterValue)); }

  const RegistryTree exchange_{kEditorTestKey};

 private:
  const StartedFileUtils started_;
  const SavedKey settings_{HKEY_CURRENT_USER, kEditorSettings};
  const RegistryTree edited_{kEditedKey};
};

TEST_F(RegEditTest, SelectsTheValueInTheViewsOwnEditor) {
  const struct {
    const wchar_t* value;
    REGSAM view;
    const wchar_t* title;
  } rows[] = {
      {L"aurora-mixer", 0, L"Stand-in: Aurora-Mixer"},
      {L"Inkwell", KEY_WOW64_64KEY, L"Stand-in: inkwell"},
      {L"", 0, L"Stand-in: (Default)"},
  };
  DWORD before = 0;
  for (const auto& row : rows) {
    Open(row.value, row.view);
    const std::wstring folder = row.view == 0 ? FileUtils::GetSystemDir() : FileUtils::GetSysnativeDir();
    EXPECT_TRUE(StartsText(L'"' + folder + L"regedt32.exe\"", StarterLine())) << StarterLine();
    EXPECT_EQ(Title(), row.title);
    EXPECT_EQ(LastKey(), L"HKEY_CURRENT_USER\\" + kEditedKey);
    if (before == 0) SaveScreenshot(L"stand-in-editor");
    // The one before was closed.
    const DWORD process = ProcessOf(WaitForEditor());
    EXPECT_NE(process, before);
    before = process;
  }
}

TEST_F(RegEditTest, KeyIsWrittenAsTheEditorReadsIt) {
  const std::pair<const wchar_t*, const wchar_t*> rows[] = {
      {L"\\Software\\X\\", L"HKEY_LOCAL_MACHINE\\Software\\X"},
      {L"Software\\X", L"HKEY_LOCAL_MACHINE\\Software\\X"},
  };
  for (const auto& [key, last] : rows) {
    RegEditUtils::OpenRegEdit(0, HKEY_LOCAL_MACHINE, L"", key);
    EXPECT_EQ(LastKey(), last);
  }
  // An editor that was never used gets no memory made up.
  DeleteKeyTree(HKEY_CURRENT_USER, kEditorSettings);
  Open(L"inkwell");
  EXPECT_FALSE(KeyIsThere(HKEY_CURRENT_USER, kEditorSettings));
  EXPECT_EQ(Title(), L"Stand-in: (Default)");
}

TEST_F(RegEditTest, EditorThatStaysOpenIsRestoredAndUsed) {
  Open(L"Aurora");
  const HWND editor = WaitForEditor();
  exchange_.Set(L"", kStaysValue, Dword(1));
  exchange_.Set(L"", kStarterValue, Sz(L"not started"));
  ShowWindow(editor, SW_MINIMIZE);
  ASSERT_TRUE(IsIconic(editor));
  Open(L"inkwell");
  EXPECT_EQ(StarterLine(), L"not started");
  EXPECT_EQ(WaitForEditor(), editor);
  EXPECT_FALSE(IsIconic(editor));
  EXPECT_EQ(Title(), L"Stand-in: inkwell");
}

HINSTANCE WINAPI RefuseToStart(HWND, LPCWSTR, LPCWSTR, LPCWSTR, LPCWSTR, INT) {
  SetLastError(ERROR_CANCELLED);
  return reinterpret_cast<HINSTANCE>(SE_ERR_ACCESSDENIED);
}

std::wstring g_boxText;
UINT g_boxFlags;
int WINAPI TakeBox(HWND, LPCWSTR text, LPCWSTR, UINT flags) {
  g_boxText = text;
  g_boxFlags = flags;
  return IDOK;
}

TEST_F(RegEditTest, OnlyAFailedStartIsTold) {
  const ImportPatch box("MessageBoxW", &TakeBox);
  // Nothing but the starter comes up.
  exchange_.Set(L"", kEditorValue, Sz(L"C:\\no folder\\nothing.exe"));
  DWORD start = GetTickCount();
  Open(L"inkwell");
  EXPECT_GE(GetTickCount() - start, 2'000u);
  EXPECT_EQ(g_boxText, L"");

  const ImportPatch refusal("ShellExecuteW", &RefuseToStart);
  start = GetTickCount();
  Open(L"inkwell");
  EXPECT_LT(GetTickCount() - start, 2'000u);
  EXPECT_EQ(g_boxText, SystemErrorText(ERROR_CANCELLED));
  EXPECT_EQ(g_boxFlags & MB_ICONMASK, static_cast<UINT>(MB_ICONERROR));
}

}  // namespace
}  // namespace smh::test
