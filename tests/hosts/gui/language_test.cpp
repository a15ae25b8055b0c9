// The window and its dialogs in every language: what they say, whether it fits, and which way lines run.
#include "hosts/common/language.h"
#include "hosts/common/text_encoding.h"
#include "hosts/gui/resource.h"
#include "hosts/gui/texts/bar_texts.h"
#include "hosts/gui/texts/dialog_texts.h"
#include "hosts/gui/texts/frame_texts.h"
#include "hosts/gui/texts/menu_texts.h"
#include "tests/display/display_support.h"
#include "tests/hosts/gui/gui_program.h"
#include "tests/support/registry_fixture.h"
#include "tests/support/waiting.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace smh::test {

namespace {

constexpr Language kAll[] = {Language::kEnglish, Language::kGerman, Language::kHebrew};
const std::wstring kSettingsKey = L"Software\\Quillmark\\Startup Manager\\Settings";

std::wstring TextOfControl(HWND control) {
  wchar_t text[512] = L"";
  SendMessageW(control, WM_GETTEXT, ARRAYSIZE(text), reinterpret_cast<LPARAM>(text));
  return text;
}

GuiProgram Started(Language language) {
  return GuiProgram(GuiProgram::Look::kFresh, GuiProgram::Rights::kFull,
                    {L"--language", LanguageName(language)});
}

bool Speaks(const GuiProgram& gui, Language language) {
  return gui.NodeTexts().front().starts_with(texts::kAllEntries.In(language));
}

bool IsMirrored(HWND window) {
  return (GetWindowLongW(window, GWL_EXSTYLE) & WS_EX_LAYOUTRTL) != 0;
}

RECT PlaceOf(HWND window) {
  RECT place;
  GetWindowRect(window, &place);
  return place;
}

HWND WaitForWindow(const wchar_t* className) {
  HWND window = nullptr;
  WaitUntil([&] { return (window = FindWindowW(className, nullptr)) != nullptr; });
  return window;
}

// Another process of the program than `gui`, which the test did not start; its end.
void CloseOther() {
  const HWND window = WaitForWindow(L"StartupManagerMain");
  const ScopedHandle process(OpenProcess(SYNCHRONIZE, FALSE, ProcessOf(window)));
  PostMessageW(window, WM_CLOSE, 0, 0);
  EXPECT_EQ(WaitForSingleObject(process.Get(), 20'000), WAIT_OBJECT_0);
}

TEST(LanguageTest, IsTheOptionsElseTheSettingsElseTheSystems) {
  const SavedKey saved(HKEY_CURRENT_USER, kSettingsKey);
  EXPECT_TRUE(Speaks(GuiProgram(GuiProgram::Look::kFresh), Language::kEnglish));
  SetValue(HKEY_CURRENT_USER, kSettingsKey, L"Language", Sz(L"de"));
  EXPECT_TRUE(Speaks(GuiProgram(GuiProgram::Look::kFresh), Language::kGerman));
  EXPECT_TRUE(Speaks(Started(Language::kHebrew), Language::kHebrew));
  const ChildProcess wrong(ThisFolder() + L"startupmanager.exe", {L"--language", L"klingon"});
  const HWND box = WaitForWindow(L"#32770");
  EXPECT_NE(box, nullptr);
  SendMessageW(box, WM_COMMAND, IDOK, 0);
  const HWND window = WaitForWindow(L"StartupManagerMain");
  EXPECT_TRUE(window != nullptr && !IsMirrored(window));
  CloseOther();
}

TEST(LanguageTest, IsChosenInTheMenuAndTakenByTheNextStart) {
  const SavedKey saved(HKEY_CURRENT_USER, kSettingsKey);
  {
    const GuiProgram gui = Started(Language::kGerman);
    gui.Command(CMD_LANGUAGE_HEBREW);
    const HWND question = gui.WaitForDialog();
    EXPECT_EQ(TextOfControl(GetDlgItem(question, IDOK)), texts::kLanguageVerb.In(Language::kGerman));
    PostMessageW(question, WM_COMMAND, IDOK, 0);
    EXPECT_TRUE(WaitUntil([&] { return !IsWindow(gui.Window()); }));
  }
  EXPECT_EQ(SavedLanguage(), Language::kHebrew);
  EXPECT_TRUE(IsMirrored(WaitForWindow(L"StartupManagerMain")));
  CloseOther();
}

struct DialogCase {
  UINT command;
  const Text& caption;
  const wchar_t* name;
};
const DialogCase kDialogs[] = {
    {CMD_ADD, texts::kAddCaption, L"add"},
    {CMD_MOVE, texts::kMoveCaption, L"move"},
    {CMD_CHANGE_COMMAND, texts::kCommandCaption, L"command"},
    {CMD_KEYS, texts::kKeysCaption, L"keys"},
    {CMD_COLUMNS, texts::kColumnsCaption, L"columns"},
    {CMD_ABOUT, texts::kAboutCaption, L"about"},
};

// The screen's resolution, as the user would choose it, for programs that begin in this scope.
class ScreenDpi {
 public:
  explicit ScreenDpi(DWORD dpi) : saved_(HKEY_CURRENT_USER, kDesktop) {
    RegSetKeyValueW(HKEY_CURRENT_USER, kDesktop, L"LogPixels", REG_DWORD, &dpi, sizeof(dpi));
  }

 private:
  static constexpr wchar_t kDesktop[] = L"Control Panel\\Desktop";
  const SavedKey saved_;
};

// As wide as its text asks for, in the font of the dialogs or the one of the window.
int WidthOf(const std::wstring& text, const LOGFONTW& look, UINT format) {
  const HFONT font = CreateFontIndirectW(&look);
  const HDC canvas = GetDC(nullptr);
  const HGDIOBJ before = SelectObject(canvas, font);
  RECT area = {};
  DrawTextW(canvas, text.c_str(), -1, &area, DT_CALCRECT | format);
  SelectObject(canvas, before);
  ReleaseDC(nullptr, canvas);
  DeleteObject(font);
  return static_cast<int>(area.right);
}

LOGFONTW FontAt(int dpi, bool isDialog) {
  NONCLIENTMETRICSW metrics = {};
  metrics.cbSize = sizeof(metrics);
  SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof(metrics), &metrics, 0);
  LOGFONTW font = metrics.lfMessageFont;
  font.lfHeight = isDialog ? -MulDiv(8, dpi, 72) : MulDiv(font.lfHeight, dpi, 96);
  if (isDialog) lstrcpyW(font.lfFaceName, L"MS Shell Dlg");
  return font;
}

// Every button, check box and label of the window or dialog that is seen; a label of several lines by its
// widest word.
void ExpectNothingCut(HWND window, int dpi, bool isDialog) {
  for (HWND child = GetWindow(window, GW_CHILD); child != nullptr; child = GetWindow(child, GW_HWNDNEXT)) {
    wchar_t name[32] = L"";
    GetClassNameW(child, name, ARRAYSIZE(name));
    const std::wstring text = TextOfControl(child);
    const bool isButton = lstrcmpiW(name, WC_BUTTONW) == 0;
    const bool isLabel = lstrcmpiW(name, WC_STATICW) == 0;
    if (!IsWindowVisible(child) || text.empty() || (!isButton && !isLabel)) continue;
    RECT room;
    GetClientRect(child, &room);
    const bool wraps = isLabel && (GetWindowLongW(child, GWL_STYLE) & SS_EDITCONTROL) != 0;
    const int edges = isButton ? MulDiv(8, dpi, 96) : 0;
    EXPECT_LE(WidthOf(text, FontAt(dpi, isDialog), wraps ? DT_WORDBREAK : 0) + edges, room.right)
        << "control " << GetDlgCtrlID(child) << ": " << ToUtf8(text);
  }
}

// What opens for the key of a menu or of what is selected; closes it again.
void ShowMenus(const GuiProgram& gui, Language language, const std::wstring& name) {
  const auto isOpen = [] { return FindWindowW(L"#32768", nullptr) != nullptr; };
  const auto show = [&](const wchar_t* which) {
    EXPECT_TRUE(WaitUntil(isOpen)) << ToUtf8(which);
    gui.Screenshot(name + which);
    SendMessageW(gui.Window(), WM_CANCELMODE, 0, 0);
    EXPECT_TRUE(WaitUntil([&] { return !isOpen(); }));
  };
  PostMessageW(gui.Window(), WM_SYSCOMMAND, SC_KEYMENU, texts::kMenuView.In(language)[1]);
  show(L"-menu");
  PostMessageW(gui.Window(), WM_CONTEXTMENU, reinterpret_cast<WPARAM>(gui.Control(IDC_ENTRIES)), -1);
  show(L"-context-menu");
}

TEST(LanguageTest, IsSeenEverywhereAndNothingIsCut) {
  constexpr int kDpi = 144;
  const ScreenDpi screen(kDpi);
  for (const Language language : kAll) {
    SCOPED_TRACE(ToUtf8(LanguageName(language)));
    const GuiProgram gui = Started(language);
    gui.SendDpiChange(kDpi, {0, 0, 1'500, 1'000});
    EXPECT_TRUE(Speaks(gui, language));
    EXPECT_EQ(IsMirrored(gui.Window()), smh::IsMirrored(language));
    EXPECT_EQ(PlaceOf(gui.Control(IDC_TREE)).left > PlaceOf(gui.Control(IDC_ENTRIES)).left,
              smh::IsMirrored(language));
    gui.Select(IDC_ENTRIES, {gui.RowOf(IDC_ENTRIES, L"Aurora Mixer")});
    EXPECT_TRUE(WaitUntil([&] { return !TextOfControl(gui.Control(IDC_DETAILS)).empty(); }));
    ExpectNothingCut(gui.Window(), kDpi, false);
    RECT bar;
    GetClientRect(gui.Control(IDC_TOOLBAR), &bar);
    const RECT disable = gui.ButtonRect(CMD_DISABLE);
    EXPECT_LE(gui.ButtonRect(CMD_REFRESH).right, bar.right);
    EXPECT_GT(disable.right - disable.left, WidthOf(texts::kBarDisable.In(language), FontAt(kDpi, false), 0))
        << "has no room for its label";
    EXPECT_LE(WidthOf(gui.Cue(IDC_SEARCH), FontAt(kDpi, false), 0), MulDiv(250, kDpi, 96));
    const std::wstring name = std::wstring(L"language-") + LanguageName(language);
    gui.Screenshot(name);
    ShowMenus(gui, language, name);
    for (const DialogCase& each : kDialogs) {
      gui.Command(each.command);
      const HWND dialog = gui.WaitForDialog();
      EXPECT_EQ(TextOfControl(dialog), each.caption.In(language));
      EXPECT_EQ(IsMirrored(dialog), smh::IsMirrored(language));
      ExpectNothingCut(dialog, kDpi, true);
      gui.Screenshot(name + L"-" + each.name);
      SendMessageW(dialog, WM_COMMAND, IDCANCEL, 0);
      EXPECT_TRUE(WaitUntil([&] { return !IsWindow(dialog); }));
    }
  }
}

TEST(LanguageTest, MovesToTheLeftWhereLinesEndThere) {
  const GuiProgram gui = Started(Language::kHebrew);
  const auto treeWidth = [&] {
    const RECT tree = PlaceOf(gui.Control(IDC_TREE));
    return tree.right - tree.left;
  };
  const LONG before = treeWidth();
  const RECT bar = PlaceOf(FindWindowExW(gui.Window(), nullptr, L"StartupManagerSplitterH", nullptr));
  const int x = static_cast<int>(bar.left + bar.right) / 2, y = static_cast<int>(bar.top) + 50;
  SetCursorPos(x, y);
  mouse_event(MOUSEEVENTF_LEFTDOWN, 0, 0, 0, 0);
  SetCursorPos(x - 60, y);
  EXPECT_TRUE(WaitUntil([&] { return std::abs(treeWidth() - before - 60) <= 4; })) << treeWidth() - before;
  mouse_event(MOUSEEVENTF_LEFTUP, 0, 0, 0, 0);
  const HWND commands = gui.Control(IDC_TOOLBAR);
  const auto chosen = [&] { return SendMessageW(commands, TB_GETHOTITEM, 0, 0); };
  SendMessageW(commands, WM_KEYDOWN, VK_HOME, 0);
  const LRESULT first = chosen();
  SendMessageW(commands, WM_KEYDOWN, VK_LEFT, 0);
  EXPECT_GT(chosen(), first);
}

}  // namespace
}  // namespace smh::test
