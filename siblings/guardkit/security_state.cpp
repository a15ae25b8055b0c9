#include "siblings/guardkit/security_state.h"

#include <cstring>

namespace smh {

bool IsWholeDescriptor(const ByteVector& security) noexcept {
  if (security.size() < sizeof(SECURITY_DESCRIPTOR_RELATIVE)) return false;
  SECURITY_DESCRIPTOR_RELATIVE head;
  std::memcpy(&head, security.data(), sizeof(head));
  if ((head.Control & SE_SELF_RELATIVE) == 0) return false;
  const auto holds = [&](DWORD offset, std::size_t size) {
    return offset <= security.size() && size <= security.size() - offset;
  };
  const auto* const bytes = security.data();
  for (const DWORD sid : {head.Owner, head.Group}) {
    if (sid == 0) continue;
    if (!holds(sid, GetSidLengthRequired(0))) return false;
    if (!holds(sid, GetSidLengthRequired(std::to_integer<UCHAR>(bytes[sid + 1])))) return false;
  }
  if (head.Dacl != 0) {
    ACL acl;
    if (!holds(head.Dacl, sizeof(acl))) return false;
    std::memcpy(&acl, bytes + head.Dacl, sizeof(acl));
    if (!holds(head.Dacl, acl.AclSize)) return false;
  }
  return IsValidSecurityDescriptor(const_cast<std::byte*>(bytes)) != FALSE;
}

ByteVector SettableDescriptor(const ByteVector& security) {
  ByteVector descriptor = security;
  SECURITY_DESCRIPTOR_RELATIVE head;
  std::memcpy(&head, descriptor.data(), sizeof(head));
  if ((head.Control & SE_DACL_AUTO_INHERITED) != 0) head.Control |= SE_DACL_AUTO_INHERIT_REQ;
  std::memcpy(descriptor.data(), &head, sizeof(head));
  return descriptor;
}

RestorePrivilege::RestorePrivilege() noexcept {
  if (OpenProcessToken(GetCurrentProcess(), TOKEN_ADJUST_PRIVILEGES | TOKEN_QUERY, token_.Put()) != FALSE) {
    Set(SE_PRIVILEGE_ENABLED);
  }
}

RestorePrivilege::~RestorePrivilege() {
  if (changed_) Set(0);
}

void RestorePrivilege::Set(DWORD attributes) noexcept {
  TOKEN_PRIVILEGES wanted = {1, {{{}, attributes}}};
  TOKEN_PRIVILEGES before = {};
  DWORD size = 0;
  if (LookupPrivilegeValueW(nullptr, L"SeRestorePrivilege", &wanted.Privileges[0].Luid) == FALSE) return;
  // What was enabled already is not listed as changed.
  changed_ = AdjustTokenPrivileges(token_.Get(), FALSE, &wanted, sizeof(before), &before, &size) != FALSE &&
             before.PrivilegeCount == 1;
}

}  // namespace smh
