// Owner, group and DACL of keys and files, as self-relative security descriptors
// (SECURITY_DESCRIPTOR_RELATIVE).
#pragma once

#include "infra/runtime/handle.h"
#include "siblings/guardkit/format/journal_steps.h"

#include <windows.h>

namespace smh {

// The parts that are kept; to read the SACL would take a privilege.
inline constexpr SECURITY_INFORMATION kKeptSecurity =
    OWNER_SECURITY_INFORMATION | GROUP_SECURITY_INFORMATION | DACL_SECURITY_INFORMATION;

// Whether the bytes of a journal are a whole descriptor, all of whose offsets lie inside: nothing else is
// handed to the system.
bool IsWholeDescriptor(const ByteVector& security) noexcept;

// The same whole descriptor, ready to be set: what was inherited counts as inherited again.
ByteVector SettableDescriptor(const ByteVector& security);

// Lets a process that has SeRestorePrivilege name any owner, until the end of the scope; nothing happens in
// one that has not. The privilege is the process's: scopes of two threads would end each other's, so the
// caller has the journal's lock.
class RestorePrivilege {
 public:
  // Enables the privilege, unless it is enabled already: that is left alone at the end then.
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
// only the DACL is set, which decides what anybody may do. ERROR_INVALID_SECURITY_DESCR for bytes that are no
// whole descriptor.
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
