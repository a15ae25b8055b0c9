#include "locations/folders/folder_set.h"

#include "core/contracts/boundary_string.h"
#include "core/contracts/disabled_places.h"
#include "core/contracts/uDllGlobals.h"
#include "infra/files/file_facts.h"
#include "infra/files/folder_access.h"
#include "infra/runtime/exceptions.h"
#include "infra/runtime/text.h"
#include "locations/folders/held_file.h"

#include <shlobj.h>

namespace smh {

namespace {

// With a trailing backslash; empty when the shell gives none.
std::wstring SpecialFolder(int csidl) {
  const std::wstring folder = TakeText(
      [&](BoundaryText* text) { return DLLGlobals::ShellHelper().GetSpecialFolder(csidl, 0, text); });
  return folder.empty() ? folder : WithTrailingBackslash(folder);
}

// This system's own folder below a data folder.
std::wstring OwnFolder(const std::wstring& dataFolder) {
  if (dataFolder.empty()) return {};
  IGlobals& globals = DLLGlobals::Globals();
  std::wstring folder = dataFolder;
  folder += WithTrailingBackslash(TakeText([&](BoundaryText* text) { return globals.GetVendorName(text); }));
  folder += WithTrailingBackslash(TakeText([&](BoundaryText* text) { return globals.GetProductName(text); }));
  return folder;
}

std::vector<std::wstring> DisabledFolders(const std::wstring& startupFolder, const std::wstring& dataFolder,
                                          const std::wstring& ownFolder) {
  if (dataFolder.empty()) return {};
  std::vector<std::wstring> folders{std::wstring(ownFolder).append(kDisabledByThis)};
  if (!startupFolder.empty()) folders.push_back(std::wstring(startupFolder).append(kDisabledInStartup));
  folders.push_back(std::wstring(dataFolder).append(kDisabledByOthers));
  return folders;
}

void RequireFolder(const std::wstring& folder) {
  if (folder.empty()) RaiseOSError(ERROR_PATH_NOT_FOUND);
}

}  // namespace

FolderSet::FolderSet(bool isCommon)
    : isCommon_(isCommon),
      startupFolder_(SpecialFolder(isCommon ? CSIDL_COMMON_STARTUP : CSIDL_STARTUP)),
      dataFolder_(SpecialFolder(isCommon ? CSIDL_COMMON_APPDATA : CSIDL_APPDATA)),
      ownFolder_(OwnFolder(dataFolder_)),
      disabledFolders_(DisabledFolders(startupFolder_, dataFolder_, ownFolder_)) {}

std::vector<std::wstring> FolderSet::All() const {
  if (startupFolder_.empty()) return {};
  std::vector<std::wstring> folders{startupFolder_};
  folders.insert(folders.end(), disabledFolders_.begin(), disabledFolders_.end());
  return folders;
}

bool FolderSet::IsStartupFolder(std::wstring_view folder) const noexcept {
  return SameText(folder, startupFolder_);
}

std::wstring_view FolderSet::OwnDisabledFolder() const noexcept {
  if (disabledFolders_.empty()) return {};
  const std::wstring_view folder = disabledFolders_.front();
  return folder.substr(0, folder.size() - 1);
}

bool FolderSet::AsksForTrust() const {
  if (!isCommon_) return false;
  RequireFolder(dataFolder_);
  return KeepsAccess(dataFolder_);
}

// In the data folder everyone may make folders: who was first there must not decide what starts.
void FolderSet::MakeOwnFolder(const std::wstring& folder) const {
  if (!isCommon_) {
    MakeFolderPath(folder);
    return;
  }
  MakeProtectedFolder(folder);
  if (!AsksForTrust()) return;
  for (std::size_t end = folder.find(L'\\', dataFolder_.size()); end + 1 < folder.size();
       end = folder.find(L'\\', end + 1)) {
    ProtectFolder(folder.substr(0, end), kReplaceRights);
  }
  ProtectFolder(folder);
  RequireTrustedAbove(folder);
}

const std::wstring& FolderSet::PlaceFor(bool enabled) const {
  if (enabled) {
    RequireFolder(startupFolder_);
    MakeFolderPath(startupFolder_);
    return startupFolder_;
  }
  RequireFolder(dataFolder_);
  MakeOwnFolder(disabledFolders_.front());
  return disabledFolders_.front();
}

std::wstring FolderSet::TemporaryFolder() const {
  RequireFolder(ownFolder_);
  std::wstring folder = TempShortcutsIn(ownFolder_);
  MakeOwnFolder(folder);
  return folder;
}

void FolderSet::RequireTrustedSource(const HeldFile& file) const {
  if (!AsksForTrust()) return;
  const std::wstring folder(FolderPart(file.Path()));
  RequireTrustedAbove(folder);
  RequireTrusted(folder);
  RequireTrusted(file.Handle());
}

void FolderSet::TakeOver(const std::wstring& file) const {
  if (AsksForTrust()) TakeOverFile(file);
}

}  // namespace smh
