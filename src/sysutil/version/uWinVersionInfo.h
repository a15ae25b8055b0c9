// What Windows this process runs on. Any thread may call. Every answer is worked out once and cached in a
// module-global code; the caches need no lock because every thread works out the same values.
#pragma once

#include "infra/runtime/exceptions.h"

#include <windows.h>

#include <string>
#include <string_view>

namespace smh {

// Raised when a call of the system fails; the message names it.
class TWinVersionInfoException : public Exception {
 public:
  using Exception::Exception;
  const wchar_t* ClassName() const noexcept override { return L"TWinVersionInfoException"; }
};

// The codes of version_codes.h and their names, which are literals and valid for ever. All raise EOSError, or
// TWinVersionInfoException, when the system does not answer, unless it is said otherwise.
namespace WinVersionInfo {

int OSCode();
int ArchitectureCode();
int ServicePackCode();
int EditionCode();
std::wstring_view OSName();
std::wstring_view ArchitectureName();
std::wstring_view ServicePackName();
std::wstring_view EditionName();

// A 32-bit process on a 64-bit Windows; the system's test for a 64-bit Windows.
bool IsWow64();
// As the system's function of that name, also where it is GetSystemInfo.
void GetNativeSystemInfo(SYSTEM_INFO& info);
// Raises TWinVersionInfoException when the call fails with a reason, EOSError when Windows lacks it. A
// failure without a reason leaves what the call stored.
void GetProductInfo(DWORD major, DWORD minor, DWORD spMajor, DWORD spMinor, DWORD& productType);
// As the shell's function of that name.
bool IsOS(DWORD value);
// What the library's DllGetVersion says; loads the library for that. False when library or export is
// missing; raises nothing.
bool DllVersion(const wchar_t* fileName, DWORD& major, DWORD& minor);

}  // namespace WinVersionInfo

// Forgets every answer and frees the libraries the entry points came from; no other thread may ask meanwhile.
// A module's stop calls it. There is no start: all of this is constant-initialised, because programs that
// have no start-up table ask as well.
void ForgetWinVersionInfo() noexcept;

}  // namespace smh
