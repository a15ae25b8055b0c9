#include "locations/folders/temporary_use.h"

#include "infra/runtime/exceptions.h"
#include "infra/runtime/format.h"
#include "infra/runtime/text.h"
#include "locations/folders/folder_files.h"

#include <windows.h>
#include <sddl.h>

#include <cstdint>

namespace smh {

namespace {

constexpr DWORD kPatienceMs = 2'000;

// Who has one of the objects may wait for it and release it, whoever made it: two administrators change the
// same folder. Nobody can do more with them than keep leftovers from being removed.
constexpr wchar_t kEverybodyMayUseIt[] = L"D:(A;;0x00100001;;;WD)";
constexpr DWORD kUse = SYNCHRONIZE | MUTEX_MODIFY_STATE;

struct LocalMemoryTraits {
  using Type = void*;
  static constexpr Type kNone = nullptr;
  static bool IsValid(Type value) noexcept { return value != nullptr; }
  static void Close(Type value) noexcept { LocalFree(value); }
};

// Names of objects have no backslashes and are short. Two folders of one name would only wait for each other.
std::wstring ObjectName(const wchar_t* what, const std::wstring& folder) {
  std::wstring text = folder;
  CharUpperBuffW(text.data(), static_cast<DWORD>(text.size()));
  std::uint64_t hash = 0xCBF29CE484222325;
  for (const wchar_t unit : text) hash = (hash ^ unit) * 0x100000001B3;
  return Format(L"Global\\temporary-shortcuts-%s-%s", what, std::to_wstring(hash));
}

// Held for a scope; not when others hold it for too long.
class Turn {
 public:
  explicit Turn(HANDLE mutex) noexcept : mutex_(mutex) {
    const DWORD result = WaitForSingleObject(mutex, kPatienceMs);
    isMine_ = result == WAIT_OBJECT_0 || result == WAIT_ABANDONED;
  }
  ~Turn() {
    if (isMine_) ReleaseMutex(mutex_);
  }
  Turn(const Turn&) = delete;
  Turn& operator=(const Turn&) = delete;

  bool IsMine() const noexcept { return isMine_; }

 private:
  const HANDLE mutex_;
  bool isMine_ = false;
};

void RemoveLeftovers(const std::wstring& folder) {
  try {
    for (const std::wstring& name : FileNamesIn(folder)) DeleteFileW((folder + name).c_str());
  } catch (const EOSError&) {
    // A folder that cannot be read keeps them until the next change.
  }
}

}  // namespace

TemporaryUse::TemporaryUse(const std::wstring& folder) {
  void* descriptor = nullptr;
  ConvertStringSecurityDescriptorToSecurityDescriptorW(kEverybodyMayUseIt, SDDL_REVISION_1, &descriptor,
                                                       nullptr);
  const ScopedResource<LocalMemoryTraits> owned(descriptor);
  SECURITY_ATTRIBUTES attributes{sizeof(attributes), descriptor, FALSE};
  const ScopedHandle mutex(CreateMutexExW(&attributes, ObjectName(L"turn", folder).c_str(), 0, kUse));
  // What one finds without another is a leftover, and none begins while they are removed.
  const Turn turn(mutex.Get());
  use_.Reset(CreateEventExW(&attributes, ObjectName(L"use", folder).c_str(), 0, SYNCHRONIZE));
  const bool isAlone = use_ && GetLastError() != ERROR_ALREADY_EXISTS;
  if (isAlone && turn.IsMine()) RemoveLeftovers(folder);
}

}  // namespace smh
