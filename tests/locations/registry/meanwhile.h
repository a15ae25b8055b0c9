// Another program that changes the registry while a change of the library is at work.
#pragma once

#include "tests/locations/refusal.h"
#include "tests/support/import_patch.h"
#include "tests/support/module_fixture.h"

#include <functional>
#include <string>
#include <utility>

namespace smh::test {

// Runs something once while the next change is at work, behind its plans and before its last look: at its
// first call for writing, or for deleting. For the one change at a time of a test's thread.
class Meanwhile {
 public:
  enum class Call { kWrite, kDelete };

  Meanwhile(RecordingSafeguard& service, bool recorded, Call call, std::function<void()> outside)
      : service_(service) {
    call_ = call;
    outside_ = std::move(outside);
    if (!recorded) return;
    service.Before([call](const std::wstring& line) {
      const bool writes = line.starts_with(L"SetValue");
      const bool deletes = line.starts_with(L"DeleteValue") || line.starts_with(L"DeleteKey");
      if (call == Call::kWrite ? writes : deletes) RunOnce();
    });
    isPlain_ = false;
  }
  ~Meanwhile() {
    service_.Before(nullptr);
    outside_ = nullptr;
    isPlain_ = true;
  }
  Meanwhile(const Meanwhile&) = delete;
  Meanwhile& operator=(const Meanwhile&) = delete;

  // Whether it has come to it.
  bool HasRun() const noexcept { return outside_ == nullptr; }

 private:
  static void RunOnce() {
    if (const auto outside = std::exchange(outside_, nullptr)) outside();
  }
  static LSTATUS WINAPI Create(HKEY root, const wchar_t* path, DWORD reserved, wchar_t* kind, DWORD options,
                               REGSAM access, const SECURITY_ATTRIBUTES* security, HKEY* key,
                               DWORD* disposition) {
    static const auto real = RealFunction<decltype(RegCreateKeyExW)>(L"advapi32.dll", "RegCreateKeyExW");
    if (isPlain_ && call_ == Call::kWrite) RunOnce();
    return real(root, path, reserved, kind, options, access, const_cast<SECURITY_ATTRIBUTES*>(security), key,
                disposition);
  }
  // What may be deleted is tried with all rights.
  static LSTATUS WINAPI Open(HKEY root, const wchar_t* path, DWORD options, REGSAM access, HKEY* key) {
    static const auto real = RealFunction<decltype(RegOpenKeyExW)>(L"advapi32.dll", "RegOpenKeyExW");
    const bool forAll = (access & KEY_ALL_ACCESS) == KEY_ALL_ACCESS || (access & DELETE) != 0;
    if (isPlain_ && call_ == Call::kDelete && forAll) RunOnce();
    return real(root, path, options, access, key);
  }

  static inline Call call_ = Call::kWrite;
  static inline std::function<void()> outside_;
  static inline bool isPlain_ = true;

  RecordingSafeguard& service_;
  const ImportPatch create_{"RegCreateKeyExW", &Create};
  const ImportPatch open_{"RegOpenKeyExW", &Open};
};

}  // namespace smh::test
