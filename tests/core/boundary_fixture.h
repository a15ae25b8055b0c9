// Tests of the loaded library on the real Run keys: emptied before every test, put back at the program's end.
#pragma once

#include "core/boundary_client.h"
#include "support/child_process.h"
#include "support/file_fixture.h"
#include "support/registry_fixture.h"
#include "support/waiting.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace smh::test {

inline const std::wstring kRunOnceKey = kRunKey + L"Once";

// What full value paths begin with in that view.
std::wstring OwnViewPrefix();

bool WaitUntilComplete(const RawCollection& items);

// "StartupManager.log"
std::wstring LogFile();

// The sample program, copied to a folder without blanks on C:, so that no redirection and no quoting rule
// has a part in it.
class SampleProgram {
 public:
  SampleProgram();

  const std::wstring& Path() const noexcept { return path_; }
  std::wstring Quoted() const { return L'"' + path_ + L'"'; }
  const TemporaryFolder& Folder() const noexcept { return folder_; }

 private:
  TemporaryFolder folder_;
  std::wstring path_;
};

// Empty Run keys; the library is not loaded.
class RunKeysTest : public testing::Test {
 protected:
  RunKeysTest();

  static void SetUserRun(const std::wstring& name, const std::wstring& command) {
    SetValue(HKEY_CURRENT_USER, kRunKey, name, Sz(command));
  }
  static void ExpectEnd(const ChildResult& result, DWORD exitCode);
};

// The library loaded once for the whole program, its reader stopped between tests.
class BoundaryTest : public RunKeysTest {
 protected:
  BoundaryTest();
  ~BoundaryTest() override;

  static const LoadedLibrary& Library();

  // Refreshes and waits for read state 2.
  void Read();
  // The one entry with that caption; without object when there is none.
  RawItem Find(std::int32_t location, const std::wstring& caption) const;
  RawItem FindUserRun(const std::wstring& caption) const { return Find(kUserRun, caption); }
  // A wrapper for an index outside the list.
  RawItem NoItem() const { return items.Item(-1); }

  const RawManager manager = Library().Manager();
  const RawCollection items = manager.Items();
};

}  // namespace smh::test
