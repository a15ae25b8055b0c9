// A key and a folder of a test's own, changed through the backup service; and system calls that fail.
#pragma once

#include "siblings/common/product.h"
#include "tests/siblings/guardkit/journal_fixture.h"
#include "tests/support/file_fixture.h"
#include "tests/support/import_patch.h"
#include "tests/support/state_dump.h"

namespace smh::test {

class JournalChanges : public JournalTest {
 protected:
  // Where an undo may change it.
  static constexpr const wchar_t* kTree = kReachedTree;

  LSTATUS Set(const std::wstring& sub, const std::wstring& name, const RawValue& value) {
    return guardkit_.Set(HKEY_CURRENT_USER, tree_.PathOf(sub), name, value);
  }
  LSTATUS Remove(const std::wstring& name) { return guardkit_.RemoveValue(HKEY_CURRENT_USER, kTree, name); }
  LSTATUS RemoveKey(const std::wstring& sub) {
    return guardkit_.RemoveKey(HKEY_CURRENT_USER, tree_.PathOf(sub));
  }
  LSTATUS Move(const std::wstring& from, const std::wstring& to) {
    return guardkit_.Safeguard().MoveRecordedFile(from.c_str(), to.c_str());
  }
  LSTATUS Delete(const std::wstring& file) { return guardkit_.Safeguard().DeleteRecordedFile(file.c_str()); }
  LSTATUS Copy(const std::wstring& from, const std::wstring& to, BOOL overwrite = TRUE) {
    return guardkit_.Safeguard().CopyRecordedFile(from.c_str(), to.c_str(), overwrite);
  }
  std::string Registry() const { return DumpKey(HKEY_CURRENT_USER, kTree); }
  std::string Files() const { return DumpFolder(folder_.Path()); }
  std::string Everything() const { return Registry() + Files(); }

  const RegistryTree tree_{kTree};
  const TemporaryFolder folder_{DataFolder()};
};

inline BOOL WINAPI DiskIsFull(HANDLE, const void*, DWORD, DWORD* written, OVERLAPPED*) {
  *written = 0;
  SetLastError(ERROR_DISK_FULL);
  return FALSE;
}
inline LSTATUS WINAPI SettingFails(HKEY, const wchar_t*, DWORD, DWORD, const BYTE*, DWORD) {
  return ERROR_ACCESS_DENIED;
}

}  // namespace smh::test
