#include "folder_fixture.h"

#include "infra/text.h"
#include "support/child_process.h"

#include <shlobj.h>

#include <algorithm>
#include <filesystem>
#include <gmock/gmock.h>

namespace smh::test {

namespace fs = std::filesystem;

namespace {

constexpr wchar_t kSampleProgram[] = L"..\\samples\\drive_c\\Program Files\\Northlight Audio\\auroratray.exe";

std::wstring ShellFolder(int csidl) {
  wchar_t path[MAX_PATH];
  if (FAILED(SHGetFolderPathW(nullptr, csidl | CSIDL_FLAG_CREATE, nullptr, SHGFP_TYPE_CURRENT, path))) {
    throw std::runtime_error("the shell does not know a folder");
  }
  return std::wstring(path) + L'\\';
}

void MoveContents(const fs::path& from, const fs::path& to) {
  for (const auto& entry : fs::directory_iterator(from))
    fs::rename(entry.path(), to / entry.path().filename());
}

}  // namespace

SavedFolder::SavedFolder(const std::wstring& path)
    : path_(WithoutTrailingBackslash(path)), existed_(fs::is_directory(path_)) {
  if (existed_) MoveContents(path_, contents_.Path());
}

SavedFolder::~SavedFolder() {
  if (existed_) {
    fs::create_directories(path_);
    MoveContents(path_, rubbish_.Path());
    MoveContents(contents_.Path(), path_);
  } else if (fs::is_directory(path_)) {
    fs::rename(path_, rubbish_.File(L"folder"));
  }
}

Places::Places(int startupCsidl, int dataCsidl)
    : startup(ShellFolder(startupCsidl)),
      data(ShellFolder(dataCsidl)),
      disabled(data + L"Quillmark\\Startup Manager\\Disabled Startup\\"),
      temporary(data + L"Quillmark\\Startup Manager\\TempShortcuts\\"),
      autoruns(startup + L"AutorunsDisabled\\"),
      brisko(data + L"Brisko Software\\Brisko Utilities\\StartUp Manager\\Disabled objects\\") {}

FolderTest::FolderTest()
    : user(CSIDL_STARTUP, CSIDL_APPDATA),
      common(CSIDL_COMMON_STARTUP, CSIDL_COMMON_APPDATA),
      program_(folder_.File(L"auroratray.exe")) {
  for (const Places& places : {user, common}) {
    saved_.emplace_back(places.startup);
    for (const std::wstring& folder : {places.disabled, places.temporary, places.brisko}) {
      saved_.emplace_back(folder);
      if (fs::is_directory(folder))
        fs::rename(WithoutTrailingBackslash(folder), rubbish_.File(std::to_wstring(saved_.size())));
    }
  }
  WriteFileBytes(program_, ReadFileBytes(ThisFolder() + kSampleProgram));
  Settle(UserFolder());
  Settle(CommonFolder());
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

void FolderTest::RemoveStartup() const {
  fs::rename(WithoutTrailingBackslash(user.startup), rubbish_.File(L"startup"));
}

void FolderTest::Settle(TLocationStartup& location) {
  while (location.IsChanged()) {
  }
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
