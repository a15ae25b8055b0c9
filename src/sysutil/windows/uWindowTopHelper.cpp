#include "sysutil/windows/uWindowTopHelper.h"

#include "infra/runtime/exceptions.h"
#include "infra/runtime/text.h"
#include "sysutil/windows/uWindowsExt.h"

#include <algorithm>
#include <exception>
#include <span>

namespace smh {

namespace {

constexpr int kIconSide = 16;
constexpr int kInitialSize = 5;
constexpr int kGrowth = 5;
// A hung window must not hang us.
constexpr UINT kIconTimeLimit = 500;
constexpr DWORD kSessionHostVersion = 1;
// Kept on purpose: this one program's main window is a tool window.
constexpr wchar_t kToolWindowProgram[] = L"skype.exe";

// The processes of this session host.
class ProcessList {
 public:
  ProcessList() {
    WindowsExt::EnumerateProcesses(WTS_CURRENT_SERVER_HANDLE, 0, kSessionHostVersion, info_, count_);
  }
  ~ProcessList() { WindowsExt::FreeWtsMemory(info_); }
  ProcessList(const ProcessList&) = delete;
  ProcessList& operator=(const ProcessList&) = delete;

  bool Has(std::wstring_view fileName) const noexcept {
    return std::ranges::any_of(std::span(info_, count_), [&](const WTS_PROCESS_INFOW& process) {
      return process.pProcessName != nullptr && SameText(FileNamePart(process.pProcessName), fileName);
    });
  }

 private:
  WTS_PROCESS_INFOW* info_ = nullptr;
  DWORD count_ = 0;
};

bool IsApplicationWindow(HWND window) noexcept {
  return GetParent(window) == nullptr && GetWindow(window, GW_OWNER) == nullptr &&
         (GetWindowLongW(window, GWL_STYLE) & WS_SYSMENU) != 0;
}

bool IsToolWindow(HWND window, std::wstring_view fileName) noexcept {
  return (GetWindowLongW(window, GWL_EXSTYLE) & WS_EX_TOOLWINDOW) != 0 &&
         !SameText(fileName, kToolWindowProgram);
}

DWORD ProcessOf(HWND window) {
  DWORD process = 0;
  GetWindowThreadProcessId(window, &process);
  if (process == 0) RaiseLastOSError();
  return process;
}

// A 64-bit process does not tell a 32-bit one the paths of its modules.
std::wstring ProgramPath(HANDLE process) {
  try {
    return WindowsExt::GetModuleFileNameEx(process, nullptr);
  } catch (const EOSError&) {
    return WindowsExt::GetProcessImageFileName(process);
  }
}

std::wstring ProgramFile(DWORD processId) {
  const ScopedHandle process(OpenProcess(PROCESS_QUERY_INFORMATION | PROCESS_VM_READ, FALSE, processId));
  if (!process) RaiseLastOSError();
  return std::wstring(FileNamePart(ProgramPath(process.Get())));
}

// Owned by the window or its class.
HICON SmallIcon(HWND window) noexcept {
  DWORD_PTR icon = 0;
  if (!SendMessageTimeoutW(window, WM_GETICON, ICON_SMALL, 0, SMTO_ABORTIFHUNG, kIconTimeLimit, &icon)) {
    icon = 0;
  }
  if (icon == 0) icon = GetClassLongW(window, GCL_HICONSM);
  return reinterpret_cast<HICON>(icon);
}

}  // namespace

// One walk over the windows; no exception may pass the system's function.
struct TWindowTopCollection::Enumeration {
  TWindowTopCollection& collection;
  const std::vector<std::wstring>* filter;
  std::exception_ptr failure;

  static BOOL CALLBACK Visit(HWND window, LPARAM parameter) {
    auto& self = *reinterpret_cast<Enumeration*>(parameter);
    try {
      self.collection.AddWindow(window, self.filter);
      return TRUE;
    } catch (...) {
      self.failure = std::current_exception();
      return FALSE;
    }
  }
};

TWindowTopCollection::TWindowTopCollection(const std::vector<std::wstring>* filter)
    : images_(ImageList_Create(kIconSide, kIconSide, ILC_COLOR32 | ILC_MASK, kInitialSize, kGrowth)) {
  if (!images_) RaiseLastOSError();
  AddWindows(filter);
  if (filter != nullptr) AddPlaceholders(*filter);
}

void TWindowTopCollection::AddWindows(const std::vector<std::wstring>* filter) {
  Enumeration enumeration{*this, filter, nullptr};
  EnumWindows(Enumeration::Visit, reinterpret_cast<LPARAM>(&enumeration));
  if (enumeration.failure) std::rethrow_exception(enumeration.failure);
}

void TWindowTopCollection::AddWindow(HWND window, const std::vector<std::wstring>* filter) {
  if (!IsApplicationWindow(window)) return;
  TWindowTopItem item;
  item.Handle = window;
  item.Caption = WindowsExt::GetWindowCaption(window);
  item.ProcessId = ProcessOf(window);
  item.FileName = ProgramFile(item.ProcessId);
  const auto isProgram = [&](const std::wstring& name) { return SameText(name, item.FileName); };
  const bool isWanted = (filter == nullptr || std::ranges::any_of(*filter, isProgram)) &&
                        !IsToolWindow(window, item.FileName) && !item.Caption.empty();
  if (!isWanted) return;
  item.ImageIndex = AddIcon(window);
  if (item.ImageIndex >= 0 || IsWindowVisible(window)) items_.push_back(std::move(item));
}

int TWindowTopCollection::AddIcon(HWND window) {
  const HICON icon = SmallIcon(window);
  return icon == nullptr ? -1 : ImageList_ReplaceIcon(images_.Get(), -1, icon);
}

void TWindowTopCollection::AddPlaceholders(const std::vector<std::wstring>& filter) {
  const ProcessList processes;
  for (const std::wstring& name : filter) {
    const auto isListed = [&](const TWindowTopItem& item) { return SameText(item.FileName, name); };
    if (std::ranges::any_of(items_, isListed) || !processes.Has(name)) continue;
    TWindowTopItem& placeholder = items_.emplace_back();
    placeholder.FileName = name;
    placeholder.Caption = name;
  }
}

}  // namespace smh
