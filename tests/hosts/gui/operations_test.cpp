// What the user does with entries, seen in the registry.
#include "hosts/gui/resource.h"
#include "tests/display/display_support.h"
#include "tests/hosts/cli/startupctl_process.h"
#include "tests/hosts/gui/gui_program.h"
#include "tests/support/file_fixture.h"
#include "tests/support/registry_fixture.h"
#include "tests/support/waiting.h"

#include <nlohmann/json.hpp>

namespace smh::test {

namespace {

// In one look, since somebody else is at work in the key. Empty for a missing value.
std::wstring TextIn(const std::wstring& key, const std::wstring& name) {
  wchar_t text[256] = L"";
  DWORD size = sizeof(text);
  const LSTATUS status =
      RegGetValueW(HKEY_CURRENT_USER, key.c_str(), name.c_str(),
                   RRF_RT_REG_SZ | RRF_RT_REG_EXPAND_SZ | RRF_NOEXPAND, nullptr, text, &size);
  return status == ERROR_SUCCESS ? text : L"";
}
bool IsInRun(const std::wstring& name) {
  return !TextIn(kRunKey, name).empty();
}
bool IsAside(const std::wstring& name) {
  return !TextIn(kRunSide, name).empty();
}

void Press(HWND dialog, int button) {
  SendMessageW(dialog, WM_COMMAND, MAKEWPARAM(button, BN_CLICKED),
               reinterpret_cast<LPARAM>(GetDlgItem(dialog, button)));
  // What is posted while a dialog closes may be lost with it.
  EXPECT_TRUE(WaitUntil([dialog] { return !IsWindow(dialog); }));
}

void SetText(HWND dialog, int field, const std::wstring& text) {
  SendDlgItemMessageW(dialog, field, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text.c_str()));
}

class OperationsTest : public testing::Test {
 protected:
  int Row(const std::wstring& name) const { return gui.RowOf(IDC_ENTRIES, name); }
  void SelectNames(const std::vector<std::wstring>& names) const {
    std::vector<int> rows;
    for (const std::wstring& name : names) rows.push_back(Row(name));
    gui.Select(IDC_ENTRIES, rows);
  }
  std::vector<std::wstring> SelectedNames() const {
    std::vector<std::wstring> names;
    for (const int row : gui.Selection(IDC_ENTRIES)) names.push_back(gui.Cell(IDC_ENTRIES, row, 0));
    return names;
  }

