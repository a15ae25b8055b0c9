// Tests on the real Startup folders and the folders of disabled entries, which are put back afterwards.
#pragma once

#include "locations/folders/shortcut_writer.h"
#include "model/change_refused.h"
#include "samples/link_builder.h"
#include "tests/support/child_process.h"
#include "tests/support/module_fixture.h"
#include "tests/support/startup_folders.h"

#include <algorithm>
#include <filesystem>

namespace smh::test {

class FolderTest : public ModuleTest {
 protected:
  FolderTest() { SettleBoth(); }

  static TLocationStartup& UserFolder() { return *FindLocation(sulFolderUser); }
  static TLocationStartup& CommonFolder() { return *FindLocation(sulFolderCommon); }

  // A program that starts without consequence, with a version record.
  const std::wstring& Program() const noexcept { return program_; }
  const TemporaryFolder& Folder() const noexcept { return folder_; }
  // What an entry that starts Program() with these arguments shows as its command.
  std::wstring Command(const std::wstring& arguments) const { return program_ + L' ' + arguments; }

  // All make the file's folder and answer the file's path.
  static std::wstring Put(const std::wstring& path, std::string_view bytes) {
    return WriteFileBytes(path, bytes);
  }
  static std::wstring Put(const std::wstring& path, const LinkBuilder& link) {
    return Put(path, link.Build().Text());
  }
  // A shortcut to Program() as the shell saves it.
  std::wstring PutShortcut(const std::wstring& path, const std::wstring& arguments = {}) const {
    ShortcutFields fields;
    fields.target = program_;
    fields.arguments = arguments;
    WriteShortcut(fields, Put(path, ""));
    return path;
  }

  // The item of that file; null when there is none.
  static ItemRef LoadAndFind(TLocationStartup& location, const std::wstring& file) {
    location.ReadItems();
    return FindItem(location.LocationType(), file);
  }
  // The names of the location's items, in the order of the list.
  static std::vector<std::wstring> Names(const TLocationStartup& location) {
    std::vector<std::wstring> names;
    for (const ItemRef& item : Listed(location)) names.push_back(item->Name());
    return names;
  }
  // The names of the files and folders in a folder, sorted; empty for a missing one.
  static std::vector<std::wstring> FilesIn(const std::wstring& folder) {
    namespace fs = std::filesystem;
    std::vector<std::wstring> names;
    if (!fs::is_directory(folder)) return names;
    for (const auto& entry : fs::directory_iterator(folder))
      names.push_back(entry.path().filename().wstring());
    std::ranges::sort(names);
    return names;
  }
  static bool Exists(const std::wstring& file) {
    return GetFileAttributesW(file.c_str()) != INVALID_FILE_ATTRIBUTES;
  }
  // Takes changes until there is none.
  static void Settle(TLocationStartup& location) {
    while (location.IsChanged()) {
    }
  }
  static void SettleBoth() {
    Settle(UserFolder());
    Settle(CommonFolder());
  }

  const StartupPlaces user{StartupPlaces::Whose::kUser, SettleBoth};
  const StartupPlaces common{StartupPlaces::Whose::kCommon, SettleBoth};

 private:
  const TemporaryFolder folder_;
  const std::wstring program_ = folder_.Write(L"auroratray.exe", ReadFileBytes(SampleProgramFile()));
};

// The code of the system error that `change` raises; 0 when nothing is raised. Other exceptions pass.
template <typename Change>
DWORD ErrorOf(Change&& change) {
  try {
    change();
  } catch (const EOSError& error) {
    return error.Code();
  } catch (const EChangeRefused& refused) {
    return refused.Code();
  }
  return 0;
}

}  // namespace smh::test
