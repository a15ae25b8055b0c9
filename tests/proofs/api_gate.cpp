#include "tests/proofs/api_gate.h"

#include <objbase.h>
#include <aclapi.h>

#include <cstdint>
#include <tuple>
#include <type_traits>
#include <utility>

// The backup service counts the units of value names itself.
extern "C" {
LONG NTAPI NtSetValueKey(HANDLE key, void* name, ULONG titleIndex, ULONG type, void* data, ULONG size);
LONG NTAPI NtDeleteValueKey(HANDLE key, void* name);
LONG NTAPI NtQueryKey(HANDLE key, int what, void* info, ULONG size, ULONG* needed);
}

namespace smh::test {

namespace {

// Function, effect, what it answers on failure.
#define SMH_API_ROWS(ROW)                                                              \
  ROW(RegOpenKeyExW, kLooks, ERROR_ACCESS_DENIED)                                      \
  ROW(RegQueryValueExW, kLooks, ERROR_ACCESS_DENIED)                                   \
  ROW(RegQueryInfoKeyW, kLooks, ERROR_ACCESS_DENIED)                                   \
  ROW(RegEnumKeyExW, kLooks, ERROR_ACCESS_DENIED)                                      \
  ROW(RegEnumValueW, kLooks, ERROR_ACCESS_DENIED)                                      \
  ROW(RegGetKeySecurity, kLooks, ERROR_ACCESS_DENIED)                                  \
  ROW(RegFlushKey, kLooks, ERROR_ACCESS_DENIED)                                        \
  ROW(RegCreateKeyExW, kMakes, ERROR_ACCESS_DENIED)                                    \
  ROW(RegSetValueExW, kWrites, ERROR_ACCESS_DENIED)                                    \
  ROW(RegDeleteValueW, kDeletes, ERROR_ACCESS_DENIED)                                  \
  ROW(RegDeleteKeyExW, kDeletes, ERROR_ACCESS_DENIED)                                  \
  ROW(RegDeleteKeyW, kDeletes, ERROR_ACCESS_DENIED)                                    \
  ROW(NtSetValueKey, kWrites, static_cast<std::int32_t>(0xC0000022))                   \
  ROW(NtDeleteValueKey, kDeletes, static_cast<std::int32_t>(0xC0000022))               \
  ROW(RegSetKeySecurity, kWrites, ERROR_ACCESS_DENIED)                                 \
  ROW(SetFileSecurityW, kWrites, FALSE)                                                \
  ROW(GetFileAttributesW, kLooks, static_cast<std::intptr_t>(INVALID_FILE_ATTRIBUTES)) \
  ROW(GetFileAttributesExW, kLooks, FALSE)                                             \
  ROW(GetFileInformationByHandle, kLooks, FALSE)                                       \
  ROW(GetFileInformationByHandleEx, kLooks, FALSE)                                     \
  ROW(FindFirstFileW, kLooks, -1)                                                      \
  ROW(FindNextFileW, kLooks, FALSE)                                                    \
  ROW(GetFileSizeEx, kLooks, FALSE)                                                    \
  ROW(ReadFile, kLooks, FALSE)                                                         \
  ROW(LockFileEx, kLooks, FALSE)                                                       \
  ROW(FlushFileBuffers, kLooks, FALSE)                                                 \
  ROW(GetNamedSecurityInfoW, kLooks, ERROR_ACCESS_DENIED)                              \
  ROW(GetSecurityInfo, kLooks, ERROR_ACCESS_DENIED)                                    \
  ROW(SetSecurityInfo, kWrites, ERROR_ACCESS_DENIED)                                   \
  ROW(GetFileSecurityW, kLooks, FALSE)                                                 \
  ROW(CoCreateInstance, kLooks, E_ACCESSDENIED)                                        \
  ROW(CreateFileW, kLooks, -1)                                                         \
  ROW(CreateDirectoryW, kMakes, FALSE)                                                 \
  ROW(WriteFile, kWrites, FALSE)                                                       \
  ROW(SetEndOfFile, kWrites, FALSE)                                                    \
  ROW(SetFileAttributesW, kWrites, FALSE)                                              \
  ROW(SetFileTime, kWrites, FALSE)                                                     \
  ROW(SetNamedSecurityInfoW, kWrites, ERROR_ACCESS_DENIED)                             \
  ROW(CopyFileW, kMakes, FALSE)                                                        \
  ROW(MoveFileW, kWrites, FALSE)                                                       \
  ROW(MoveFileExW, kWrites, FALSE)                                                     \
  ROW(SetFileInformationByHandle, kWrites, FALSE)                                      \
  ROW(CreateHardLinkW, kMakes, FALSE)                                                  \
  ROW(DeleteFileW, kDeletes, FALSE)                                                    \
  ROW(RemoveDirectoryW, kDeletes, FALSE)

enum Api {
#define SMH_API_NAME(function, effect, failure) kApi_##function,
  SMH_API_ROWS(SMH_API_NAME)
#undef SMH_API_NAME
      kApiCount
};

struct Row {
  const char* name;
  unsigned effect;
  std::intptr_t failure;
  void* hook;
};
extern const Row kRows[kApiCount];

struct Round {
  void* originals[kApiCount] = {};
  DWORD thread = 0;
  Fault fault = Fault::kNone;
  unsigned counted = 0;
  int number = 0;
  int count = 0;
  const char* victim = nullptr;
  std::function<void()> outside;
  std::vector<SeenCall> trace;
};
Round g_round;

constexpr DWORD kWriteAccess =
    GENERIC_WRITE | GENERIC_ALL | DELETE | FILE_WRITE_DATA | FILE_APPEND_DATA | FILE_WRITE_ATTRIBUTES;
constexpr REGSAM kChangeKey = KEY_SET_VALUE | KEY_CREATE_SUB_KEY | DELETE;

template <int kAt, typename... Arguments>
auto At(Arguments... arguments) noexcept {
  return std::get<kAt>(std::make_tuple(arguments...));
}

// What is opened, and what is set of a file, is told by the arguments.
template <int kApi, typename... Arguments>
unsigned EffectOf(Arguments... arguments) noexcept {
  if constexpr (kApi == kApi_RegOpenKeyExW) {
    return (At<3>(arguments...) & kChangeKey) != 0 ? kOpens : kLooks;
  } else if constexpr (kApi == kApi_CreateFileW) {
    if (At<4>(arguments...) != OPEN_EXISTING) return kMakes;
    return (At<1>(arguments...) & kWriteAccess) != 0 ? kOpens : kLooks;
  } else if constexpr (kApi == kApi_SetFileInformationByHandle) {
    return At<1>(arguments...) == FileDispositionInfo ? kDeletes : kWrites;
  } else {
    return kRows[kApi].effect;
  }
}

// In the form \\REGISTRY\\MACHINE\\...
std::wstring PathOfKey(HKEY key) {
  constexpr int kNameInformation = 3;
  struct {
    ULONG bytes;
    wchar_t text[600];
  } name = {};
  ULONG needed = 0;
  const LONG status = NtQueryKey(key, kNameInformation, &name, sizeof(name), &needed);
  return status < 0 ? std::wstring() : std::wstring(name.text, name.bytes / sizeof(wchar_t));
}

// What a call works on: a path, or the path of a key and the name of a value or subkey behind a bar.
template <typename... Arguments>
std::wstring PlaceOf(Arguments... arguments) {
  std::wstring place;
  const auto add = [&](auto argument) {
    if constexpr (std::is_same_v<decltype(argument), HKEY>) {
      place = PathOfKey(argument);
    } else if constexpr (std::is_same_v<decltype(argument), const wchar_t*>) {
      place += (place.empty() ? L"" : L"|") + std::wstring(argument == nullptr ? L"" : argument);
    } else if constexpr (std::is_same_v<decltype(argument), HANDLE>) {
      wchar_t path[MAX_PATH] = {};
      if (place.empty()) place = PathOfKey(static_cast<HKEY>(argument));
      if (place.empty() && GetFinalPathNameByHandleW(argument, path, MAX_PATH, 0) != 0) place = path;
    }
  };
  (add(arguments), ...);
  return place;
}

// The first call of an enumeration stands for all.
template <int kApi, typename... Arguments>
bool GoesOn(Arguments... arguments) noexcept {
  if constexpr (kApi == kApi_RegEnumValueW || kApi == kApi_RegEnumKeyExW) {
    return At<1>(arguments...) > 0;
  } else {
    return false;
  }
}

// What goes over what is in the file needs none.
template <int kApi, typename... Arguments>
bool NeedsRoom(Arguments... arguments) noexcept {
  if constexpr (kApi == kApi_WriteFile) {
    const HANDLE file = At<0>(arguments...);
    LARGE_INTEGER place = {};
    LARGE_INTEGER end = {};
    return SetFilePointerEx(file, {}, &place, FILE_CURRENT) == FALSE || GetFileSizeEx(file, &end) == FALSE ||
           place.QuadPart + LONGLONG{At<2>(arguments...)} > end.QuadPart;
  } else {
    return kApi == kApi_CopyFileW || kApi == kApi_CreateDirectoryW || kApi == kApi_RegFlushKey;
  }
}

// The fault that this call suffers.
Fault Enter(int api, unsigned effect) {
  if (g_round.thread != GetCurrentThreadId() || (g_round.counted & effect) == 0) return Fault::kNone;
  ++g_round.count;
  const bool isFromThere = g_round.fault == Fault::kRefusedOn || g_round.fault == Fault::kFullOn;
  const bool isDue = isFromThere ? g_round.count >= g_round.number : g_round.count == g_round.number;
  if (!isDue) return Fault::kNone;
  if (g_round.victim == nullptr) g_round.victim = kRows[api].name;
  if (g_round.fault == Fault::kDeath) TerminateProcess(GetCurrentProcess(), 1);
  if (g_round.fault != Fault::kOutside) return g_round.fault;
  const DWORD thread = std::exchange(g_round.thread, 0);
  g_round.outside();
  g_round.thread = thread;
  return Fault::kNone;
}

template <typename Result>
Result ResultOf(std::intptr_t value) noexcept {
  if constexpr (std::is_pointer_v<Result>) {
    return reinterpret_cast<Result>(value);
  } else {
    return static_cast<Result>(value);
  }
}

// Nobody will close what a call opened that was answered as refused.
template <int kApi, typename Result, typename... Arguments>
void CloseOpened(Result result, Arguments... arguments) noexcept {
  if constexpr (kApi == kApi_CreateFileW) {
    if (result != INVALID_HANDLE_VALUE) CloseHandle(result);
  } else if constexpr (kApi == kApi_RegCreateKeyExW) {
    if (result == ERROR_SUCCESS) RegCloseKey(*At<7>(arguments...));
  }
}

template <int kApi, typename Function>
struct Hook;

template <int kApi, typename Result, typename... Arguments>
struct Hook<kApi, Result(WINAPI*)(Arguments...)> {
  static Result WINAPI Call(Arguments... arguments) {
    const auto original = reinterpret_cast<Result(WINAPI*)(Arguments...)>(g_round.originals[kApi]);
    const unsigned effect = EffectOf<kApi>(arguments...);
    const bool isCounted = g_round.fault != Fault::kFullOn || NeedsRoom<kApi>(arguments...);
    const Fault fault = isCounted ? Enter(kApi, effect) : Fault::kNone;
    if (fault == Fault::kNone && g_round.fault == Fault::kOutside && g_round.thread == GetCurrentThreadId() &&
        g_round.count >= g_round.number && !GoesOn<kApi>(arguments...)) {
      g_round.trace.push_back({g_round.count, kRows[kApi].name, effect, PlaceOf(arguments...)});
    }
    if (fault == Fault::kNone) return original(arguments...);
    const DWORD error = fault == Fault::kFullOn ? ERROR_DISK_FULL : ERROR_ACCESS_DENIED;
    const bool isStatus = kRows[kApi].failure == ERROR_ACCESS_DENIED;
    const std::intptr_t failure = isStatus ? static_cast<std::intptr_t>(error) : kRows[kApi].failure;
    if (fault == Fault::kPretended) return ResultOf<Result>(failure == FALSE ? TRUE : ERROR_SUCCESS);
    if (fault == Fault::kLate) CloseOpened<kApi>(original(arguments...), arguments...);
    SetLastError(error);
    return ResultOf<Result>(failure);
  }
};

const Row kRows[kApiCount] = {
#define SMH_API_ROW(function, effect, failure) \
  {#function, effect, failure, reinterpret_cast<void*>(&Hook<kApi_##function, decltype(&function)>::Call)},
    SMH_API_ROWS(SMH_API_ROW)
#undef SMH_API_ROW
};

FARPROC(WINAPI* g_getProcAddress)(HMODULE, const char*) = nullptr;

// One function is looked up at run time.
FARPROC WINAPI GetHookedAddress(HMODULE module, const char* name) {
  const FARPROC found = g_getProcAddress(module, name);
  const bool isNamed = reinterpret_cast<ULONG_PTR>(name) > 0xFFFF;
  if (found == nullptr || !isNamed || std::strcmp(name, kRows[kApi_RegDeleteKeyExW].name) != 0) return found;
  g_round.originals[kApi_RegDeleteKeyExW] = reinterpret_cast<void*>(found);
  return reinterpret_cast<FARPROC>(kRows[kApi_RegDeleteKeyExW].hook);
}

}  // namespace

ApiGate::ApiGate(std::initializer_list<HMODULE> modules) {
  for (const HMODULE module : modules) {
    for (int api = 0; api < kApiCount; ++api) {
      auto patch = ImportPatch::IfImported(module, kRows[api].name, kRows[api].hook);
      if (!patch) continue;
      g_round.originals[api] = patch->Original();
      patches_.push_back(std::move(patch));
    }
    auto lookup =
        ImportPatch::IfImported(module, "GetProcAddress", reinterpret_cast<void*>(&GetHookedAddress));
    if (!lookup) continue;
    g_getProcAddress = reinterpret_cast<decltype(g_getProcAddress)>(lookup->Original());
    patches_.push_back(std::move(lookup));
  }
}

ApiGate::~ApiGate() {
  g_round.thread = 0;
}

void ApiGate::Arm(Fault fault, int number) {
  unsigned counted = kEvery;
  if (fault == Fault::kPretended) counted = kChanges;
  if (fault == Fault::kLate || fault == Fault::kDeath) counted = kMakes | kChanges;
  Begin(fault, number, counted);
}

void ApiGate::ArmFrom(int number, unsigned calls) {
  Begin(Fault::kRefusedOn, number, calls);
}

void ApiGate::ArmOutside(int number, std::function<void()> outside) {
  g_round.outside = std::move(outside);
  Begin(Fault::kOutside, number, kEvery);
}

void ApiGate::ArmFullDisk(int room) {
  Begin(Fault::kFullOn, room + 1, kEvery);
}

void ApiGate::Begin(Fault fault, int number, unsigned counted) {
  g_round.fault = fault;
  g_round.counted = counted;
  g_round.number = number;
  g_round.count = 0;
  g_round.victim = nullptr;
  g_round.trace.clear();
  g_round.thread = GetCurrentThreadId();
}

const char* ApiGate::Disarm() {
  g_round.thread = 0;
  return g_round.victim;
}

int ApiGate::Count() const noexcept {
  return g_round.count;
}

const std::vector<SeenCall>& ApiGate::Trace() const noexcept {
  return g_round.trace;
}

}  // namespace smh::test
