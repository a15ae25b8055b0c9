#include "hosts/common/host_process.h"

namespace smh {

namespace {

// The window class of dialogs and message boxes.
constexpr wchar_t kDialogClass[] = L"#32770";

// Written by the thread of the blocker only.
thread_local bool t_hasRefused = false;

// A creation that the hook refuses makes the dialog function return at once.
LRESULT CALLBACK RefuseDialogs(int code, WPARAM window, LPARAM details) {
  if (code == HCBT_CREATEWND) {
    wchar_t name[ARRAYSIZE(kDialogClass) + 1];
    const int length = GetClassNameW(reinterpret_cast<HWND>(window), name, ARRAYSIZE(name));
    if (length > 0 && lstrcmpW(name, kDialogClass) == 0) {
      t_hasRefused = true;
      return 1;
    }
  }
  return CallNextHookEx(nullptr, code, window, details);
}

}  // namespace

void SetUpHostProcess() noexcept {
  SetDllDirectoryW(L"");
  SetErrorMode(SEM_FAILCRITICALERRORS);
}

DialogBlocker::DialogBlocker() noexcept
    : hook_(SetWindowsHookExW(WH_CBT, RefuseDialogs, nullptr, GetCurrentThreadId())) {
  t_hasRefused = false;
}

DialogBlocker::~DialogBlocker() {
  if (hook_ != nullptr) UnhookWindowsHookEx(hook_);
}

bool DialogBlocker::HasRefused() noexcept {
  return t_hasRefused;
}

}  // namespace smh
