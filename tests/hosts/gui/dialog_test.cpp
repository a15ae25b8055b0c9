// What the dialogs say, where they stand, and what becomes of what was typed.
#include "core/contracts/intf_safeguard.h"
#include "hosts/common/text_encoding.h"
#include "hosts/gui/resource.h"
#include "tests/display/display_support.h"
#include "tests/hosts/gui/gui_program.h"
#include "tests/siblings/common/sibling_library.h"
#include "tests/support/registry_fixture.h"
#include "tests/support/waiting.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace smh::test {

namespace {

std::wstring TextOfField(HWND dialog, int field) {
  wchar_t text[512] = L"";
  SendDlgItemMessageW(dialog, field, WM_GETTEXT, ARRAYSIZE(text), reinterpret_cast<LPARAM>(text));
  return text;
}

void SetText(HWND dialog, int field, const std::wstring& text) {
  SendDlgItemMessageW(dialog, field, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text.c_str()));
}

void Press(HWND dialog, int button) {
  SendMessageW(dialog, WM_COMMAND, MAKEWPARAM(button, BN_CLICKED),
               reinterpret_cast<LPARAM>(GetDlgItem(dialog, button)));
}

// A real key, for whatever has the focus.
void Type(WORD key) {
  keybd_event(static_cast<BYTE>(key), 0, 0, 0);
  keybd_event(static_cast<BYTE>(key), 0, KEYEVENTF_KEYUP, 0);
}

bool Closes(HWND dialog) {
  return WaitUntil([dialog] { return !IsWindow(dialog); });
}

// To a pixel or two, since halves are rounded.
void ExpectInTheMiddle(HWND dialog, HWND owner) {
  RECT inner;
  RECT outer;
  GetWindowRect(dialog, &inner);
  GetWindowRect(owner, &outer);
  EXPECT_LE(std::abs((inner.left + inner.right) - (outer.left + outer.right)), 2);
  EXPECT_LE(std::abs((inner.top + inner.bottom) - (outer.top + outer.bottom)), 2);
}

class DialogTest : public testing::Test {
 protected:
  void Select(const std::wstring& name) const { gui.Select(IDC_ENTRIES, {gui.RowOf(IDC_ENTRIES, name)}); }
  HWND Open(UINT command) const {
    gui.Command(command);
    const HWND dialog = gui.WaitForDialog();
    EXPECT_NE(dialog, nullptr);
    return dialog;
  }

  const SavedKey saved_{HKEY_CURRENT_USER, kRunKey};
  const GuiProgram gui{GuiProgram::Look::kFresh};
};

TEST_F(DialogTest, ARefusedEntryStaysToBeMended) {
  gui.SelectNode(L"Run, this user");
  const HWND dialog = Open(CMD_ADD);
  ExpectInTheMiddle(dialog, gui.Window());
  SetText(dialog, IDC_NAME, L"Zeta Test");
  SetText(dialog, IDC_COMMAND, L"C:\\Samples\\plain.exe zeta");
  {
    const LimitedKey limited(HKEY_CURRENT_USER, kRunKey, LimitedKey::Rights::kReadOnly);
    Press(dialog, IDOK);
    ASSERT_TRUE(WaitUntil([&] { return !TextOfField(dialog, IDC_FAULT).empty(); }));
    gui.Screenshot(L"dialog-add-refused");
  }
  EXPECT_EQ(TextOfField(dialog, IDC_NAME), L"Zeta Test");
  EXPECT_EQ(TextOfField(dialog, IDC_COMMAND), L"C:\\Samples\\plain.exe zeta");
  EXPECT_TRUE(IsWindowEnabled(GetDlgItem(dialog, IDC_NAME)) && IsWindowEnabled(GetDlgItem(dialog, IDOK)));
  EXPECT_EQ(FocusOf(dialog), GetDlgItem(dialog, IDC_NAME));
  SetText(dialog, IDC_NAME, L"Zeta Other");
  EXPECT_EQ(TextOfField(dialog, IDC_FAULT), L"") << "said of what is no more there";
  Press(dialog, IDOK);
  EXPECT_TRUE(Closes(dialog));
  EXPECT_TRUE(WaitUntil([&] { return gui.RowOf(IDC_ENTRIES, L"Zeta Other") >= 0; }));
  EXPECT_EQ(gui.RowOf(IDC_ENTRIES, L"Zeta Test"), -1);
}