  const SavedKey saved_{HKEY_CURRENT_USER, kRunKey};
  const GuiProgram gui{GuiProgram::Look::kFresh};
};

TEST_F(OperationsTest, TheCheckBoxDisablesAndEnables) {
  SelectNames({L"Aurora Mixer"});
  gui.ClickCheckBox(Row(L"Aurora Mixer"));
  EXPECT_TRUE(WaitUntil([] { return !IsInRun(L"Aurora Mixer") && IsAside(L"Aurora Mixer"); }));
  EXPECT_TRUE(WaitUntil([&] { return !gui.IsChecked(Row(L"Aurora Mixer")); }));
  EXPECT_EQ(SelectedNames(), std::vector<std::wstring>{L"Aurora Mixer"});
  EXPECT_TRUE(WaitUntil([&] { return gui.CanRun(CMD_ENABLE) && !gui.CanRun(CMD_DISABLE); }));
  gui.ClickCheckBox(Row(L"Aurora Mixer"));
  EXPECT_TRUE(WaitUntil([] { return IsInRun(L"Aurora Mixer") && !IsAside(L"Aurora Mixer"); }));
  EXPECT_TRUE(WaitUntil([&] { return gui.IsChecked(Row(L"Aurora Mixer")); }));
}

TEST_F(OperationsTest, SetsTaskManagersSwitch) {
  const SavedKey switches(HKEY_CURRENT_USER,
                          L"Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\StartupApproved\\Run");
  SelectNames({L"Meadow Notes"});
  const auto status = [&] { return gui.Cell(IDC_ENTRIES, Row(L"Meadow Notes"), 1); };
  const std::wstring off = L"On, but switched off in Task Manager";
  for (const UINT back : {CMD_SWITCH_ON, CMD_ENABLE}) {
    gui.Command(CMD_SWITCH_OFF);
    EXPECT_TRUE(WaitUntil([&] { return status() == off && gui.CanRun(CMD_ENABLE); })) << status();
    EXPECT_TRUE(IsInRun(L"Meadow Notes"));
    gui.Command(back);
    EXPECT_TRUE(WaitUntil([&] { return status() == L"On" && !gui.CanRun(CMD_ENABLE); })) << status();
  }
}

TEST_F(OperationsTest, SeveralAtOnce) {
  SelectNames({L"Card Watch", L"Inkwell", L"Plain Clock"});
  EXPECT_TRUE(WaitUntil([&] { return gui.CanRun(CMD_ENABLE) && gui.CanRun(CMD_DISABLE); }));
  EXPECT_FALSE(gui.CanRun(CMD_CHANGE_COMMAND));
  gui.Command(CMD_DISABLE);
  EXPECT_TRUE(WaitUntil([] { return IsAside(L"Card Watch") && IsAside(L"Inkwell"); }));
  EXPECT_TRUE(WaitUntil([&] { return gui.Status(0) == L"Disabled 2 entries."; }));
  EXPECT_TRUE(WaitUntil([&] { return !gui.CanRun(CMD_DISABLE); }));
  EXPECT_EQ(SelectedNames(), (std::vector<std::wstring>{L"Card Watch", L"Inkwell", L"Plain Clock"}));
  // The history shows both as one action; a part of it can be taken back, and then the rest.
  gui.Command(CMD_UNDO_HISTORY);
  const auto cell = [&](int row, int column) { return gui.Cell(IDC_CHECKPOINTS, row, column); };
  ASSERT_TRUE(WaitUntil([&] { return cell(0, 0) == L"+ Disabling entries (2 changes)"; })) << cell(0, 0);
  gui.Select(IDC_CHECKPOINTS, {0});
  PostMessageW(gui.Control(IDC_CHECKPOINTS), WM_KEYDOWN, VK_RIGHT, 0);
  ASSERT_TRUE(WaitUntil([&] { return cell(2, 0).ends_with(L"Disabling Inkwell"); })) << cell(2, 0);
  gui.Select(IDC_CHECKPOINTS, {2});
  gui.Command(CMD_UNDO);
  EXPECT_TRUE(WaitUntil([&] { return cell(0, 1) == L"Partly done" && cell(2, 1) == L"Undone"; }));
  EXPECT_TRUE(IsInRun(L"Inkwell") && IsAside(L"Card Watch"));
  gui.Select(IDC_CHECKPOINTS, {0});
  gui.Command(CMD_UNDO);
  EXPECT_TRUE(WaitUntil([&] { return IsInRun(L"Card Watch") && cell(0, 1) == L"Undone"; }));
}

TEST_F(OperationsTest, AChangeFromOutsideAppears) {
  gui.SelectNode(L"Run, this user");
  SelectNames({L"Meadow Notes"});
  const int count = gui.Count(IDC_ENTRIES);
  SetValue(HKEY_CURRENT_USER, kRunKey, L"Aaa Newcomer", Sz(L"C:\\Samples\\plain.exe new"));
  EXPECT_TRUE(WaitUntil([&] { return gui.Count(IDC_ENTRIES) == count + 1; }, 2'000));
  EXPECT_EQ(Row(L"Aaa Newcomer"), 0);
  EXPECT_EQ(SelectedNames(), std::vector<std::wstring>{L"Meadow Notes"});
  RemoveValue(HKEY_CURRENT_USER, kRunKey, L"Aaa Newcomer");
  EXPECT_TRUE(WaitUntil([&] { return gui.Count(IDC_ENTRIES) == count; }, 2'000));
  EXPECT_EQ(SelectedNames(), std::vector<std::wstring>{L"Meadow Notes"});
}

TEST_F(OperationsTest, DeletingAsksFirst) {
  SelectNames({L"Fernhill Update"});
  for (const int answer : {IDCANCEL, IDOK}) {
    gui.Command(CMD_DELETE);
    const HWND question = gui.WaitForDialog();
    ASSERT_NE(question, nullptr);
    EXPECT_TRUE(IsInRun(L"Fernhill Update"));
    Press(question, answer);
  }
  EXPECT_TRUE(WaitUntil([&] { return !IsInRun(L"Fernhill Update") && Row(L"Fernhill Update") == -1; }));
}

TEST_F(OperationsTest, AddsMovesAndGivesCommands) {
  gui.SelectNode(L"Run, this user");
  gui.Command(CMD_ADD);
  HWND dialog = gui.WaitForDialog();
  ASSERT_NE(dialog, nullptr);
  EXPECT_FALSE(IsWindowEnabled(GetDlgItem(dialog, IDOK)));
  SetText(dialog, IDC_NAME, L"Zeta Test");
  SetText(dialog, IDC_COMMAND, L"C:\\Samples\\plain.exe zeta");
  EXPECT_TRUE(IsWindowEnabled(GetDlgItem(dialog, IDOK)));
  Press(dialog, IDOK);
  EXPECT_TRUE(WaitUntil([] { return IsInRun(L"Zeta Test"); }));
  EXPECT_TRUE(WaitUntil([&] { return SelectedNames() == std::vector<std::wstring>{L"Zeta Test"}; }));

  gui.Command(CMD_CHANGE_COMMAND);
  dialog = gui.WaitForDialog();
  ASSERT_NE(dialog, nullptr);
  SetText(dialog, IDC_COMMAND, L"C:\\Samples\\plain.exe eta");
  Press(dialog, IDOK);
  EXPECT_TRUE(WaitUntil([] { return TextIn(kRunKey, L"Zeta Test") == L"C:\\Samples\\plain.exe eta"; }));
  EXPECT_TRUE(WaitUntil(
      [&] { return gui.Cell(IDC_ENTRIES, Row(L"Zeta Test"), 4) == L"C:\\Samples\\plain.exe eta"; }));

  gui.Command(CMD_MOVE);
  dialog = gui.WaitForDialog();
  ASSERT_NE(dialog, nullptr);
  const WPARAM once = static_cast<WPARAM>(
      SendDlgItemMessageW(dialog, IDC_LOCATION, CB_FINDSTRINGEXACT, static_cast<WPARAM>(-1),
                          reinterpret_cast<LPARAM>(L"Run once, this user")));
  SendDlgItemMessageW(dialog, IDC_LOCATION, CB_SETCURSEL, once, 0);
  Press(dialog, IDOK);
  EXPECT_TRUE(WaitUntil([] { return !IsInRun(L"Zeta Test"); }));
  const auto moved = [] {
    for (const std::wstring& name : Values(HKEY_CURRENT_USER, kRunKey + L"Once")) {
      if (TextIn(kRunKey + L"Once", name) == L"C:\\Samples\\plain.exe eta") return name;
    }
    return std::wstring();
  };
  ASSERT_TRUE(WaitUntil([&] { return !moved().empty(); }));
  RemoveValue(HKEY_CURRENT_USER, kRunKey + L"Once", moved());
}

TEST_F(OperationsTest, ARefusalShowsTheLibrarysText) {
  SelectNames({L"Inkwell"});
  // Nobody may write the side key, though the window still believes so.
  const LimitedKey limited(HKEY_CURRENT_USER, kRunSide, LimitedKey::Rights::kReadOnly);
  gui.Command(CMD_DISABLE);
  const HWND box = gui.WaitForDialog();
  ASSERT_NE(box, nullptr);
  wchar_t text[512] = L"";
  SendDlgItemMessageW(box, IDC_PROMPT, WM_GETTEXT, ARRAYSIZE(text), reinterpret_cast<LPARAM>(text));
  EXPECT_TRUE(std::wstring(text).starts_with(L"Inkwell: ")) << text;
  Press(box, IDOK);
  EXPECT_TRUE(IsInRun(L"Inkwell"));
}

TEST_F(OperationsTest, UndoesAndRedoes) {
  SelectNames({L"Aurora Mixer"});
  gui.Command(CMD_DISABLE);
  ASSERT_TRUE(WaitUntil([&] { return IsAside(L"Aurora Mixer") && gui.CanRun(CMD_UNDO); }));
  EXPECT_FALSE(gui.CanRun(CMD_REDO));
  gui.Command(CMD_UNDO);
  EXPECT_TRUE(WaitUntil([&] { return IsInRun(L"Aurora Mixer") && gui.CanRun(CMD_REDO); }));
  EXPECT_EQ(gui.Status(0), L"Undid: Disabling Aurora Mixer");
  EXPECT_TRUE(WaitUntil([&] { return gui.IsChecked(Row(L"Aurora Mixer")); }));
  gui.Command(CMD_REDO);
  EXPECT_TRUE(WaitUntil([&] { return IsAside(L"Aurora Mixer") && !gui.CanRun(CMD_REDO); }));

  // From the history, and over a later change only when the user says so.
  gui.Command(CMD_UNDO_HISTORY);
  EXPECT_TRUE(WaitUntil(
      [&] { return gui.Count(IDC_CHECKPOINTS) > 0 && IsWindowVisible(gui.Control(IDC_CHECKPOINTS)); }));
  gui.Select(IDC_CHECKPOINTS, {0});
  EXPECT_TRUE(WaitUntil([&] { return gui.Count(IDC_STEPS) > 0; }));
  EXPECT_EQ(gui.Cell(IDC_CHECKPOINTS, 0, 1), L"Done");
  // The change has come to the details meanwhile, which stay out of sight.
  EXPECT_FALSE(IsWindowVisible(gui.Control(IDC_DETAILS)));
  gui.Screenshot(L"startupmanager-undo");
  SetValue(HKEY_CURRENT_USER, kRunSide, L"Aurora Mixer", Sz(L"changed meanwhile"));
  for (const int answer : {IDCANCEL, IDOK}) {
    gui.Command(CMD_UNDO);
    const HWND question = gui.WaitForDialog();
    ASSERT_NE(question, nullptr);
    EXPECT_TRUE(IsAside(L"Aurora Mixer"));
    Press(question, answer);
  }
  EXPECT_TRUE(WaitUntil([] { return IsInRun(L"Aurora Mixer") && !IsAside(L"Aurora Mixer"); }));
  EXPECT_TRUE(WaitUntil([&] { return gui.Cell(IDC_CHECKPOINTS, 0, 1) == L"Undone"; }));
}

TEST_F(OperationsTest, ExportsWhatIsShown) {
  const TemporaryFolder folder;
  const std::wstring file = folder.File(L"entries.json");
  gui.Search(L"quillmark");
  gui.Command(CMD_EXPORT);
  const HWND dialog = gui.WaitForDialog();
  ASSERT_NE(dialog, nullptr);
  // The field for the file name has one of these numbers, depending on the look of the dialog.
  for (const int field : {0x47C, 0x480}) {
    if (GetDlgItem(dialog, field) != nullptr) SetText(dialog, field, file);
  }
  Press(dialog, IDOK);
  ASSERT_TRUE(WaitUntil([&] { return gui.Status(0).starts_with(L"Wrote "); }));
  const auto entries = nlohmann::json::parse(ReadFileBytes(file));
  EXPECT_EQ(entries.size(), static_cast<std::size_t>(gui.Count(IDC_ENTRIES)));
  EXPECT_FALSE(entries.empty());
  for (const auto& entry : entries) EXPECT_EQ(entry["company"], "Quillmark");
}

}  // namespace
}  // namespace smh::test
