#include "core/boundary_fixture.h"

#include <shlobj.h>

#include <memory>
#include <stdexcept>

namespace smh::test {

namespace {

struct RunKey {
  HKEY root;
  std::wstring path;
  REGSAM view;
};

std::vector<RunKey> RunKeys() {
  std::vector<RunKey> keys;
  for (const HKEY root : {HKEY_CURRENT_USER, HKEY_LOCAL_MACHINE}) {
    for (const wchar_t* suffix : {L"", L"Once", L"Services", L"ServicesOnce", L"-", L"Once-"}) {
      keys.push_back({root, kRunKey + suffix, 0});
      if (HasTwoViews()) keys.push_back({root, kRunKey + suffix, KEY_WOW64_64KEY});
    }
  }
  return keys;
}

// The keys themselves stay: the library watches them, and a deleted key is no longer watched.
void EmptyKey(const RunKey& key) {
  MakeKey(key.root, key.path, key.view);
  for (const std::wstring& name : Values(key.root, key.path, key.view)) {
    RemoveValue(key.root, key.path, name, key.view);
  }
  for (const std::wstring& name : SubKeys(key.root, key.path, key.view)) {
    DeleteKeyTree(key.root, key.path + L'\\' + name, key.view);
  }
}

class SavedRunKeys : public testing::Environment {
 public:
  void SetUp() override {
    for (const RunKey& key : RunKeys()) {
      saved_.push_back(std::make_unique<SavedKey>(key.root, key.path, key.view));
    }
  }
  void TearDown() override { saved_.clear(); }

 private:
  std::vector<std::unique_ptr<SavedKey>> saved_;
};

testing::Environment* const g_savedRunKeys = testing::AddGlobalTestEnvironment(new SavedRunKeys);

}  // namespace

std::wstring OwnViewPrefix() {
  return HasTwoViews() ? L"(x64)" : L"(x32)";
}

bool WaitUntilComplete(const RawCollection& items) {
  return WaitUntil([&] { return items.GetReadState() == 2; });
}

std::wstring LogFile() {
  wchar_t folder[MAX_PATH];
  if (FAILED(SHGetFolderPathW(nullptr, CSIDL_APPDATA, nullptr, SHGFP_TYPE_CURRENT, folder))) {
    throw std::runtime_error("no data folder");
  }
  return std::wstring(folder) + L"\\Quillmark\\Startup Manager\\Logs\\StartupManager.log";
}

SampleProgram::SampleProgram() : path_(folder_.File(L"boundary_sample.exe")) {
  if (!CopyFileW((ThisFolder() + L"boundary_sample.exe").c_str(), path_.c_str(), TRUE)) {
    throw std::runtime_error("the sample program cannot be copied");
  }
}

RunKeysTest::RunKeysTest() {
  for (const RunKey& key : RunKeys()) EmptyKey(key);
}

void RunKeysTest::ExpectEnd(const ChildResult& result, DWORD exitCode) {
  EXPECT_FALSE(result.timedOut) << result.output;
  EXPECT_EQ(result.exitCode, exitCode) << result.output;
}

BoundaryTest::BoundaryTest() {
  TakeErrorInfo();
}

BoundaryTest::~BoundaryTest() {
  items.Stop();
}

const LoadedLibrary& BoundaryTest::Library() {
  // Never freed: this process ends with the library loaded, as most hosts do.
  static const LoadedLibrary& library = *new LoadedLibrary;
  return library;
}

void BoundaryTest::Read() {
  ASSERT_EQ(items.Refresh(), S_OK);
  ASSERT_TRUE(WaitUntilComplete(items));
}

RawItem BoundaryTest::Find(std::int32_t location, const std::wstring& caption) const {
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

}  // namespace smh::test