TEST_F(DialogTest, ARefusedCommandStaysToBeMended) {
  Select(L"Inkwell");
  const HWND dialog = Open(CMD_CHANGE_COMMAND);
  ExpectInTheMiddle(dialog, gui.Window());
  const std::wstring wanted = TextOfField(dialog, IDC_COMMAND) + L" /more";
  SetText(dialog, IDC_COMMAND, wanted);
  {
    const LimitedKey limited(HKEY_CURRENT_USER, kRunKey, LimitedKey::Rights::kReadOnly);
    Press(dialog, IDOK);
    ASSERT_TRUE(WaitUntil([&] { return TextOfField(dialog, IDC_FAULT).starts_with(L"Inkwell: "); }));
    gui.Screenshot(L"dialog-change-refused");
  }
  EXPECT_EQ(TextOfField(dialog, IDC_COMMAND), wanted);
  Press(dialog, IDOK);
  EXPECT_TRUE(Closes(dialog));
  EXPECT_TRUE(
      WaitUntil([&] { return gui.Cell(IDC_ENTRIES, gui.RowOf(IDC_ENTRIES, L"Inkwell"), 4) == wanted; }));
}

TEST_F(DialogTest, WhatWasTriedGoesOnWithoutItsDialog) {
  gui.SelectNode(L"Run, this user");
  const HWND dialog = Open(CMD_ADD);
  SetText(dialog, IDC_NAME, L"Zeta Test");
  SetText(dialog, IDC_COMMAND, L"C:\\Samples\\plain.exe zeta");
  const SiblingLibrary guardkit(L"guardkit.dll");
  ISafeguard& safeguard = *guardkit.Service<ISafeguard>();
  ASSERT_EQ(safeguard.BeginCheckpoint(L"held"), ERROR_SUCCESS);
  Press(dialog, IDOK);
  EXPECT_FALSE(IsWindowEnabled(GetDlgItem(dialog, IDC_NAME))) << "the try did not wait for the journal";
  Press(dialog, IDCANCEL);
  EXPECT_TRUE(Closes(dialog));
  ASSERT_EQ(safeguard.EndCheckpoint(), ERROR_SUCCESS);
  EXPECT_TRUE(WaitUntil([&] { return gui.Status(0) == L"Added \u201CZeta Test\u201D."; }))
      << ToUtf8(gui.Status(0));
  EXPECT_TRUE(WaitUntil([&] { return gui.RowOf(IDC_ENTRIES, L"Zeta Test") >= 0; }));
}

TEST_F(DialogTest, QuestionsNameWhatWillBeDoneAndEnterMeansNo) {
  const int fernhill = gui.RowOf(IDC_ENTRIES, L"Fernhill Update");
  gui.Select(IDC_ENTRIES, {fernhill, gui.RowOf(IDC_ENTRIES, L"Inkwell")});
  SetForegroundWindow(gui.Window());
  const HWND question = Open(CMD_DELETE);
  EXPECT_EQ(TextOfField(question, IDOK), L"Delete 2 entries");
  EXPECT_EQ(TextOfField(question, IDCANCEL), L"Cancel");
  EXPECT_TRUE(TextOfField(question, IDC_PROMPT).starts_with(L"Delete 2 entries?"));
  ExpectInTheMiddle(question, gui.Window());
  gui.Screenshot(L"dialog-question");
  EXPECT_TRUE(WaitUntil([&] { return FocusOf(question) == GetDlgItem(question, IDCANCEL); }));
  Type(VK_RETURN);
  EXPECT_TRUE(Closes(question));
  Type(VK_DELETE);
  const HWND again = gui.WaitForDialog();
  ASSERT_NE(again, nullptr) << "the list has the keyboard again";
  Press(again, IDCANCEL);
  EXPECT_TRUE(Closes(again));
  EXPECT_EQ(gui.RowOf(IDC_ENTRIES, L"Fernhill Update"), fernhill);
}

TEST_F(DialogTest, TheSaveDialogSaysWhichEntriesGo) {
  const auto title = [&] {
    const HWND dialog = Open(CMD_EXPORT);
    wchar_t text[128] = L"";
    SendMessageW(dialog, WM_GETTEXT, ARRAYSIZE(text), reinterpret_cast<LPARAM>(text));
    Press(dialog, IDCANCEL);
    EXPECT_TRUE(Closes(dialog));
    return std::wstring(text);
  };
  gui.Select(IDC_ENTRIES, {0, 1, 2});
  EXPECT_EQ(title(), L"Export 3 selected entries");
  gui.Select(IDC_ENTRIES, {0});
  EXPECT_EQ(title(), L"Export all " + std::to_wstring(gui.Count(IDC_ENTRIES)) + L" entries that are shown");
}

}  // namespace
}  // namespace smh::test
