// Changes of very many entries: how far they are, cancelling them, and what is left to undo.
#include "hosts/gui/resource.h"
#include "tests/hosts/gui/gui_program.h"
#include "tests/support/registry_fixture.h"
#include "tests/support/waiting.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace smh::test {

namespace {

constexpr int kEntries = 1500;

class LongActionTest : public testing::Test {
 protected:
  LongActionTest() {
    const ScopedKey key = MakeKey(HKEY_CURRENT_USER, kRunKey);
    for (int i = 0; i < kEntries; ++i) {
      SetValue(HKEY_CURRENT_USER, kRunKey, L"Many " + std::to_wstring(i),
               Sz(L"C:\\Samples\\plain.exe number " + std::to_wstring(i)));
    }
    gui.emplace(GuiProgram::Look::kFresh);
  }

  static int CountIn(const std::wstring& key) {
    return static_cast<int>(std::ranges::count_if(
        Values(HKEY_CURRENT_USER, key), [](const auto& name) { return name.starts_with(L"Many "); }));
  }
  static int Aside() { return CountIn(kRunSide); }
  std::wstring Progress() const {
    wchar_t text[128] = L"";
    SendMessageW(gui->Control(IDC_PROGRESS), WM_GETTEXT, ARRAYSIZE(text), reinterpret_cast<LPARAM>(text));
    return IsWindowVisible(gui->Control(IDC_PROGRESS)) != FALSE ? text : L"";
  }
  // Returns in the middle of it.
  void DisableAll() const {
    gui->Search(L"number");
    ASSERT_TRUE(WaitUntil([&] { return gui->Count(IDC_ENTRIES) == kEntries; }));
    gui->Command(CMD_SELECT_ALL);
    gui->Command(CMD_DISABLE);
    ASSERT_TRUE(WaitUntil([&] { return Progress().ends_with(L" of 1500 entries"); })) << gui->Status(0);
    EXPECT_TRUE(Progress().starts_with(L"Disabling ")) << Progress();
  }
  // The newest change of the history means what is aside, and undo brings all of it back.
  void ExpectOneUndo(int done) const {
    gui->Command(CMD_UNDO_HISTORY);
    const std::wstring title = L"+ Disabling entries (" + std::to_wstring(done) + L" changes)";
    const auto cell = [&](int column) { return gui->Cell(IDC_CHECKPOINTS, 0, column); };
    ASSERT_TRUE(WaitUntil([&] { return cell(0) == title; }, 60'000)) << cell(0);
    EXPECT_EQ(cell(1), L"Done");
    gui->Command(CMD_UNDO);
    EXPECT_TRUE(WaitUntil([&] { return cell(1) == L"Undone"; }, 60'000)) << cell(1);
    EXPECT_TRUE(WaitUntil([&] { return gui->Status(0) == L"Undid: " + title.substr(2); }));
    EXPECT_EQ(Progress(), L"");
    EXPECT_EQ(Aside(), 0);
    EXPECT_EQ(CountIn(kRunKey), kEntries);
  }

  const SavedKey saved_{HKEY_CURRENT_USER, kRunKey};
  std::optional<GuiProgram> gui;
};

TEST_F(LongActionTest, IsCountedAndCancelledByEsc) {
  ASSERT_NO_FATAL_FAILURE(DisableAll());
  gui->Screenshot(L"startupmanager-progress");
  // The window answers, and begins nothing else.
  gui->Search(L"number 59");
  EXPECT_EQ(gui->Count(IDC_ENTRIES), 25);
  gui->Command(CMD_SELECT_ALL);
  gui->Command(CMD_DELETE);
  EXPECT_TRUE(WaitUntil([&] {
    return gui->Status(0) ==
           L"Not done: first let \u201CDisabling 1500 entries\u201D end, or cancel it with Esc.";
  })) << gui->Status(0);
  // Esc empties the search first.
  for (int i = 0; i < 2; ++i) {
    ASSERT_NE(Progress(), L"");
    PostMessageW(gui->Control(IDC_SEARCH), WM_KEYDOWN, VK_ESCAPE, 0);
    EXPECT_TRUE(WaitUntil([&] { return gui->Count(IDC_ENTRIES) > kEntries; }));
  }
  EXPECT_TRUE(WaitUntil([&] { return Progress().empty(); }));
  const int done = Aside();
  EXPECT_LT(done, kEntries) << "all of them were done by then";
  const std::wstring said = L"Disabled " + std::to_wstring(done) + L" entries. Cancelled: " +
                            std::to_wstring(kEntries - done) + L" entries left as they were.";
  EXPECT_TRUE(WaitUntil([&] { return gui->Status(0) == said; })) << gui->Status(0);
  ExpectOneUndo(done);
}

TEST_F(LongActionTest, ClosingTheWindowCancels) {
  ASSERT_NO_FATAL_FAILURE(DisableAll());
  gui.reset();
  const int done = Aside();
  EXPECT_LT(done, kEntries) << "closing waited for all of them";
  gui.emplace(GuiProgram::Look::kAsLeft);
  ExpectOneUndo(done);
}

}  // namespace
}  // namespace smh::test
