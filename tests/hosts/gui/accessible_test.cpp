// What programs that read the screen are told, asked from another process.
#include "hosts/gui/resource.h"
#include "infra/runtime/com_ptr.h"
#include "infra/runtime/scoped_com.h"
#include "tests/display/display_support.h"
#include "tests/hosts/gui/gui_program.h"
#include "tests/support/registry_fixture.h"
#include "tests/support/waiting.h"

#include <gtest/gtest.h>
#include <oleacc.h>

#include <algorithm>
#include <memory>

namespace smh::test {

namespace {

VARIANT Child(int number) {
  VARIANT child = {};
  child.vt = VT_I4;
  child.lVal = number;
  return child;
}

class Accessible {
 public:
  explicit Accessible(HWND control) {
    EXPECT_EQ(AccessibleObjectFromWindow(control, static_cast<DWORD>(OBJID_CLIENT), IID_IAccessible,
                                         reinterpret_cast<void**>(object_.Put())),
              S_OK);
  }
  IAccessible* operator->() const { return object_.Get(); }

  int Count() const {
    LONG count = -1;
    EXPECT_EQ(object_->get_accChildCount(&count), S_OK);
    return count;
  }
  std::wstring Text(HRESULT (STDMETHODCALLTYPE IAccessible::*get)(VARIANT, BSTR*), int child) const {
    BSTR text = nullptr;
    EXPECT_TRUE(SUCCEEDED((object_.Get()->*get)(Child(child), &text))) << child;
    std::wstring result = text == nullptr ? L"" : text;
    SysFreeString(text);
    return result;
  }
  std::wstring Name(int child) const { return Text(&IAccessible::get_accName, child); }
  LONG Number(HRESULT (STDMETHODCALLTYPE IAccessible::*get)(VARIANT, VARIANT*), int child) const {
    VARIANT number = {};
    EXPECT_EQ((object_.Get()->*get)(Child(child), &number), S_OK) << child;
    return number.vt == VT_I4 ? number.lVal : -1;
  }
  LONG Role(int child) const { return Number(&IAccessible::get_accRole, child); }
  bool Is(int child, LONG state) const {
    return (Number(&IAccessible::get_accState, child) & state) == state;
  }
  int Find(const std::wstring& begin) const {
    for (int child = 1; child <= Count(); ++child) {
      if (Name(child).starts_with(begin)) return child;
    }
    return 0;
  }
  int Focus() const {
    VARIANT child = {};
    return object_->get_accFocus(&child) == S_OK && child.vt == VT_I4 ? static_cast<int>(child.lVal) : -1;
  }
  // A single one; 0 for none, and -1 for a collection.
  int Selection() const {
    VARIANT selected = {};
    if (object_->get_accSelection(&selected) != S_OK) return 0;
    const int number = selected.vt == VT_I4 ? static_cast<int>(selected.lVal) : -1;
    EXPECT_TRUE(selected.vt == VT_I4 || selected.vt == VT_UNKNOWN);
    VariantClear(&selected);
    return number;
  }

