#include "infra/files/folder_access.h"

#include "infra/files/file_facts.h"
#include "infra/runtime/exceptions.h"
#include "infra/runtime/format.h"
#include "infra/runtime/handle.h"
#include "infra/runtime/text.h"

#include <windows.h>
#include <aclapi.h>
#include <sddl.h>

#include <algorithm>
#include <iterator>
#include <utility>

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

// NT SERVICE\TrustedInstaller.
constexpr DWORD kInstallerAuthority = 5;
constexpr DWORD kInstaller[] = {80, 956008885, 3418522649, 1831038044, 1853292631, 2271478464};

bool IsInstaller(PSID sid) noexcept {
  const auto* const parts = static_cast<const SID*>(sid);
  return parts->IdentifierAuthority.Value[5] == kInstallerAuthority &&
         std::equal(std::begin(kInstaller), std::end(kInstaller), parts->SubAuthority,
                    parts->SubAuthority + parts->SubAuthorityCount);
}

// The entry's SID must end inside the entry.
bool HoldsTrustedSid(const ACCESS_ALLOWED_ACE* ace) noexcept {
  auto* const sid = reinterpret_cast<SID*>(const_cast<DWORD*>(&ace->SidStart));
  const std::size_t room = ace->Header.AceSize - offsetof(ACCESS_ALLOWED_ACE, SidStart);
  return room >= GetSidLengthRequired(0) && room >= GetSidLengthRequired(sid->SubAuthorityCount) &&
         IsValidSid(sid) && IsTrustedSid(sid);
}

