// What is opened outside the window for an entry, and what of it is copied.
#include "hosts/gui/resource.h"
#include "tests/display/display_support.h"
#include "tests/hosts/gui/gui_program.h"
#include "tests/support/file_fixture.h"
#include "tests/support/registry_fixture.h"
#include "tests/support/test_main.h"
#include "tests/support/waiting.h"

#include <gtest/gtest.h>

namespace smh::test {

namespace {

const std::wstring kTold = L"Software\\Startup Manager Look Closer Tests";
const std::wstring kBrowser = L"Software\\Classes\\https";

// The user's browser: keeps its arguments for the test.
SMH_CHILD(Browse) {
  std::wstring all;
  for (const std::wstring& argument : arguments) all += (all.empty() ? L"" : L" ") + argument;
  SetValue(HKEY_CURRENT_USER, kTold, L"Arguments", Sz(all));
  return 0;
}

bool CloseWindowOf(const std::wstring& title) {
  HWND window = nullptr;
  WaitUntil([&] { return (window = FindWindowW(nullptr, title.c_str())) != nullptr; });
  PostMessageW(window, WM_CLOSE, 0, 0);
  return window != nullptr;
}

class LookCloserTest : public testing::Test {
 protected:
  void Add(const std::wstring& name, const std::wstring& command) const {
    SetValue(HKEY_CURRENT_USER, kRunKey, name, Sz(command));
    EXPECT_TRUE(WaitUntil([&] { return gui.RowOf(IDC_ENTRIES, name) >= 0; }));
  }
  void Run(UINT command, const std::vector<std::wstring>& names) const {
    std::vector<int> rows;
    for (const std::wstring& name : names) rows.push_back(gui.RowOf(IDC_ENTRIES, name));
    gui.Select(IDC_ENTRIES, rows);
    gui.Command(command);
  }
  bool Says(const std::wstring& text) const {
    return WaitUntil([&] { return gui.Status(0) == text; });
  }

  const SavedKey saved_{HKEY_CURRENT_USER, kRunKey};
  const TemporaryFolder folder;
  const GuiProgram gui{GuiProgram::Look::kFresh};
};

TEST_F(LookCloserTest, CopiesALineForEachEntry) {
  const std::wstring abc = folder.Write(L"abc.exe", "abc");
  const std::wstring gone = folder.File(L"gone.exe");
  Add(L"Aaa Abc", L'"' + abc + L"\" /x");
  Add(L"Aab Gone", gone);
  const std::wstring hash = L"ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad";
  const std::vector<std::wstring> both = {L"Aaa Abc", L"Aab Gone"};
  Run(CMD_COPY_COMMAND, both);
  EXPECT_TRUE(Says(L"Copied 2 commands.")) << gui.Status(0);
  EXPECT_EQ(ClipboardText(), L'"' + abc + L"\" /x\r\n" + gone);
  Run(CMD_COPY_PATH, both);
  EXPECT_TRUE(Says(L"Copied 2 paths.")) << gui.Status(0);
  EXPECT_EQ(ClipboardText(), abc + L"\r\n" + gone);
  Run(CMD_COPY_HASH, both);
  EXPECT_TRUE(Says(L"Copied 1 of 2 SHA-256 sums.")) << gui.Status(0);
  EXPECT_EQ(ClipboardText(), hash);
  Run(CMD_COPY_PATH, {L"Aab Gone"});
  EXPECT_TRUE(Says(L"Copied the path.")) << gui.Status(0);
  Run(CMD_COPY_HASH, {L"Aab Gone"});
  EXPECT_TRUE(Says(L"Nothing was copied: no file can be read.")) << gui.Status(0);
  EXPECT_EQ(ClipboardText(), gone);
}

TEST_F(LookCloserTest, SearchesTheWebForTheNameOfTheFileOnly) {
  const EmptiedKeys browser({kBrowser});
  const RegistryTree told(kTold);
  SetValue(HKEY_LOCAL_MACHINE, kBrowser, L"URL Protocol", Sz(L""));
  SetValue(HKEY_LOCAL_MACHINE, kBrowser + L"\\shell\\open\\command", L"",
           Sz(L'"' + ThisProgram() + L"\" --child=Browse \"%1\""));
  Add(L"Aaa Searched", L'"' + folder.Write(L"p\u00E4 & +1%.exe", "MZ") + L"\" secret");
  Run(CMD_SEARCH_WEB, {L"Aaa Searched"});
  const std::wstring address = L"https://www.bing.com/search?q=p%C3%A4%20%26%20%2B1%25.exe";
  EXPECT_TRUE(WaitUntil([&] { return TextOf(told.Get({}, L"Arguments")) == address; }))
      << gui.Status(0) << L", " << TextOf(told.Get({}, L"Arguments"));
}

TEST_F(LookCloserTest, OpensTheFolderOfTheFile) {
  const std::wstring name = folder.Path().substr(folder.Path().rfind(L'\\') + 1);
  Add(L"Aaa There", L'"' + folder.Write(L"a, b.exe", "MZ") + L"\" /x");
  Run(CMD_OPEN_FOLDER, {L"Aaa There"});
  EXPECT_TRUE(CloseWindowOf(name));
  EXPECT_TRUE(Says(L"Opened the folder of \u201CAaa There\u201D.")) << gui.Status(0);
  EXPECT_TRUE(WaitUntil([&] { return FindWindowW(nullptr, name.c_str()) == nullptr; }));
  Add(L"Aab Gone", folder.File(L"below\\lower\\gone.exe"));
  Run(CMD_OPEN_FOLDER, {L"Aab Gone"});
  EXPECT_TRUE(CloseWindowOf(name));
  EXPECT_TRUE(Says(L"The file of \u201CAab Gone\u201D is missing. Opened " + folder.Path() + L"\\"));
}

TEST_F(LookCloserTest, ShowsThePlaceInTheRegistryEditor) {
  // Without it the editor has no last key to be told.
  MakeKey(HKEY_CURRENT_USER, L"Software\\Microsoft\\Windows\\CurrentVersion\\Applets\\Regedit");
  Run(CMD_SHOW_LOCATION, {L"Aurora Mixer"});
  const HWND editor = WaitForEditor();
  ASSERT_NE(editor, nullptr);
  EXPECT_TRUE(WaitUntil([&] { return ShownKey(editor).ends_with(L"HKEY_CURRENT_USER\\" + kRunKey); }))
      << ShownKey(editor);
  CloseEditors();
  EXPECT_TRUE(Says(L"Showed the place of 1 entry."));
}

TEST(RunNowTest, ADangerIsAskedAboutWhateverTheRights) {
  for (const auto rights : {GuiProgram::Rights::kFull, GuiProgram::Rights::kLimited}) {
    const GuiProgram gui(GuiProgram::Look::kFresh, rights);
    gui.Select(IDC_ENTRIES, {gui.RowOf(IDC_ENTRIES, L"Service Host")});
    gui.Command(CMD_EXECUTE);
    const HWND question = gui.WaitForDialog();
    ASSERT_NE(question, nullptr);
    gui.Screenshot(L"look-closer-run");
    SendMessageW(question, WM_COMMAND, IDCANCEL, 0);
    EXPECT_TRUE(WaitUntil([&] { return !IsWindow(question); }));
    EXPECT_FALSE(gui.Status(0).starts_with(L"Started"));
  }
}

}  // namespace
}  // namespace smh::test
