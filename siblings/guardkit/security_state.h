// Owner, group and DACL of keys and files, as self-relative descriptors.
#pragma once

#include "siblings/guardkit/format/journal_steps.h"
#include "infra/runtime/handle.h"

#include <windows.h>

namespace smh {

inline constexpr SECURITY_INFORMATION kKeptSecurity =
    OWNER_SECURITY_INFORMATION | GROUP_SECURITY_INFORMATION | DACL_SECURITY_INFORMATION;

// Whether the bytes of a journal are a whole descriptor: nothing else is handed to the system.
bool IsWholeDescriptor(const ByteVector& security) noexcept;

// The descriptor, ready to be set: what was inherited counts as inherited again.
ByteVector SettableDescriptor(const ByteVector& security);

// Lets a process that has the privilege name any owner, until the end of the scope.
class RestorePrivilege {
 public:
  RestorePrivilege() noexcept;
  ~RestorePrivilege();
  RestorePrivilege(const RestorePrivilege&) = delete;
  RestorePrivilege& operator=(const RestorePrivilege&) = delete;

 private:
  void Set(DWORD attributes) noexcept;

  ScopedHandle token_;
  bool changed_ = false;
};

// `set` takes the parts and the descriptor and answers a Win32 status. Without the right to name the owner
// only the DACL is set, which decides what anybody may do.
template <typename Set>
LSTATUS ApplySecurity(const ByteVector& security, Set&& set) noexcept {
  try {
    if (!IsWholeDescriptor(security)) return ERROR_INVALID_SECURITY_DESCR;
    ByteVector descriptor = SettableDescriptor(security);
    const RestorePrivilege privilege;
    const DWORD status = set(kKeptSecurity, descriptor.data());
    return static_cast<LSTATUS>(status == ERROR_SUCCESS ? status
                                                        : set(DACL_SECURITY_INFORMATION, descriptor.data()));
  } catch (...) {
    return ERROR_OUTOFMEMORY;
  }
}

}  // namespace smh
