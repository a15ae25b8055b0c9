#include "sysutil/version/uWinVersionInfo.h"

#include "infra/runtime/format.h"
#include "infra/runtime/handle.h"
#include "infra/runtime/import_function.h"
#include "sysutil/version/system_library.h"
#include "sysutil/version/version_codes.h"

#include <shlwapi.h>

#include <atomic>

namespace smh {

namespace {

using IsWow64ProcessFunction = BOOL(WINAPI*)(HANDLE, BOOL*);
using GetNativeSystemInfoFunction = void(WINAPI*)(SYSTEM_INFO*);
using GetProductInfoFunction = BOOL(WINAPI*)(DWORD, DWORD, DWORD, DWORD, DWORD*);
using IsOSFunction = BOOL(WINAPI*)(DWORD);

constinit SystemLibrary g_kernel32(L"kernel32.dll");
constinit SystemLibrary g_shlwapi(L"shlwapi.dll");

constinit SystemFunction<IsWow64ProcessFunction> g_isWow64Process;
constinit SystemFunction<GetNativeSystemInfoFunction> g_getNativeSystemInfo;
constinit SystemFunction<GetProductInfoFunction> g_getProductInfo;
constinit SystemFunction<IsOSFunction> g_isOS;

// 0 = not yet worked out.
constinit std::atomic<int> g_osCode{0};
constinit std::atomic<int> g_architectureCode{0};
constinit std::atomic<int> g_servicePackCode{0};
constinit std::atomic<int> g_editionCode{0};
// 0 = not yet worked out, 1 = no, 2 = yes.
constinit std::atomic<int> g_wow64{0};

constexpr DWORD kIsOsWow64 = 30;
constexpr WORD kIsOsOrdinal = 437;

// A call that fails without saying why is not an error.
void CheckCall(BOOL success, std::wstring_view function) {
  const DWORD error = success ? ERROR_SUCCESS : GetLastError();
  if (error == ERROR_SUCCESS) return;
  throw TWinVersionInfoException(
      Format(L"WinVersionInfo.%s() (Error code: %d). %s", function, error, SystemErrorText(error)));
}

bool AskIsWow64Process() {
  const auto isWow64Process = g_isWow64Process.Resolved(g_kernel32, "IsWow64Process");
  BOOL wow64 = FALSE;
  SetLastError(ERROR_SUCCESS);
  CheckCall(isWow64Process(GetCurrentProcess(), &wow64), L"IsWow64Process");
  return wow64 != FALSE;
}

class LiveFacts : public VersionFacts {
 public:
  LiveFacts() {
    OSVERSIONINFOEXW info = {};
    info.dwOSVersionInfoSize = sizeof(info);
    if (!GetVersionExW(reinterpret_cast<OSVERSIONINFOW*>(&info))) RaiseLastOSError();
    platform = info.dwPlatformId;
    major = info.dwMajorVersion;
    minor = info.dwMinorVersion;
    servicePackMajor = info.wServicePackMajor;
    servicePackMinor = info.wServicePackMinor;
    suiteMask = info.wSuiteMask;
    productType = info.wProductType;
    servicePackText = info.szCSDVersion;
  }

  bool IsOS(DWORD value) override { return WinVersionInfo::IsOS(value); }
  int SystemMetric(int index) override { return GetSystemMetrics(index); }
  DWORD ProductInfo() override {
    DWORD product = PRODUCT_UNDEFINED;
    WinVersionInfo::GetProductInfo(major, minor, servicePackMajor, servicePackMinor, product);
    return product;
  }
};

template <typename Work>
int CachedCode(std::atomic<int>& cache, Work&& work) {
  int code = cache.load();
  if (code == 0) {
    code = work();
    cache.store(code);
  }
  return code;
}

}  // namespace

int WinVersionInfo::OSCode() {
  return CachedCode(g_osCode, [] {
    LiveFacts facts;
    return OsCodeOf(facts);
  });
}

int WinVersionInfo::ArchitectureCode() {
  return CachedCode(g_architectureCode, [] {
    SYSTEM_INFO info = {};
    GetNativeSystemInfo(info);
    return ArchitectureCodeOf(info.wProcessorArchitecture);
  });
}

int WinVersionInfo::ServicePackCode() {
  return CachedCode(g_servicePackCode, [] { return ServicePackCodeOf(LiveFacts()); });
}

int WinVersionInfo::EditionCode() {
  return CachedCode(g_editionCode, [] {
    LiveFacts facts;
    return EditionCodeOf(facts, OSCode());
  });
}

std::wstring_view WinVersionInfo::OSName() {
  return OsNameOf(OSCode());
}

std::wstring_view WinVersionInfo::ArchitectureName() {
  return ArchitectureNameOf(ArchitectureCode());
}

std::wstring_view WinVersionInfo::ServicePackName() {
  return ServicePackNameOf(ServicePackCode());
}

std::wstring_view WinVersionInfo::EditionName() {
  return EditionNameOf(EditionCode());
}

bool WinVersionInfo::IsWow64() {
  return CachedCode(g_wow64, [] {
           try {
             return AskIsWow64Process() ? 2 : 1;
           } catch (const Exception&) {
             return IsOS(kIsOsWow64) ? 2 : 1;
           }
         }) == 2;
}

void WinVersionInfo::GetNativeSystemInfo(SYSTEM_INFO& info) {
  if (IsWow64()) {
    g_getNativeSystemInfo.Resolved(g_kernel32, "GetNativeSystemInfo")(&info);
  } else {
    GetSystemInfo(&info);
  }
}

void WinVersionInfo::GetProductInfo(DWORD major, DWORD minor, DWORD spMajor, DWORD spMinor,
                                    DWORD& productType) {
  const auto getProductInfo = g_getProductInfo.Resolved(g_kernel32, "GetProductInfo");
  SetLastError(ERROR_SUCCESS);
  CheckCall(getProductInfo(major, minor, spMajor, spMinor, &productType), L"GetProductInfo");
}

bool WinVersionInfo::IsOS(DWORD value) {
  return g_isOS.Resolved(g_shlwapi, MAKEINTRESOURCEA(kIsOsOrdinal))(value) != FALSE;
}

bool WinVersionInfo::DllVersion(const wchar_t* fileName, DWORD& major, DWORD& minor) {
  const ScopedModule library(LoadLibraryW(fileName));
  const auto dllGetVersion = ImportFunction<DLLGETVERSIONPROC>(library.Get(), "DllGetVersion");
  DLLVERSIONINFO info = {};
  info.cbSize = sizeof(info);
  if (dllGetVersion == nullptr || FAILED(dllGetVersion(&info))) return false;
  major = info.dwMajorVersion;
  minor = info.dwMinorVersion;
  return true;
}

void ForgetWinVersionInfo() noexcept {
  for (auto* const code : {&g_osCode, &g_architectureCode, &g_servicePackCode, &g_editionCode, &g_wow64}) {
    code->store(0);
  }
  g_isWow64Process.Forget();
  g_getNativeSystemInfo.Forget();
  g_getProductInfo.Forget();
  g_isOS.Forget();
  g_kernel32.Free();
  g_shlwapi.Free();
}

}  // namespace smh
