// The system calls of a reading pass, counted: the functions that ask the registry, the disk or the kernel,
// as this program and the sibling libraries import them.
#pragma once

#include <windows.h>
#include <winternl.h>

#include <array>
#include <memory>
#include <string>
#include <vector>

namespace smh::bench {

// clang-format off
#define SMH_SYSTEM_CALLS(X) \
  X(RegOpenKeyExW) \
  X(RegCloseKey) \
  X(RegEnumKeyExW) \
  X(RegEnumValueW) \
  X(RegQueryValueExW) \
  X(RegQueryInfoKeyW) \
  X(RegNotifyChangeKeyValue) \
  X(GetFileAttributesW) \
  X(GetFileAttributesExW) \
  X(FindFirstFileW) \
  X(FindNextFileW) \
  X(FindClose) \
  X(CreateFileW) \
  X(GetFileSizeEx) \
  X(NtQueryInformationFile) \
  X(ReadFile) \
  X(CloseHandle) \
  X(GetFileVersionInfoSizeW) \
  X(GetFileVersionInfoW) \
  X(SHGetFileInfoW) \
  X(ExtractIconExW) \
  X(WaitForSingleObject) \
  X(WaitForMultipleObjects) \
  X(FindFirstChangeNotificationW) \
  X(FindNextChangeNotification)
// clang-format on

enum class SystemCall : int {
#define SMH_CALL(name) name,
  SMH_SYSTEM_CALLS(SMH_CALL)
#undef SMH_CALL
      kCount
};

inline constexpr std::size_t kSystemCallCount = static_cast<std::size_t>(SystemCall::kCount);
inline std::array<int, kSystemCallCount> systemCallCounts{};

// Stands in for one function: counts the call and passes it on to `next`.
template <SystemCall Call, typename Function>
struct SystemCallGate;
template <SystemCall Call, typename Result, typename... Arguments>
struct SystemCallGate<Call, Result(WINAPI*)(Arguments...)> {
  using Function = Result(WINAPI*)(Arguments...);
  static inline Function real = nullptr;
  static inline Function next = nullptr;
  static Result WINAPI Enter(Arguments... arguments) {
    ++systemCallCounts[static_cast<std::size_t>(Call)];
    return next(arguments...);
  }
};

#define SMH_GATE(name) ::smh::bench::SystemCallGate<::smh::bench::SystemCall::name, decltype(&name)>

// Patches the imports of this program and of the modules named; lasts until the process ends.
void CountSystemCalls(const std::vector<const wchar_t*>& modules);
void ResetSystemCalls() noexcept;
int TotalSystemCalls() noexcept;
int CountOf(SystemCall call) noexcept;
// "RegOpenKeyExW 12, RegCloseKey 12": the functions that were called.
std::string SystemCallList();

}  // namespace smh::bench
