// Tests of the loaded library on the real Run keys: emptied before every test, put back at the program's end.
#pragma once

#include "infra/files/file_facts.h"
#include "tests/core/boundary_client.h"
#include "tests/support/child_process.h"
#include "tests/support/file_fixture.h"
#include "tests/support/registry_fixture.h"
#include "tests/support/waiting.h"

#include <shlobj.h>

#include <memory>
#include <stdexcept>

namespace smh::test {

inline const std::wstring kRunOnceKey = kRunKey + L"Once";

struct WatchedRunKey {
  HKEY root;
  std::wstring path;
  REGSAM view;
};

inline std::vector<WatchedRunKey> RunKeys() {
  std::vector<WatchedRunKey> keys;
  for (const HKEY root : {HKEY_CURRENT_USER, HKEY_LOCAL_MACHINE}) {
    for (const wchar_t* suffix : {L"", L"Once", L"Services", L"ServicesOnce", L"-", L"Once-"}) {
      keys.push_back({root, kRunKey + suffix, 0});
      if (HasTwoViews()) keys.push_back({root, kRunKey + suffix, KEY_WOW64_64KEY});
    }
  }
  return keys;
}

class SavedRunKeys : public testing::Environment {
 public:
  void SetUp() override {
    for (const WatchedRunKey& key : RunKeys()) {
      saved_.push_back(std::make_unique<SavedKey>(key.root, key.path, key.view));
    }
  }
  void TearDown() override { saved_.clear(); }

 private:
  std::vector<std::unique_ptr<SavedKey>> saved_;
};

inline testing::Environment* const g_savedRunKeys = testing::AddGlobalTestEnvironment(new SavedRunKeys);

// What full value paths begin with in the own view.
inline std::wstring OwnViewPrefix() {
  return HasTwoViews() ? L"(x64)" : L"(x32)";
}

inline bool WaitUntilComplete(const RawCollection& items) {
  return WaitUntil([&] { return items.GetReadState() == 2; });
}

// "StartupManager.log"
inline std::wstring LogFile() {
  return ShellFolder(CSIDL_APPDATA) + L"\\Quillmark\\Startup Manager\\Logs\\StartupManager.log";
}

// The sample program, copied to a folder without blanks on C:, so that no redirection and no quoting rule
// has a part in it.
class SampleProgram {
 public:
  const std::wstring& Path() const noexcept { return path_; }
  std::wstring Quoted() const { return L'"' + path_ + L'"'; }
  const TemporaryFolder& Folder() const noexcept { return folder_; }

 private:
  const TemporaryFolder folder_;
  const std::wstring path_ =
      folder_.Write(L"boundary_sample.exe", ReadFileBytes(ThisFolder() + L"boundary_sample.exe"));
};

// The keys themselves stay, so that a test meets one change for what it does.
inline void EmptyRunKeys() {
  for (const auto& [root, path, view] : RunKeys()) {
    MakeKey(root, path, view);
    for (const std::wstring& name : Values(root, path, view)) RemoveValue(root, path, name, view);
    for (const std::wstring& name : SubKeys(root, path, view)) DeleteKeyTree(root, path + L'\\' + name, view);
  }
}

// Empty Run keys; the library is not loaded.
class RunKeysTest : public testing::Test {
 protected:
  RunKeysTest() { EmptyRunKeys(); }

  static void SetUserRun(const std::wstring& name, const std::wstring& command) {
    SetValue(HKEY_CURRENT_USER, kRunKey, name, Sz(command));
  }
  static void ExpectEnd(const ChildResult& result, DWORD exitCode) {
    EXPECT_FALSE(result.timedOut) << result.output;
    EXPECT_EQ(result.exitCode, exitCode) << result.output;
  }
};

// The library loaded once for the whole program, its reader stopped between tests.
class BoundaryTest : public RunKeysTest {
 protected:
  BoundaryTest() { TakeErrorInfo(); }
  ~BoundaryTest() override { items.Stop(); }

  static const LoadedLibrary& Library() {
    // Never freed: this process ends with the library loaded, as most hosts do.
    static const LoadedLibrary& library = *new LoadedLibrary;
    return library;
  }

  // Refreshes and waits for read state 2.
  void Read() {
    ASSERT_EQ(items.Refresh(), S_OK);
    ASSERT_TRUE(WaitUntilComplete(items));
  }
  // The one entry with that caption; without object when there is none.
  RawItem Find(std::int32_t location, const std::wstring& caption) const {
    RawItem found;
    items.Lock();
    for (std::int32_t i = 0; i < items.GetCount() && !found; ++i) {
      RawItem item = items.Item(i);
      if (item.GetLocation() == static_cast<std::uint32_t>(location) && item.PropertyText(3) == caption) {
        found = std::move(item);
      }
    }
    items.Unlock();
    return found;
  }
  RawItem FindUserRun(const std::wstring& caption) const { return Find(kUserRun, caption); }
  // A wrapper for an index outside the list.
  RawItem NoItem() const { return items.Item(-1); }

  const RawManager manager = Library().Manager();
  const RawCollection items = manager.Items();
};

}  // namespace smh::test