// Not left to IsValidAcl and GetAce: Wine's do not look whether the last entry ends inside the list.
bool HoldsEntry(const ACL& list, std::size_t at, const ACE_HEADER* ace) noexcept {
  return at + sizeof(ACE_HEADER) <= list.AclSize && ace->AceSize >= sizeof(ACE_HEADER) &&
         at + ace->AceSize <= list.AclSize;
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

// The object itself, also when it is a reparse point.
ScopedHandle OpenForAccess(const std::wstring& path, ACCESS_MASK access) {
  ScopedHandle file(CreateFileW(path.c_str(), access, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                nullptr, OPEN_EXISTING,
                                FILE_FLAG_BACKUP_SEMANTICS | FILE_FLAG_OPEN_REPARSE_POINT, nullptr));
  if (!file) RaiseLastOSError();
  return file;
}

constexpr ACCESS_MASK kLook = READ_CONTROL | FILE_READ_ATTRIBUTES;

Descriptor ReadDescriptor(HANDLE file) {
  Descriptor descriptor;
  CheckStatus(static_cast<LSTATUS>(
      GetSecurityInfo(file, SE_FILE_OBJECT, OWNER_SECURITY_INFORMATION | DACL_SECURITY_INFORMATION,
                      &descriptor.owner, nullptr, &descriptor.dacl, nullptr, descriptor.memory.Put())));
  return descriptor;
}

bool IsReparsePoint(HANDLE file) {
  BY_HANDLE_FILE_INFORMATION info;
  if (GetFileInformationByHandle(file, &info) == FALSE) RaiseLastOSError();
  return (info.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
}

bool IsTrustedObject(HANDLE file, ACCESS_MASK rights) {
  const Descriptor descriptor = ReadDescriptor(file);
  return !IsReparsePoint(file) && IsTrusted(descriptor.owner, descriptor.dacl, rights);
}

// "C:\" keeps its backslash: without it the name is another folder's.
std::wstring OpenableFolder(std::wstring_view folder) {
  return folder.size() > kRootUnits ? WithoutTrailingBackslash(folder) : std::wstring(folder);
}

ScopedLocalMemory DescriptorOf(const wchar_t* text) {
  ScopedLocalMemory descriptor;
  if (ConvertStringSecurityDescriptorToSecurityDescriptorW(text, SDDL_REVISION_1, descriptor.Put(),
                                                           nullptr) == FALSE) {
    RaiseLastOSError();
  }
  return descriptor;
}

// Of a descriptor that DescriptorOf has made; the owner and the DACL lie in `memory`.
Descriptor PartsOf(ScopedLocalMemory memory) {
  Descriptor parts;
  BOOL ignored = FALSE;
  if (GetSecurityDescriptorOwner(memory.Get(), &parts.owner, &ignored) == FALSE ||
      GetSecurityDescriptorDacl(memory.Get(), &ignored, &parts.dacl, &ignored) == FALSE) {
    RaiseLastOSError();
  }
  parts.memory = std::move(memory);
  return parts;
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

bool IsTrustedSid(PSID sid) noexcept {
  return IsWellKnownSid(sid, WinLocalSystemSid) || IsWellKnownSid(sid, WinBuiltinAdministratorsSid) ||
         IsInstaller(sid);
}

bool IsTrusted(PSID owner, PACL dacl, ACCESS_MASK rights) noexcept {
  if (owner == nullptr || !IsValidSid(owner) || !IsTrustedSid(owner)) return false;
  if (dacl == nullptr || !IsValidAcl(dacl)) return false;
  const auto* const list = reinterpret_cast<const BYTE*>(dacl);
  std::size_t at = sizeof(ACL);
  for (DWORD i = 0; i < dacl->AceCount; ++i) {
    const auto* const ace = reinterpret_cast<const ACE_HEADER*>(list + at);
    if (!HoldsEntry(*dacl, at, ace) || GivesOthers(ace, rights)) return false;
    at += ace->AceSize;
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
    keeps = IsTrustedObject(OpenForAccess(probe, kLook).Get(), kChangeRights);
  } catch (const EOSError&) {
    // What cannot be read is not taken for harmless.
  }
  RemoveDirectoryW(probe.c_str());
  return keeps;
}

void RequireTrusted(const std::wstring& path, ACCESS_MASK rights) {
  RequireTrusted(OpenForAccess(OpenableFolder(path), kLook).Get(), rights);
}

void RequireTrusted(HANDLE file, ACCESS_MASK rights) {
  if (!IsTrustedObject(file, rights)) RaiseOSError(ERROR_ACCESS_DENIED);
}

void RequireTrustedAbove(const std::wstring& path) {
  std::wstring folder = WithoutTrailingBackslash(path);
  while (folder.size() > kRootUnits) {
    folder = OpenableFolder(FolderPart(folder));
    RequireTrusted(folder, kReplaceRights);
  }
}

void ProtectFolder(const std::wstring& folder, ACCESS_MASK rights) {
  const std::wstring path = OpenableFolder(folder);
  if (IsTrustedObject(OpenForAccess(path, kLook).Get(), rights)) return;
  const ScopedHandle opened = OpenForAccess(path, kLook | WRITE_DAC | WRITE_OWNER);
  if (IsReparsePoint(opened.Get())) RaiseOSError(ERROR_ACCESS_DENIED);
  const Descriptor wanted = PartsOf(DescriptorOf(kProtectedFolder));
  CheckStatus(static_cast<LSTATUS>(SetSecurityInfo(
      opened.Get(), SE_FILE_OBJECT,
      OWNER_SECURITY_INFORMATION | DACL_SECURITY_INFORMATION | PROTECTED_DACL_SECURITY_INFORMATION,
      wanted.owner, nullptr, wanted.dacl, nullptr)));
  RequireTrusted(opened.Get(), rights);
}

void TakeOverFile(const std::wstring& file) {
  const Descriptor wanted = PartsOf(DescriptorOf(kProtectedFolder));
  ACL empty;
  if (InitializeAcl(&empty, sizeof(empty), ACL_REVISION) == FALSE) RaiseLastOSError();
  CheckStatus(static_cast<LSTATUS>(SetNamedSecurityInfoW(
      const_cast<wchar_t*>(file.c_str()), SE_FILE_OBJECT,
      OWNER_SECURITY_INFORMATION | DACL_SECURITY_INFORMATION | UNPROTECTED_DACL_SECURITY_INFORMATION,
      wanted.owner, nullptr, &empty, nullptr)));
  const Descriptor now = ReadDescriptor(OpenForAccess(file, kLook).Get());
  if (now.owner == nullptr || !IsTrustedSid(now.owner)) RaiseOSError(ERROR_ACCESS_DENIED);
}

}  // namespace smh
