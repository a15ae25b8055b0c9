// The window and its dialogs in every language: what they say, whether it fits, and which way lines run.
#include "hosts/common/language.h"
#include "hosts/gui/resource.h"
#include "hosts/gui/texts/dialog_texts.h"
#include "hosts/gui/texts/frame_texts.h"
#include "tests/display/display_support.h"
#include "tests/hosts/gui/gui_program.h"
#include "tests/support/registry_fixture.h"
#include "tests/support/waiting.h"

#include <gtest/gtest.h>

namespace smh::test {

namespace {

constexpr Language kAll[] = {Language::kHebrew};
const std::wstring kSettingsKey = L"Software\\Quillmark\\Startup Manager\\Settings";

std::wstring TextOfControl(HWND control) {
  wchar_t text[512] = L"";
  SendMessageW(control, WM_GETTEXT, ARRAYSIZE(text), reinterpret_cast<LPARAM>(text));
  return text;
}

GuiProgram Started(Language language) {
  return GuiProgram(GuiProgram::Look::kFresh, GuiProgram::Rights::kOwn, {L"--language", LanguageName(language)});
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

TEST(LanguageTest, IsSeenInTheWindowAndEveryDialog) {
  for (const Language language : kAll) {
    SCOPED_TRACE(testing::Message() << static_cast<int>(language));
    const GuiProgram gui = Started(language);
    EXPECT_TRUE(Speaks(gui, language));
    EXPECT_EQ(IsMirrored(gui.Window()), smh::IsMirrored(language));
    EXPECT_EQ(PlaceOf(gui.Control(IDC_TREE)).left > PlaceOf(gui.Control(IDC_ENTRIES)).left,
              smh::IsMirrored(language));
    gui.Select(IDC_ENTRIES, {gui.RowOf(IDC_ENTRIES, L"Aurora Mixer")});
    const std::wstring name = std::wstring(L"language-") + LanguageName(language);
    Sleep(3000);
    gui.Screenshot(name);
    for (const DialogCase& each : kDialogs) {
      gui.Command(each.command);
      const HWND dialog = gui.WaitForDialog();
      EXPECT_EQ(TextOfControl(dialog), each.caption.In(language)) << each.command;
      EXPECT_EQ(IsMirrored(dialog), smh::IsMirrored(language));
      gui.Screenshot(name + L"-" + each.name);
      SendMessageW(dialog, WM_COMMAND, IDCANCEL, 0);
      EXPECT_TRUE(WaitUntil([&] { return !IsWindow(dialog); }));
    }
  }
}

}  // namespace
}  // namespace smh::test
