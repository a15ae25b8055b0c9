#include "tests/proofs/api_gate.h"

#include <objbase.h>
#include <aclapi.h>

#include <cstdint>
#include <type_traits>

// The backup service counts the units of value names itself.
extern "C" {
LONG NTAPI NtSetValueKey(HANDLE key, void* name, ULONG titleIndex, ULONG type, void* data, ULONG size);
LONG NTAPI NtDeleteValueKey(HANDLE key, void* name);
}

namespace smh::test {

namespace {

enum class Effect { kLooks, kMakes, kChanges };

// Function, effect, what it answers on failure.
#define SMH_API_ROWS(ROW)                                                              \
  ROW(RegOpenKeyExW, kLooks, ERROR_ACCESS_DENIED)                                      \
  ROW(RegQueryValueExW, kLooks, ERROR_ACCESS_DENIED)                                   \
  ROW(RegQueryInfoKeyW, kLooks, ERROR_ACCESS_DENIED)                                   \
  ROW(RegEnumKeyExW, kLooks, ERROR_ACCESS_DENIED)                                      \
  ROW(RegEnumValueW, kLooks, ERROR_ACCESS_DENIED)                                      \
  ROW(RegFlushKey, kLooks, ERROR_ACCESS_DENIED)                                        \
  ROW(RegCreateKeyExW, kMakes, ERROR_ACCESS_DENIED)                                    \
  ROW(RegSetValueExW, kChanges, ERROR_ACCESS_DENIED)                                   \
  ROW(RegDeleteValueW, kChanges, ERROR_ACCESS_DENIED)                                  \
  ROW(RegDeleteKeyExW, kChanges, ERROR_ACCESS_DENIED)                                  \
  ROW(NtSetValueKey, kChanges, static_cast<std::int32_t>(0xC0000022))                  \
  ROW(NtDeleteValueKey, kChanges, static_cast<std::int32_t>(0xC0000022))               \
  ROW(RegSetKeySecurity, kChanges, ERROR_ACCESS_DENIED)                                \
  ROW(SetFileSecurityW, kChanges, FALSE)                                               \
  ROW(GetFileAttributesW, kLooks, static_cast<std::intptr_t>(INVALID_FILE_ATTRIBUTES)) \
  ROW(FindFirstFileW, kLooks, -1)                                                      \
  ROW(FindNextFileW, kLooks, FALSE)                                                    \
  ROW(GetFileSizeEx, kLooks, FALSE)                                                    \
  ROW(ReadFile, kLooks, FALSE)                                                         \
  ROW(FlushFileBuffers, kLooks, FALSE)                                                 \
  ROW(GetSecurityInfo, kLooks, ERROR_ACCESS_DENIED)                                    \
  ROW(CoCreateInstance, kLooks, E_ACCESSDENIED)                                        \
  ROW(CreateFileW, kMakes, -1)                                                         \
  ROW(CreateDirectoryW, kMakes, FALSE)                                                 \
  ROW(WriteFile, kChanges, FALSE)                                                      \
  ROW(SetEndOfFile, kChanges, FALSE)                                                   \
  ROW(SetFileAttributesW, kChanges, FALSE)                                             \
  ROW(SetFileTime, kChanges, FALSE)                                                    \
  ROW(SetSecurityInfo, kChanges, ERROR_ACCESS_DENIED)                                  \
  ROW(SetNamedSecurityInfoW, kChanges, ERROR_ACCESS_DENIED)                            \
  ROW(CopyFileW, kChanges, FALSE)                                                      \
  ROW(MoveFileW, kChanges, FALSE)                                                      \
  ROW(MoveFileExW, kChanges, FALSE)                                                    \
  ROW(SetFileInformationByHandle, kChanges, FALSE)                                     \
  ROW(CreateHardLinkW, kMakes, FALSE)                                                  \
  ROW(DeleteFileW, kChanges, FALSE)                                                    \
  ROW(RemoveDirectoryW, kChanges, FALSE)

enum Api {
#define SMH_API_NAME(function, effect, failure) kApi_##function,
  SMH_API_ROWS(SMH_API_NAME)
#undef SMH_API_NAME
      kApiCount
};

struct Row {
  const char* name;
  Effect effect;
  std::intptr_t failure;
  void* hook;
};
extern const Row kRows[kApiCount];

struct Round {
  void* originals[kApiCount] = {};
  DWORD thread = 0;
  Fault fault = Fault::kNone;
  int number = 0;
  int count = 0;
  const char* victim = nullptr;
};
Round g_round;

bool Counts(Effect effect) noexcept {
  switch (g_round.fault) {
    case Fault::kNone:
    case Fault::kRefused:
      return true;
    case Fault::kDeath:
      return effect != Effect::kLooks;
    default:
      return effect == Effect::kChanges;
  }
}

// The fault that this call suffers.
Fault Enter(int api) noexcept {
  if (g_round.thread != GetCurrentThreadId() || !Counts(kRows[api].effect)) return Fault::kNone;
  if (++g_round.count != g_round.number) return Fault::kNone;
  g_round.victim = kRows[api].name;
  if (g_round.fault == Fault::kDeath) TerminateProcess(GetCurrentProcess(), 1);
  return g_round.fault;
}

template <typename Result>
Result ResultOf(std::intptr_t value) noexcept {
  if constexpr (std::is_pointer_v<Result>) {
    return reinterpret_cast<Result>(value);
  } else {
    return static_cast<Result>(value);
  }
}

template <int kApi, typename Function>
struct Hook;

template <int kApi, typename Result, typename... Arguments>
struct Hook<kApi, Result(WINAPI*)(Arguments...)> {
  static Result WINAPI Call(Arguments... arguments) {
    const auto original = reinterpret_cast<Result(WINAPI*)(Arguments...)>(g_round.originals[kApi]);
    const Fault fault = Enter(kApi);
    if (fault == Fault::kNone) return original(arguments...);
    const std::intptr_t failure = kRows[kApi].failure;
    if (fault == Fault::kPretended) return ResultOf<Result>(failure == FALSE ? TRUE : ERROR_SUCCESS);
    if (fault == Fault::kLate) original(arguments...);
    SetLastError(ERROR_ACCESS_DENIED);
    return ResultOf<Result>(failure);
  }
};

const Row kRows[kApiCount] = {
#define SMH_API_ROW(function, effect, failure) \
  {#function, Effect::effect, failure,         \
   reinterpret_cast<void*>(&Hook<kApi_##function, decltype(&function)>::Call)},
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
  g_round.fault = fault;
  g_round.number = number;
  g_round.count = 0;
  g_round.victim = nullptr;
  g_round.thread = GetCurrentThreadId();
}

const char* ApiGate::Disarm() {
  g_round.thread = 0;
  return g_round.victim;
}

int ApiGate::Count() const noexcept {
  return g_round.count;
}

}  // namespace smh::test
