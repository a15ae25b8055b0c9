// Tests on the real Startup folders and the folders of disabled entries, which are put back afterwards.
#pragma once

#include "locations/folders/shortcut_writer.h"
#include "model/uLocationStartup.h"
#include "link_builder.h"
#include "support/module_fixture.h"
#include "support/startup_folders.h"

#include <string>
#include <vector>

namespace smh::test {

class FolderTest : public ModuleTest {
 protected:
  FolderTest();

  static TLocationStartup& UserFolder() { return *FindLocation(sulFolderUser); }
  static TLocationStartup& CommonFolder() { return *FindLocation(sulFolderCommon); }

  // A program that starts without consequence, with a version record.
  const std::wstring& Program() const noexcept { return program_; }
  const TemporaryFolder& Folder() const noexcept { return folder_; }
  // What an entry that starts Program() with these arguments shows as its command.
  std::wstring Command(const std::wstring& arguments) const { return program_ + L' ' + arguments; }

  // All make the file's folder and answer the file's path.
  static std::wstring Put(const std::wstring& path, std::string_view bytes);
  static std::wstring Put(const std::wstring& path, const LinkBuilder& link) {
    return Put(path, link.Build().Text());
  }
  // A shortcut to Program() as the shell saves it.
  std::wstring PutShortcut(const std::wstring& path, const std::wstring& arguments = {}) const;

  // The item of that file; null when there is none.
  static ItemRef LoadAndFind(TLocationStartup& location, const std::wstring& file);
  // The names of the location's items, in the order of the list.
  static std::vector<std::wstring> Names(TLocationStartup& location);
  // The names of the files and folders in a folder, sorted; empty for a missing one.
  static std::vector<std::wstring> FilesIn(const std::wstring& folder);
  static bool Exists(const std::wstring& file);
  // Takes changes until there is none.
  static void Settle(TLocationStartup& location);
  static void SettleBoth();

  const StartupPlaces user{StartupPlaces::Whose::kUser, SettleBoth};
  const StartupPlaces common{StartupPlaces::Whose::kCommon, SettleBoth};

 private:
  TemporaryFolder folder_;
  std::wstring program_;
};

// Every test twice: with changes recorded inside a checkpoint, and plain.
class FolderChangeBase : public FolderTest, public ::testing::WithParamInterface<bool> {
 protected:
  FolderChangeBase() { module.Settings().useCheckpoints = GetParam(); }

  // The recorded calls since the last look, which must be these inside a checkpoint of that title; none
  // without checkpoints.
  void ExpectRecorded(const std::wstring& title, std::vector<std::wstring> calls);
};

// The code of the system error that `change` raises; 0 when nothing is raised. Other exceptions pass.
template <typename Change>
DWORD ErrorOf(Change&& change) {
  try {
    change();
  } catch (const EOSError& error) {
    return error.Code();
  }
  return 0;
}

}  // namespace smh::test
