#include "tests/display/display_support.h"

#include "tests/support/child_process.h"
#include "tests/support/registry_fixture.h"
#include "tests/support/screen.h"
#include "tests/support/waiting.h"

#include <objidl.h>
#include <commctrl.h>
#include <gdiplus.h>

#include <stdexcept>

namespace smh::test {

namespace {

// The main windows of Wine's editor and of the stand-in.
constexpr const wchar_t* kEditorClasses[] = {L"RegEdit_RegEdit", L"StandInEditor"};
constexpr CLSID kPngEncoder = {0x557CF406, 0x1A04, 0x11D3, {0x9A, 0x73, 0x00, 0x00, 0xF8, 0x1E, 0xF3, 0x2E}};

HWND FindEditor() {
  for (const wchar_t* name : kEditorClasses) {
    if (const HWND window = FindWindowW(name, nullptr)) return window;
  }
  return nullptr;
}

BOOL CALLBACK TakeList(HWND window, LPARAM parameter) {
  wchar_t name[32] = L"";
  GetClassNameW(window, name, ARRAYSIZE(name));
  if (lstrcmpW(name, WC_LISTVIEWW) != 0) return TRUE;
  *reinterpret_cast<HWND*>(parameter) = window;
  return FALSE;
}

}  // namespace

TestWindow::TestWindow(const std::wstring& caption, DWORD style, DWORD exStyle, HWND owner)
    : window_(CreateWindowExW(exStyle, L"STATIC", caption.c_str(), style, 10, 10, 200, 100, owner, nullptr,
                              nullptr, nullptr)) {
  if (window_ == nullptr) throw std::runtime_error("no window");
}

DWORD ProcessOf(HWND window) {
  DWORD process = 0;
  GetWindowThreadProcessId(window, &process);
  return process;
}

HWND WaitForEditor() {
  HWND window = nullptr;
  WaitUntil([&] { return (window = FindEditor()) != nullptr; });
  return window;
}

HWND ListInside(HWND window) {
  HWND list = nullptr;
  EnumChildWindows(window, TakeList, reinterpret_cast<LPARAM>(&list));
  return list;
}

int RowInState(HWND list, UINT state) {
  return static_cast<int>(
      SendMessageW(list, LVM_GETNEXTITEM, static_cast<WPARAM>(-1), static_cast<LPARAM>(state)));
}

std::wstring ShownKey(HWND editor) {
  wchar_t text[1024] = L"";
  SendMessageW(FindWindowExW(editor, nullptr, STATUSCLASSNAMEW, nullptr), WM_GETTEXT, ARRAYSIZE(text),
               reinterpret_cast<LPARAM>(text));
  return text;
}

HWND FocusOf(HWND window) {
  GUITHREADINFO info = {};
  info.cbSize = sizeof(info);
  GetGUIThreadInfo(GetWindowThreadProcessId(window, nullptr), &info);
  return info.hwndFocus;
}

void CloseEditors() {
  while (const HWND window = FindEditor()) {
    const ScopedHandle process(OpenProcess(SYNCHRONIZE | PROCESS_TERMINATE, FALSE, ProcessOf(window)));
    if (!process) throw std::runtime_error("an editor cannot be ended");
    TerminateProcess(process.Get(), 0);
    WaitForSingleObject(process.Get(), 10'000);
  }
}

void SaveScreenshot(const std::wstring& name) {
  SaveScreenshot(name, {0, 0, GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN)});
}

void SaveScreenshot(const std::wstring& name, const RECT& part) {
  const std::wstring folder = ThisFolder() + L"..\\artefacts";
  CreateDirectoryW(folder.c_str(), nullptr);
  const std::wstring file = folder + L"\\" + name + (HasTwoViews() ? L"-win64.png" : L"-win32.png");
  const Gdiplus::GdiplusStartupInput input;
  ULONG_PTR token = 0;
  if (Gdiplus::GdiplusStartup(&token, &input, nullptr) != Gdiplus::Ok) throw std::runtime_error("no GDI+");
  const ScopedBitmap copy = CopyOfScreen(part);
  Gdiplus::Status saved;
  {
    Gdiplus::Bitmap bitmap(copy.Get(), nullptr);
    saved = bitmap.Save(file.c_str(), &kPngEncoder, nullptr);
  }
  Gdiplus::GdiplusShutdown(token);
  if (saved != Gdiplus::Ok) throw std::runtime_error("the screenshot cannot be saved");
}

}  // namespace smh::test
