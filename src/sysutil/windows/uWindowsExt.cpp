#include "sysutil/windows/uWindowsExt.h"

#include "sysutil/version/system_library.h"

#include <limits>

namespace smh {

namespace {

using EnumerateProcessesFunction = BOOL(WINAPI*)(HANDLE, DWORD, DWORD, WTS_PROCESS_INFOW**, DWORD*);
using FreeMemoryFunction = void(WINAPI*)(void*);
using ImageFileNameFunction = DWORD(WINAPI*)(HANDLE, wchar_t*, DWORD);
using ModuleFileNameFunction = DWORD(WINAPI*)(HANDLE, HMODULE, wchar_t*, DWORD);

constinit SystemLibrary g_wtsapi32(L"Wtsapi32.dll");
constinit SystemLibrary g_psapi(L"psapi.dll");

constinit SystemFunction<EnumerateProcessesFunction> g_enumerateProcesses;
constinit SystemFunction<FreeMemoryFunction> g_freeMemory;
constinit SystemFunction<ImageFileNameFunction> g_imageFileName;
constinit SystemFunction<ModuleFileNameFunction> g_moduleFileName;

constexpr DWORD kFileNameUnits = 4096;

// `read` fills a buffer and answers the length, 0 when it fails.
template <typename Read>
std::wstring ReadFileName(Read&& read) {
  std::wstring name(kFileNameUnits, L'\0');
  const DWORD length = read(name.data(), kFileNameUnits);
  if (length == 0) RaiseLastOSError();
  name.resize(length);
  return name;
}

}  // namespace

std::wstring WindowsExt::GetWindowCaption(HWND window) {
  const int length = GetWindowTextLengthW(window);
  if (length <= 0) return {};
  std::wstring caption(static_cast<std::size_t>(length) + 1, L'\0');
  caption.resize(static_cast<std::size_t>(GetWindowTextW(window, caption.data(), length + 1)));
  return caption;
}

std::wstring WindowsExt::GetProcessImageFileName(HANDLE process) {
  const auto imageFileName = g_imageFileName.Resolved(g_psapi, "GetProcessImageFileNameW");
  return ReadFileName([&](wchar_t* name, DWORD size) { return imageFileName(process, name, size); });
}

std::wstring WindowsExt::GetModuleFileNameEx(HANDLE process, HMODULE module) {
  const auto moduleFileName = g_moduleFileName.Resolved(g_psapi, "GetModuleFileNameExW");
  return ReadFileName([&](wchar_t* name, DWORD size) { return moduleFileName(process, module, name, size); });
}

void WindowsExt::EnumerateProcesses(HANDLE server, DWORD reserved, DWORD version, WTS_PROCESS_INFOW*& info,
                                    DWORD& count) {
  const auto enumerate = g_enumerateProcesses.Resolved(g_wtsapi32, "WTSEnumerateProcessesW");
  // Nobody gets a list that cannot be freed.
  g_freeMemory.Resolved(g_wtsapi32, "WTSFreeMemory");
  if (!enumerate(server, reserved, version, &info, &count)) RaiseLastOSError();
}

void WindowsExt::FreeWtsMemory(WTS_PROCESS_INFOW*& info) {
  if (info != nullptr) g_freeMemory.Resolved(g_wtsapi32, "WTSFreeMemory")(info);
  info = nullptr;
}

DWORD WindowsExt::WaitForObjects(std::span<const HANDLE> handles, bool waitAll, DWORD timeout) noexcept {
  return WaitForMultipleObjects(static_cast<DWORD>(handles.size()), handles.data(), waitAll ? TRUE : FALSE,
                                timeout);
}

DWORD WindowsExt::TickDiff(DWORD start) noexcept {
  const DWORD now = GetTickCount();
  if (start <= now) return now - start;
  return now + (std::numeric_limits<DWORD>::max() - start);
}

void ForgetWindowsExt() noexcept {
  g_enumerateProcesses.Forget();
  g_freeMemory.Forget();
  g_imageFileName.Forget();
  g_moduleFileName.Forget();
  g_wtsapi32.Free();
  g_psapi.Free();
}

}  // namespace smh
