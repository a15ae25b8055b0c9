#include "tests/support/startup_folders.h"

#include "infra/files/file_facts.h"
#include "infra/runtime/text.h"

#include <windows.h>
#include <shlobj.h>

#include <filesystem>
#include <stdexcept>

namespace smh::test {

namespace fs = std::filesystem;

namespace {

std::wstring MadeFolder(int csidl) {
  const std::wstring folder = ShellFolder(csidl | CSIDL_FLAG_CREATE);
  if (folder.empty()) throw std::runtime_error("the shell does not know a folder");
  return folder + L'\\';
}

std::wstring UnusedName(const TemporaryFolder& folder) {
  int number = 0;
  while (fs::exists(folder.File(std::to_wstring(number)))) ++number;
  return folder.File(std::to_wstring(number));
}

void MoveContents(const std::wstring& from, const std::wstring& to) {
  fs::create_directories(to);
  for (const auto& entry : fs::directory_iterator(from)) {
    fs::rename(entry.path(), fs::path(to) / entry.path().filename());
  }
}

}  // namespace

SavedFolder::SavedFolder(const std::wstring& path, LetGo letGo)
    : path_(WithoutTrailingBackslash(path)), letGo_(std::move(letGo)), existed_(fs::is_directory(path_)) {
  if (existed_) MoveContents(path_, contents_.Path());
}

SavedFolder::~SavedFolder() {
  if (existed_) {
    fs::create_directories(path_);
    MoveContents(path_, UnusedName(rubbish_));
    MoveContents(contents_.Path(), path_);
  } else if (fs::is_directory(path_)) {
    Remove();
  }
  if (letGo_) letGo_();
}

void SavedFolder::Remove() const {
  fs::rename(path_, UnusedName(rubbish_));
}

StartupPlaces::StartupPlaces(Whose whose, LetGo letGo)
    : startup(MadeFolder(whose == Whose::kUser ? CSIDL_STARTUP : CSIDL_COMMON_STARTUP)),
      data(MadeFolder(whose == Whose::kUser ? CSIDL_APPDATA : CSIDL_COMMON_APPDATA)),
      disabled(data + L"Quillmark\\Startup Manager\\Disabled Startup\\"),
      temporary(data + L"Quillmark\\Startup Manager\\TempShortcuts\\"),
      autoruns(startup + L"AutorunsDisabled\\"),
      brisko(data + L"Brisko Software\\Brisko Utilities\\StartUp Manager\\Disabled objects\\") {
  saved_.emplace_back(startup, letGo);
  for (const std::wstring& folder : {disabled, temporary, brisko}) {
    const SavedFolder& saved = saved_.emplace_back(folder, letGo);
    if (fs::is_directory(folder)) saved.Remove();
  }
}

}  // namespace smh::test
