#include "folder_fixture.h"

#include "support/child_process.h"

#include <algorithm>
#include <filesystem>
#include <gmock/gmock.h>

namespace smh::test {

namespace fs = std::filesystem;

namespace {

constexpr wchar_t kSampleProgram[] = L"..\\samples\\drive_c\\Program Files\\Northlight Audio\\auroratray.exe";

}  // namespace

FolderTest::FolderTest() : program_(folder_.File(L"auroratray.exe")) {
  WriteFileBytes(program_, ReadFileBytes(ThisFolder() + kSampleProgram));
  SettleBoth();
}

std::wstring FolderTest::Put(const std::wstring& path, std::string_view bytes) {
  fs::create_directories(fs::path(path).parent_path());
  WriteFileBytes(path, bytes);
  return path;
}

std::wstring FolderTest::PutShortcut(const std::wstring& path, const std::wstring& arguments) const {
  fs::create_directories(fs::path(path).parent_path());
  ShortcutFields fields;
  fields.target = program_;
  fields.arguments = arguments;
  WriteShortcut(fields, path);
  return path;
}

ItemRef FolderTest::LoadAndFind(TLocationStartup& location, const std::wstring& file) {
  location.ReadItems();
  return FindItem(location.LocationType(), file);
}

std::vector<std::wstring> FolderTest::Names(TLocationStartup& location) {
  std::vector<std::wstring> names;
  ScopedLock lock(Items().Lock());
  for (const ItemRef& item : Items().Snapshot()) {
    if (item->Location() == location.LocationType()) names.push_back(item->Name());
  }
  return names;
}

std::vector<std::wstring> FolderTest::FilesIn(const std::wstring& folder) {
  std::vector<std::wstring> names;
  if (!fs::is_directory(folder)) return names;
  for (const auto& entry : fs::directory_iterator(folder)) names.push_back(entry.path().filename().wstring());
  std::ranges::sort(names);
  return names;
}

bool FolderTest::Exists(const std::wstring& file) {
  return GetFileAttributesW(file.c_str()) != INVALID_FILE_ATTRIBUTES;
}

void FolderTest::Settle(TLocationStartup& location) {
  while (location.IsChanged()) {
  }
}

void FolderTest::SettleBoth() {
  Settle(UserFolder());
  Settle(CommonFolder());
}

void FolderChangeBase::ExpectRecorded(const std::wstring& title, std::vector<std::wstring> calls) {
  if (GetParam()) {
    calls.insert(calls.begin(), L"BeginCheckpoint \"" + title + L'"');
    calls.push_back(L"EndCheckpoint");
  } else {
    calls.clear();
  }
  EXPECT_THAT(module.Safeguard().Lines(), ::testing::ElementsAreArray(calls));
  module.Safeguard().Clear();
}

}  // namespace smh::test
