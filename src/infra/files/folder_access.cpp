#include "infra/files/folder_access.h"

#include "infra/files/file_facts.h"
#include "infra/runtime/exceptions.h"
#include "infra/runtime/format.h"
#include "infra/runtime/handle.h"
#include "infra/runtime/text.h"

#include <windows.h>
#include <aclapi.h>
#include <sddl.h>

namespace smh {

namespace {

// "C:\"; no folder has a shorter parent that could be missing.
constexpr std::size_t kRootUnits = 3;

bool MakeInheriting(const std::wstring& path) {
  return CreateDirectoryW(path.c_str(), nullptr) != FALSE;
}

// SYSTEM and Administrators everything, Users read; protected from inheritance.
constexpr wchar_t kProtectedFolder[] = L"O:BAD:P(A;OICI;FA;;;SY)(A;OICI;FA;;;BA)(A;OICI;FRFX;;;BU)";
// Without the entry for Users.
constexpr wchar_t kPrivateFolder[] = L"O:BAD:P(A;OICI;FA;;;SY)(A;OICI;FA;;;BA)";

struct LocalMemoryTraits {
  using Type = HLOCAL;
  static constexpr Type kNone = nullptr;
  static bool IsValid(Type value) noexcept { return value != nullptr; }
  static void Close(Type value) noexcept { LocalFree(value); }
};
using ScopedLocalMemory = ScopedResource<LocalMemoryTraits>;

struct Descriptor {
  ScopedLocalMemory memory;
  PSID owner = nullptr;
  PACL dacl = nullptr;
};

bool IsTrustedSid(PSID sid) noexcept {
  return IsWellKnownSid(sid, WinLocalSystemSid) || IsWellKnownSid(sid, WinBuiltinAdministratorsSid);
}

// The entry's SID must end inside the entry.
bool HoldsTrustedSid(const ACCESS_ALLOWED_ACE* ace) noexcept {
  auto* const sid = reinterpret_cast<SID*>(const_cast<DWORD*>(&ace->SidStart));
  const std::size_t room = ace->Header.AceSize - offsetof(ACCESS_ALLOWED_ACE, SidStart);
  return room >= GetSidLengthRequired(0) && room >= GetSidLengthRequired(sid->SubAuthorityCount) &&
         IsValidSid(sid) && IsTrustedSid(sid);
}

// Whether the entry gives somebody else one of the rights. Deny entries give nothing; an inherit-only entry
// speaks of children.
bool GivesOthers(const ACE_HEADER* header, ACCESS_MASK rights) noexcept {
  if ((header->AceFlags & INHERIT_ONLY_ACE) != 0) return false;
  switch (header->AceType) {
    case ACCESS_DENIED_ACE_TYPE:
    case ACCESS_DENIED_OBJECT_ACE_TYPE:
    case ACCESS_DENIED_CALLBACK_ACE_TYPE:
      return false;
    case ACCESS_ALLOWED_ACE_TYPE: {
      if (header->AceSize < sizeof(ACCESS_ALLOWED_ACE)) return true;
      const auto* const ace = reinterpret_cast<const ACCESS_ALLOWED_ACE*>(header);
      return (ace->Mask & rights) != 0 && !HoldsTrustedSid(ace);
    }
    default:
      // Of a kind that this decision does not know: not trusted.
      return true;
  }
}

Descriptor ReadDescriptor(const std::wstring& path) {
  Descriptor descriptor;
  CheckStatus(static_cast<LSTATUS>(
      GetNamedSecurityInfoW(const_cast<wchar_t*>(path.c_str()), SE_FILE_OBJECT,
                            OWNER_SECURITY_INFORMATION | DACL_SECURITY_INFORMATION, &descriptor.owner,
                            nullptr, &descriptor.dacl, nullptr, descriptor.memory.Put())));
  return descriptor;
}

ScopedLocalMemory DescriptorOf(const wchar_t* text) {
  ScopedLocalMemory descriptor;
  if (ConvertStringSecurityDescriptorToSecurityDescriptorW(text, SDDL_REVISION_1, descriptor.Put(),
                                                           nullptr) == FALSE) {
    RaiseLastOSError();
  }
  return descriptor;
}

template <const wchar_t* Access>
bool MakeOneFolder(const std::wstring& path) {
  const ScopedLocalMemory descriptor = DescriptorOf(Access);
  SECURITY_ATTRIBUTES attributes = {sizeof(attributes), descriptor.Get(), FALSE};
  return CreateDirectoryW(path.c_str(), &attributes) != FALSE;
}

}  // namespace

void MakeFolders(std::wstring& path) noexcept {
  for (std::size_t at = path.find(L'\\'); at != std::wstring::npos; at = path.find(L'\\', at + 1)) {
    path[at] = L'\0';
    CreateDirectoryW(path.c_str(), nullptr);
    path[at] = L'\\';
  }
}

void MakeFolderPath(const std::wstring& folder) {
  MakeFolderPath(folder, MakeInheriting, MakeInheriting);
}

void MakeFolderPath(const std::wstring& folder, FolderMaker own, FolderMaker above) {
  const std::wstring path = WithoutTrailingBackslash(folder);
  if (IsFolder(path)) return;
  const std::wstring parent(FolderPart(path));
  if (parent.size() > kRootUnits && parent.size() < path.size()) MakeFolderPath(parent, above, above);
  // Somebody else may have made it meanwhile.
  if (!own(path) && GetLastError() != ERROR_ALREADY_EXISTS) RaiseLastOSError();
}

bool IsTrusted(PSID owner, PACL dacl, ACCESS_MASK rights) noexcept {
  if (owner == nullptr || !IsValidSid(owner) || !IsTrustedSid(owner)) return false;
  if (dacl == nullptr || !IsValidAcl(dacl)) return false;
  for (DWORD i = 0; i < dacl->AceCount; ++i) {
    void* ace = nullptr;
    if (GetAce(dacl, i, &ace) == FALSE) return false;
    if (GivesOthers(static_cast<const ACE_HEADER*>(ace), rights)) return false;
  }
  return true;
}

void MakeProtectedFolder(const std::wstring& folder) {
  MakeFolderPath(folder, MakeOneFolder<kProtectedFolder>, MakeOneFolder<kProtectedFolder>);
}

void MakePrivateFolder(const std::wstring& folder) {
  MakeFolderPath(folder, MakeOneFolder<kPrivateFolder>, MakeOneFolder<kProtectedFolder>);
}

bool KeepsAccess(const std::wstring& dataFolder) {
  const std::wstring probe =
      WithTrailingBackslash(dataFolder) + Format(L"probe-%d-%d", GetCurrentProcessId(), GetTickCount());
  if (!MakeOneFolder<kProtectedFolder>(probe)) RaiseLastOSError();
  bool keeps = true;
  try {
    const Descriptor made = ReadDescriptor(probe);
    keeps = IsTrusted(made.owner, made.dacl);
  } catch (const EOSError&) {
    // What cannot be read is not taken for harmless.
  }
  RemoveDirectoryW(probe.c_str());
  return keeps;
}

void RequireTrusted(const std::wstring& path, ACCESS_MASK rights) {
  const std::wstring name = WithoutTrailingBackslash(path);
  const DWORD attributes = AttributesOf(name);
  if (attributes == INVALID_FILE_ATTRIBUTES) RaiseLastOSError();
  const Descriptor descriptor = ReadDescriptor(name);
  if ((attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0 ||
      !IsTrusted(descriptor.owner, descriptor.dacl, rights)) {
    RaiseOSError(ERROR_ACCESS_DENIED);
  }
}

void TakeInheritedAccess(const std::wstring& file) {
  ACL empty;
  if (InitializeAcl(&empty, sizeof(empty), ACL_REVISION) == FALSE) RaiseLastOSError();
  CheckStatus(static_cast<LSTATUS>(SetNamedSecurityInfoW(
      const_cast<wchar_t*>(file.c_str()), SE_FILE_OBJECT,
      DACL_SECURITY_INFORMATION | UNPROTECTED_DACL_SECURITY_INFORMATION, nullptr, nullptr, &empty, nullptr)));
}

}  // namespace smh
