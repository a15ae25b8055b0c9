// Tests on the real Startup folders and the folders of disabled entries, which are put back afterwards.
#pragma once

#include "locations/folders/shortcut_writer.h"
#include "model/uLocationStartup.h"
#include "native/link_builder.h"
#include "support/module_fixture.h"

#include <deque>
#include <string>
#include <vector>

namespace smh::test {

// Empties a folder; what was in it comes back at the end, when a folder that was not there goes again.
// Everything is renamed, because a folder that somebody watches keeps its name until its watch ends.
class SavedFolder {
 public:
  explicit SavedFolder(const std::wstring& path);
  ~SavedFolder();
  SavedFolder(const SavedFolder&) = delete;
  SavedFolder& operator=(const SavedFolder&) = delete;

 private:
  const std::wstring path_;
  const bool existed_;
  const TemporaryFolder contents_;
  const TemporaryFolder rubbish_;
};

// The places of one location; folders end in a backslash.
struct Places {
  explicit Places(int startupCsidl, int dataCsidl);

  std::wstring startup;
  std::wstring data;
  std::wstring disabled;
  std::wstring temporary;
  // Where two other tools keep what they have disabled.
  std::wstring autoruns;
  std::wstring brisko;
};

class FolderTest : public ModuleTest {
 protected:
  FolderTest();

  TLocationStartup& UserFolder() { return *FindLocation(sulFolderUser); }
  TLocationStartup& CommonFolder() { return *FindLocation(sulFolderCommon); }

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
  // Removes the user's Startup folder with all that is in it.
  void RemoveStartup() const;
  // Takes changes until there is none.
  static void Settle(TLocationStartup& location);

  const Places user;
  const Places common;

 private:
  std::deque<SavedFolder> saved_;
  TemporaryFolder rubbish_;
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