 private:
  ComPtr<IAccessible> object_;
};

struct Event {
  DWORD event;
  HWND window;
  LONG child;
};
std::vector<Event> g_events;

void CALLBACK TakeEvent(HWINEVENTHOOK, DWORD event, HWND window, LONG object, LONG child, DWORD, DWORD) {
  if (object == OBJID_CLIENT) g_events.push_back({event, window, child});
}

bool WaitForEvent(DWORD event, HWND window, int child) {
  return WaitUntil([&] {
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) DispatchMessageW(&message);
    return std::any_of(g_events.begin(), g_events.end(), [&](const Event& each) {
      return each.event == event && each.window == window && each.child == child;
    });
  });
}

class AccessibleTest : public testing::Test {
 protected:
  const ScopedCom com_{COINIT_APARTMENTTHREADED};
  const SavedKey saved_{HKEY_CURRENT_USER, kRunKey};
  const std::unique_ptr<GuiProgram> gui = std::make_unique<GuiProgram>(GuiProgram::Look::kFresh);
};

TEST_F(AccessibleTest, ListsTellTheirRows) {
  const HWND control = gui->Control(IDC_ENTRIES);
  const Accessible list(control);
  EXPECT_EQ(list.Role(0), ROLE_SYSTEM_LIST);
  EXPECT_EQ(list.Name(0), L"Start-up entries");
  EXPECT_EQ(list.Count(), gui->Count(IDC_ENTRIES));
  const int mixer = list.Find(L"Aurora Mixer, Status: On, Company: Northlight Audio Ltd., Trust: ");
  const int off = list.Find(L"Card Reader, Status: Off");
  ASSERT_GT(mixer, 0) << list.Name(1);
  ASSERT_GT(off, 0);
  EXPECT_EQ(list.Role(mixer), ROLE_SYSTEM_LISTITEM);
  EXPECT_TRUE(list.Is(mixer, STATE_SYSTEM_CHECKED));
  EXPECT_FALSE(list.Is(off, STATE_SYSTEM_CHECKED));

  SetForegroundWindow(gui->Window());
  EXPECT_EQ(list->accSelect(SELFLAG_TAKEFOCUS | SELFLAG_TAKESELECTION, Child(mixer)), S_OK);
  EXPECT_EQ(gui->Selection(IDC_ENTRIES), std::vector<int>{mixer - 1});
  EXPECT_TRUE(list.Is(mixer, STATE_SYSTEM_FOCUSED | STATE_SYSTEM_SELECTED));
  EXPECT_EQ(list.Focus(), mixer);
  EXPECT_EQ(list.Selection(), mixer);
  EXPECT_EQ(list->accSelect(SELFLAG_ADDSELECTION, Child(off)), S_OK);
  EXPECT_EQ(list.Selection(), -1);
  EXPECT_TRUE(list.Is(mixer, STATE_SYSTEM_SELECTED) && list.Is(off, STATE_SYSTEM_SELECTED));

  LONG left = 0, top = 0, width = 0, height = 0;
  EXPECT_EQ(list->accLocation(&left, &top, &width, &height, Child(mixer)), S_OK);
  VARIANT hit = {};
  EXPECT_EQ(list->accHitTest(left + 40, top + height / 2, &hit), S_OK);
  EXPECT_EQ(hit.lVal, mixer);
  BSTR none = nullptr;
  EXPECT_EQ(list->get_accName(Child(list.Count() + 1), &none), E_INVALIDARG);

  EXPECT_EQ(list.Text(&IAccessible::get_accDefaultAction, mixer), L"Show details");
  EXPECT_EQ(list->accDoDefaultAction(Child(mixer)), S_OK);
  EXPECT_TRUE(WaitUntil([&] { return GetDlgCtrlID(FocusOf(gui->Window())) == IDC_DETAILS; }));
}

TEST_F(AccessibleTest, ChangesAreTold) {
  g_events.clear();
  const HWINEVENTHOOK hook = SetWinEventHook(EVENT_OBJECT_FOCUS, EVENT_OBJECT_NAMECHANGE, nullptr, TakeEvent,
                                             ProcessOf(gui->Window()), 0, WINEVENT_OUTOFCONTEXT);
  ASSERT_NE(hook, nullptr);
  SetForegroundWindow(gui->Window());
  const HWND control = gui->Control(IDC_ENTRIES);
  const Accessible list(control);
  const int mixer = list.Find(L"Aurora Mixer,");
  EXPECT_EQ(list->accSelect(SELFLAG_TAKEFOCUS | SELFLAG_TAKESELECTION, Child(mixer)), S_OK);
  EXPECT_TRUE(WaitForEvent(EVENT_OBJECT_FOCUS, control, mixer));
  EXPECT_TRUE(WaitForEvent(EVENT_OBJECT_SELECTION, control, mixer));
  gui->Command(CMD_DISABLE);
  EXPECT_TRUE(WaitForEvent(EVENT_OBJECT_STATECHANGE, control, mixer)) << "the check box";
  EXPECT_TRUE(WaitForEvent(EVENT_OBJECT_NAMECHANGE, control, mixer)) << "the status";

  gui->Command(CMD_SELECT_ALL);
  EXPECT_TRUE(WaitForEvent(EVENT_OBJECT_SELECTIONWITHIN, control, CHILDID_SELF));
  const int all = gui->Count(IDC_ENTRIES);
  gui->Search(L"program files");
  ASSERT_TRUE(WaitUntil([&] { return gui->Count(IDC_ENTRIES) < all; }));
  ASSERT_GT(gui->Selection(IDC_ENTRIES).size(), 5u) << "what is left stays selected";
  g_events.clear();
  gui->Search(L"");
  ASSERT_TRUE(WaitUntil([&] { return gui->Count(IDC_ENTRIES) == all; }));
  EXPECT_TRUE(WaitForEvent(EVENT_OBJECT_SELECTIONWITHIN, control, CHILDID_SELF));
  const auto told = std::count_if(g_events.begin(), g_events.end(), [](const Event& each) {
    return each.event == EVENT_OBJECT_SELECTIONWITHIN;
  });
  EXPECT_LE(told, 3) << "rows that the program selects again are told one by one";
  UnhookWinEvent(hook);
}

TEST_F(AccessibleTest, TreeBarAndSearchTellWhatTheyAre) {
  const Accessible tree(gui->Control(IDC_TREE));
  EXPECT_EQ(tree.Role(0), ROLE_SYSTEM_OUTLINE);
  const int run = tree.Find(L"Run keys (");
  ASSERT_GT(run, 0);
  EXPECT_EQ(tree.Role(run), ROLE_SYSTEM_OUTLINEITEM);
  EXPECT_EQ(tree.Text(&IAccessible::get_accValue, run), L"1");
  EXPECT_TRUE(tree.Is(1, STATE_SYSTEM_SELECTED | STATE_SYSTEM_EXPANDED));
  EXPECT_EQ(tree->accDoDefaultAction(Child(run)), S_OK);
  EXPECT_TRUE(tree.Is(run, STATE_SYSTEM_COLLAPSED));
  EXPECT_TRUE(tree.Is(run + 1, STATE_SYSTEM_INVISIBLE));
  EXPECT_EQ(tree->accSelect(SELFLAG_TAKESELECTION, Child(run)), S_OK);
  EXPECT_EQ(tree.Selection(), run);

  const Accessible bar(gui->Control(IDC_TOOLBAR));
  EXPECT_EQ(bar.Role(0), ROLE_SYSTEM_TOOLBAR);
  const int runNow = bar.Find(L"Run the entry's command now");
  ASSERT_GT(runNow, 0);
  EXPECT_EQ(bar.Role(runNow), ROLE_SYSTEM_PUSHBUTTON);
  EXPECT_EQ(bar.Text(&IAccessible::get_accKeyboardShortcut, runNow), L"Ctrl+F9");
  EXPECT_TRUE(bar.Is(runNow, STATE_SYSTEM_UNAVAILABLE));
  EXPECT_EQ(bar->accDoDefaultAction(Child(runNow)), DISP_E_MEMBERNOTFOUND);
  EXPECT_EQ(bar->accDoDefaultAction(Child(bar.Find(L"Add"))), S_OK);
  const HWND dialog = gui->WaitForDialog();
  ASSERT_NE(dialog, nullptr);
  SendMessageW(dialog, WM_COMMAND, IDCANCEL, 0);

  gui->Search(L"aurora");
  const Accessible search(gui->Control(IDC_SEARCH));
  EXPECT_EQ(search.Role(0), ROLE_SYSTEM_TEXT);
  EXPECT_EQ(search.Name(0), L"Search");
  EXPECT_EQ(search.Text(&IAccessible::get_accValue, 0), L"aurora");
}

TEST_F(AccessibleTest, FiltersNotesAndDetailsTellWhatTheyAre) {
  const Accessible risky(gui->Control(CMD_FILTER_RISKY));
  EXPECT_EQ(risky.Name(0), L"Risky");
  EXPECT_EQ(risky.Role(0), ROLE_SYSTEM_CHECKBUTTON);
  EXPECT_FALSE(risky.Is(0, STATE_SYSTEM_CHECKED));
  EXPECT_EQ(risky->accDoDefaultAction(Child(0)), S_OK);
  EXPECT_TRUE(WaitUntil([&] { return risky.Is(0, STATE_SYSTEM_CHECKED); }));
  gui->Command(CMD_CLEAR_FILTERS);

  gui->Search(L"nothing is called like this");
  HWND offer = nullptr;
  const auto offers = [&] {
    return offer = FindWindowExW(gui->Control(IDC_EMPTY_NOTE), nullptr, L"Button", nullptr);
  };
  ASSERT_TRUE(WaitUntil([&] { return offers() != nullptr; }));
  const Accessible button(offer);
  EXPECT_EQ(button.Role(0), ROLE_SYSTEM_PUSHBUTTON);
  EXPECT_FALSE(button.Text(&IAccessible::get_accDescription, 0).empty()) << "why the list is empty";
  EXPECT_EQ(button->accDoDefaultAction(Child(0)), S_OK);
  EXPECT_TRUE(WaitUntil([&] { return gui->Count(IDC_ENTRIES) > 0; }));
  BSTR gone = nullptr;
  EXPECT_TRUE(FAILED(button->get_accName(Child(0), &gone))) << "its window has gone";

  gui->Search(L"Aurora Mixer");
  gui->Select(IDC_ENTRIES, {0});
  const Accessible details(gui->Control(IDC_DETAILS));
  EXPECT_EQ(details.Name(0), L"Details");
  EXPECT_TRUE(details.Is(0, STATE_SYSTEM_READONLY));
  EXPECT_TRUE(WaitUntil([&] {
    return details.Text(&IAccessible::get_accValue, 0).find(L"Northlight Audio Ltd.") != std::wstring::npos;
  }));
}

}  // namespace
}  // namespace smh::test
