#include "sysutil/uRegEditUtils.h"

#include "core/contracts/uDllGlobals.h"
#include "infra/registry/uRegistryUtils.h"
#include "infra/runtime/exceptions.h"
#include "infra/runtime/text.h"
#include "sysutil/command_line.h"
#include "sysutil/uFileUtils.h"
#include "sysutil/windows/uWindowTopHelper.h"
#include "sysutil/windows/uWindowsExt.h"

namespace smh {

namespace {

constexpr wchar_t kEditorFile[] = L"regedit.exe";
// Starts the editor of its folder's view.
constexpr wchar_t kEditorStarter[] = L"regedt32.exe";
constexpr wchar_t kEditorSettings[] = L"\\Software\\Microsoft\\Windows\\CurrentVersion\\Applets\\Regedit";

constexpr DWORD kWindowWait = 2000;
constexpr DWORD kWindowPoll = 100;
// The editor keeps its own last key when it closes; ours must come after that.
constexpr DWORD kCloseWait = 100;
// Until the list has its values and the focus.
constexpr DWORD kListWait = 500;
// A hung editor must not hang us.
constexpr UINT kMessageTimeLimit = 2000;
// The low word of a key message: pressed once.
constexpr LPARAM kPressedOnce = 1;

bool Send(HWND window, UINT message, WPARAM wParam = 0, LPARAM lParam = 0) noexcept {
  DWORD_PTR ignored = 0;
  return SendMessageTimeoutW(window, message, wParam, lParam, SMTO_ABORTIFHUNG, kMessageTimeLimit,
                             &ignored) != 0;
}

// Shares the input of another thread's windows: only then can they be given the focus.
class SharedInput {
 public:
  explicit SharedInput(HWND window) noexcept
      : other_(GetWindowThreadProcessId(window, nullptr)),
        attached_(AttachThreadInput(GetCurrentThreadId(), other_, TRUE) != FALSE) {}
  ~SharedInput() {
    if (attached_) AttachThreadInput(GetCurrentThreadId(), other_, FALSE);
  }
  SharedInput(const SharedInput&) = delete;
  SharedInput& operator=(const SharedInput&) = delete;

 private:
  const DWORD other_;
  const bool attached_;
};

void CloseEditor() {
  const HWND window = RegEditUtils::FindRegEditWindow();
  if (window == nullptr) return;
  Send(window, WM_CLOSE);
  Sleep(kCloseWait);
}

void SetLastKey(HKEY rootKey, const std::wstring& keyPath) {
  std::wstring key(RootKeyName(rootKey));
  if (!keyPath.starts_with(L'\\')) key += L'\\';
  TRegistry settings;
  if (settings.OpenKey(kEditorSettings, false)) {
    settings.WriteString(L"LastKey", WithoutTrailingBackslash(key + keyPath));
  }
}

// False when it cannot be started, which has been shown then.
bool StartEditor(REGSAM access) {
  const bool native = (access & KEY_WOW64_64KEY) != 0;
  const std::wstring& folder = native ? FileUtils::GetSysnativeDir() : FileUtils::GetSystemDir();
  const DWORD code = OpenWithShell(nullptr, folder + kEditorStarter, {});
  if (code == ERROR_SUCCESS) return true;
  ShowMessageBox(SystemErrorText(code), MB_ICONERROR);
  return false;
}

struct WindowSearch {
  const wchar_t* className;
  HWND found;

  static BOOL CALLBACK Visit(HWND window, LPARAM parameter) {
    auto& self = *reinterpret_cast<WindowSearch*>(parameter);
    wchar_t name[64];
    if (GetClassNameW(window, name, ARRAYSIZE(name)) == 0 || !SameText(name, self.className)) return TRUE;
    self.found = window;
    return FALSE;
  }
};

// Among the direct children first; some editors keep their lists deeper.
HWND FindInside(HWND parent, const wchar_t* className) noexcept {
  WindowSearch search{className, FindWindowExW(parent, nullptr, className, nullptr)};
  if (search.found == nullptr) {
    EnumChildWindows(parent, WindowSearch::Visit, reinterpret_cast<LPARAM>(&search));
  }
  return search.found;
}

}  // namespace

HWND RegEditUtils::FindRegEditWindow() {
  try {
    const std::vector<std::wstring> filter{kEditorFile};
    const TWindowTopCollection windows(&filter);
    return windows.Items().empty() ? nullptr : windows.Items().front().Handle;
  } catch (const Exception&) {
    return nullptr;
  }
}

HWND RegEditUtils::WaitForRegEditWindow() {
  const DWORD start = GetTickCount();
  HWND window = FindRegEditWindow();
  while (window == nullptr && WindowsExt::TickDiff(start) <= kWindowWait) {
    Sleep(kWindowPoll);
    window = FindRegEditWindow();
  }
  return window;
}

void RegEditUtils::TypeIntoList(HWND list, std::wstring_view text) {
  // One input with a hung thread would hang us.
  if (!Send(list, WM_NULL)) return;
  {
    const SharedInput input(list);
    SetForegroundWindow(list);
    SetFocus(list);
  }
  Sleep(kListWait);
  bool answers = Send(list, WM_KEYDOWN, VK_HOME, kPressedOnce);
  for (std::size_t i = 0; answers && i < text.size(); ++i) {
    answers = Send(list, WM_CHAR, text[i], kPressedOnce);
  }
}

void RegEditUtils::OpenRegEdit(REGSAM access, HKEY rootKey, const std::wstring& valueName,
                               const std::wstring& keyPath) {
  CloseEditor();
  SetLastKey(rootKey, keyPath);
  if (FindRegEditWindow() == nullptr && !StartEditor(access)) return;
  const HWND window = WaitForRegEditWindow();
  if (window == nullptr) return;
  if (IsIconic(window)) ShowWindow(window, SW_RESTORE);
  BringWindowToTop(window);
  const HWND list = FindInside(window, WC_LISTVIEWW);
  const HWND tree = FindInside(window, WC_TREEVIEWW);
  if (list != nullptr && tree != nullptr) TypeIntoList(list, valueName);
}

}  // namespace smh
