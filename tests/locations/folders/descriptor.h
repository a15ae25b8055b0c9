// A security descriptor out of its text.
#pragma once

#include <windows.h>
#include <sddl.h>

#include <stdexcept>

namespace smh::test {

struct Descriptor {
  explicit Descriptor(const wchar_t* sddl) {
    if (!ConvertStringSecurityDescriptorToSecurityDescriptorW(sddl, SDDL_REVISION_1, &memory, nullptr)) {
      throw std::runtime_error("not a security descriptor");
    }
    BOOL ignored;
    GetSecurityDescriptorOwner(memory, &owner, &ignored);
    GetSecurityDescriptorDacl(memory, &ignored, &dacl, &ignored);
  }
  ~Descriptor() { LocalFree(memory); }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;

  ACE_HEADER* FirstEntry() const {
    void* entry = nullptr;
    GetAce(dacl, 0, &entry);
    return static_cast<ACE_HEADER*>(entry);
  }

  PSECURITY_DESCRIPTOR memory = nullptr;
  PSID owner = nullptr;
  PACL dacl = nullptr;
};

}  // namespace smh::test
