#include "locations/folders/uLocationFolderStd.h"

#include "core/contracts/uDllGlobals.h"
#include "infra/runtime/text.h"
#include "infra/siblings/uInterfacesRoutines.h"
#include "infra/files/folder_access.h"
#include "locations/folders/folder_files.h"
#include "model/reader_state.h"
#include "sysutil/shell_open.h"
#include "sysutil/uFileUtils.h"
#include "sysutil/wow64_paths.h"

#include <shlobj.h>

#include <algorithm>

namespace smh {

namespace {

constexpr wchar_t kShortcutExtension[] = L".lnk";

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
  std::vector<std::wstring> folders{ownFolder + L"Disabled Startup\\"};
  if (!startupFolder.empty()) folders.push_back(startupFolder + L"AutorunsDisabled\\");
  folders.push_back(dataFolder + L"Brisko Software\\Brisko Utilities\\StartUp Manager\\Disabled objects\\");
  return folders;
}

bool IsEntryFile(std::wstring_view name) {
  const std::wstring_view extension = ExtensionPart(name);
  if (extension.empty()) return false;
  const auto isExtension = [&](const std::wstring& other) { return SameText(extension, other); };
  return SameText(extension, kShortcutExtension) ||
         std::ranges::any_of(FileUtils::ExecutableExtensions(), isExtension);
}

}  // namespace

TLocationFolderStd::TLocationFolderStd(const LocationRow& row)
    : TLocationStartup(row, Abilities{.canModify = FamilyOf(row).canModify}),
      startupFolder_(SpecialFolder(IsCommon() ? CSIDL_COMMON_STARTUP : CSIDL_STARTUP)),
      dataFolder_(SpecialFolder(IsCommon() ? CSIDL_COMMON_APPDATA : CSIDL_APPDATA)),
      ownFolder_(OwnFolder(dataFolder_)),
      disabledFolders_(DisabledFolders(startupFolder_, dataFolder_, ownFolder_)),
      watch_(AllFolders()) {}

std::vector<std::wstring> TLocationFolderStd::AllFolders() const {
  if (startupFolder_.empty()) return {};
  std::vector<std::wstring> folders{startupFolder_};
  folders.insert(folders.end(), disabledFolders_.begin(), disabledFolders_.end());
  return folders;
}

bool TLocationFolderStd::ItemExists(const TStartupItem& item) {
  return FileUtils::FileExists(item.Name());
}

void TLocationFolderStd::ShowItemLocation(const TStartupItem& item) {
  const DWORD code = OpenWithShell(nullptr, L"explorer.exe", Format(L"/select,\"%s\"", item.Name()));
  if (code != ERROR_SUCCESS) RaiseOSError(code);
}

bool TLocationFolderStd::IsChanged() {
  // A signal that comes while a change runs is kept for later.
  if (Gate().IsBusy()) return false;
  if (watch_.TakeChange()) {
    Gate().TakeLoadDue();
    return true;
  }
  return Gate().TakeLoadDue();
}

void TLocationFolderStd::ReadItems() {
  CatchFailure([this] { LoadItems(); },
               [this] {
                 LogCurrentException();
                 LogFormat(L"Error load item list for location \"%s\".", MemberName());
               });
}

void TLocationFolderStd::LoadItems() {
  const std::optional<Load> load = BeginLoad();
  if (!load) return;
  bool current = true;
  for (const std::wstring& folder : AllFolders()) current = current && ReadFolder(folder, *load);
  if (!current || !RemoveMissingItems(*load)) Gate().MarkLoadDue();
}

bool TLocationFolderStd::ReadFolder(const std::wstring& folder, const Load& load) {
  for (const std::wstring& name : FileNamesIn(folder)) {
    CheckTerminated();
    if (!IsEntryFile(name)) continue;
    FoundEntry entry;
    entry.name = SharedText(folder, name);
    entry.command = entry.name;
    entry.caption = SharedText(std::wstring_view(name).substr(0, name.size() - ExtensionPart(name).size()));
    entry.isEnabled = SameText(folder, startupFolder_);
    entry.isProtected = !CanDeleteFile(entry.name.c_str());
    if (!AddOrUpdateItem(std::move(entry), load)) return false;
  }
  return true;
}

}  // namespace smh
