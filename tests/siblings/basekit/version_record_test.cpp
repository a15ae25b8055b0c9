#include "siblings/basekit/format/version_record.h"
#include "siblings/basekit/version_cache.h"
#include "tests/support/child_process.h"
#include "tests/support/file_fixture.h"
#include "tests/support/registry_fixture.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <thread>

namespace smh::test {
namespace {

const std::wstring& SamplePath() {
  static const std::wstring path = ThisFolder() + L"version_sample.exe";
  return path;
}

// The sample's record as its resource compiler laid it out.
Bytes SampleRecord() {
  const ScopedModule file(LoadLibraryExW(SamplePath().c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE));
  const HRSRC found = FindResourceW(file.Get(), MAKEINTRESOURCEW(VS_VERSION_INFO), RT_VERSION);
  const auto* const start = static_cast<const std::byte*>(LockResource(LoadResource(file.Get(), found)));
  return Bytes(start, start + SizeofResource(file.Get(), found));
}

// The byte `distance` before or after the start of a block's key.
std::byte& AtKey(Bytes& record, std::wstring_view key, std::ptrdiff_t distance) {
  const Bytes units = UnitBytes(key);
  return std::ranges::search(record, units).begin()[distance];
}

TEST(VersionRecordTest, LanguagesAreAskedInOrder) {
  Bytes bytes = SampleRecord();
  const VersionRecord listed(bytes);
  EXPECT_EQ(listed.FileVersionNumber(), L"3.14.159.26535");
  EXPECT_EQ(listed.String(L"filedescription"), L"Deutsches Beispiel");
  EXPECT_EQ(listed.String(L"CompanyName"), L"Sample Works Ltd.");
  EXPECT_EQ(listed.String(L"Comments"), L"neutral");
  EXPECT_EQ(listed.String(L"Rest"), L"only here");
  EXPECT_EQ(listed.String(L"Missing"), L"");
  AtKey(bytes, L"Translation", 0) = std::byte{'X'};
  EXPECT_EQ(VersionRecord(bytes).String(L"FileDescription"), L"English sample");
}

class VersionFileTest : public testing::Test {
 protected:
  std::wstring Description(const std::wstring& path) {
    return std::wstring(cache_.Get(path)->String(L"FileDescription"));
  }

  const std::wstring sample_ = SamplePath();
  const std::wstring library_ = ThisFolder() + L"basekit.dll";
  const TemporaryFolder folder_;
  VersionCache cache_;
};

TEST_F(VersionFileTest, FileIsReadOnceUntilItChanges) {
  const std::wstring path = folder_.Write(L"a.exe", "MZ, but no program");
  EXPECT_EQ(Description(path), L"");
  ASSERT_TRUE(CopyFileW(sample_.c_str(), path.c_str(), FALSE));
  const auto record = cache_.Get(path);
  EXPECT_EQ(record->String(L"FileDescription"), L"Deutsches Beispiel");
  EXPECT_EQ(cache_.Get(path), record);
  ASSERT_TRUE(CopyFileW(library_.c_str(), path.c_str(), FALSE));
  EXPECT_EQ(Description(path), L"Startup Manager general services");
  ASSERT_TRUE(DeleteFileW(path.c_str()));
  // Names without a folder are not looked for in the system's search folders.
  for (const std::wstring& none : {path, folder_.Write(L"empty.exe", ""), folder_.Path(), std::wstring(),
                                   std::wstring(L"kernel32.dll")}) {
    EXPECT_EQ(Description(none), L"") << none;
  }
}

TEST_F(VersionFileTest, MoreFilesThanTheCacheHoldsAndManyThreads) {
  std::vector<std::wstring> programs;
  for (int i = 0; i < 8; ++i) {
    programs.push_back(folder_.File(std::to_wstring(i) + L".exe"));
    ASSERT_TRUE(CopyFileW((i % 2 == 0 ? sample_ : library_).c_str(), programs.back().c_str(), FALSE));
  }
  std::atomic<int> wrong{0};
  std::vector<std::jthread> threads;
  for (std::size_t thread = 0; thread < 4; ++thread) {
    threads.emplace_back([&, thread] {
      for (std::size_t i = 0; i < 64; ++i) {
        const std::size_t file = (i + thread) % programs.size();
        const bool isSample = Description(programs[file]) == L"Deutsches Beispiel";
        if (isSample != (file % 2 == 0)) ++wrong;
      }
    });
  }
  threads.clear();
  EXPECT_EQ(wrong, 0);
}

}  // namespace
}  // namespace smh::test
