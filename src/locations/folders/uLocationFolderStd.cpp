#include "locations/folders/uLocationFolderStd.h"

#include "infra/files/file_facts.h"
#include "infra/log/uStatisticsLog.h"
#include "infra/runtime/catch_failure.h"
#include "infra/runtime/exceptions.h"
#include "infra/runtime/text.h"
#include "locations/folders/entry_file.h"
#include "locations/folders/folder_files.h"
#include "locations/folders/shortcut_command.h"
#include "model/change_refused.h"
#include "model/reader_state.h"
#include "sysutil/command_line.h"
#include "sysutil/network_roots.h"
#include "sysutil/uFileUtils.h"

#include <algorithm>
#include <utility>

namespace smh {

namespace {

// Of a full path and of a file's name, in code units.
constexpr std::size_t kLongestPath = MAX_PATH - 1;
constexpr std::size_t kLongestName = 255;

void RequireShortPath(const std::wstring& path) {
  if (path.size() > kLongestPath || FileNamePart(path).size() > kLongestName) RaiseTooLong(L"name");
}

bool IsEntryFile(std::wstring_view name) {
  const std::wstring_view extension = ExtensionPart(name);
  if (extension.empty() || IsDeviceName(name)) return false;
  const auto isExtension = [&](const std::wstring& other) { return SameText(extension, other); };
  return SameText(extension, kShortcutExtension) ||
         std::ranges::any_of(FileUtils::ExecutableExtensions(), isExtension);
}

}  // namespace

TLocationFolderStd::TLocationFolderStd(const LocationRow& row)
    : TLocationStartup(row, Abilities{.canModify = FamilyOf(row).canModify}),
      folders_(row.root == LocationRoot::kMachine),
      watch_(folders_.All()) {}

bool TLocationFolderStd::ItemExists(const TStartupItem& item) {
  // Of one that is out of reach nobody can say that it has gone.
  const std::wstring name = item.Name();
  return FileUtils::FileExists(name) || !IsReachable(name);
}

void TLocationFolderStd::ShowItemLocation(const TStartupItem& item) {
  const DWORD code = OpenWithShell(nullptr, L"explorer.exe", Format(L"/select,\"%s\"", item.Name()));
  if (code != ERROR_SUCCESS) RaiseOSError(code);
}

bool TLocationFolderStd::IsChanged() {
  // A signal that comes while a change runs is kept for later.
  if (Gate().IsBusy()) return false;
  if (watch_.IsDue()) {
    watch_.Accept();
    Gate().TakeLoadDue();
    return true;
  }
  return Gate().TakeLoadDue();
}

void TLocationFolderStd::LoadItems(Look look) {
  const std::optional<Load> load = BeginLoad(look);
  if (!load) return;
  bool isCurrent = true;
  for (const std::wstring& folder : folders_.All()) isCurrent = isCurrent && ReadFolder(folder, *load);
  isCurrent =
      isCurrent && RemoveMissingItems(*load, [&](TStartupItem& item) { return LookFor(item, *load); });
  if (!isCurrent) Gate().MarkLoadDue();
}

bool TLocationFolderStd::ReadFolder(const std::wstring& folder, const Load& load) {
  const std::vector<std::wstring> names = CatchFailure(
      [&] {
        if (!IsReachable(folder)) RaiseOSError(ERROR_BAD_NETPATH);
        return FileNamesIn(folder);
      },
      [&] {
        LogCurrentException();
        LogFormat(L"Error load item list for location \"%s\". Folder: \"%s\".", MemberName(), folder);
        // The watch tells when a file in its place makes room for it.
        if (!IsFile(WithoutTrailingBackslash(folder))) MarkIncomplete();
        return std::vector<std::wstring>();
      });
  const bool isEnabled = folders_.IsStartupFolder(folder);
  for (const std::wstring& name : names) {
    CheckTerminated();
    if (IsEntryFile(name) && !TakeFile(folder + name, isEnabled, load)) return false;
  }
  return true;
}

bool TLocationFolderStd::TakeFile(const std::wstring& file, bool isEnabled, const Load& load) {
  FoundEntry entry = ListFile(file, isEnabled);
  entry.isProtected = !CanDeleteFile(entry.name.c_str());
  return AddOrUpdateItem(std::move(entry), load);
}

bool TLocationFolderStd::LookFor(TStartupItem& item, const Load& load) {
  const std::wstring file = item.Name();
  if (IsReachableFile(file)) return TakeFile(file, folders_.IsStartupFolder(FolderPart(file)), load);
  if (!IsReachable(file) || (!Exists(file) && !IsMissing(GetLastError()))) KeepItem(item, load);
  return true;
}

std::unique_ptr<EntrySource> TLocationFolderStd::OpenSource(const ItemState& listed, bool recorded) {
  return FileSource::Open(folders_, std::wstring(listed.name), recorded);
}

const wchar_t* TLocationFolderStd::Unit() const noexcept {
  return L"uLocationFolderStd";
}

std::wstring TLocationFolderStd::NameInPlace(const ItemState& listed) const {
  return std::wstring(FileNamePart(listed.name));
}

std::wstring TLocationFolderStd::FreePath(bool enabled, const std::wstring& name) const {
  std::wstring path = MakeUniqueFileName(folders_.PlaceFor(enabled) + name);
  RequireShortPath(path);
  return path;
}

std::unique_ptr<EntryTarget> TLocationFolderStd::PlanSwitch(EntrySource& source, bool enable, bool recorded) {
  auto& file = static_cast<FileSource&>(source);
  const std::wstring& from = file.File().Path();
  if (enable) folders_.RequireTrustedSource(file.File());
  return std::make_unique<FileTarget>(file, FreePath(enable, std::wstring(FileNamePart(from))), enable,
                                      folders_, recorded);
}

std::unique_ptr<EntryTarget> TLocationFolderStd::PlanAdd(const std::wstring& name,
                                                         const std::wstring& command, bool recorded) {
  if (!IsPlainFileName(name)) RaiseOSError(ERROR_INVALID_NAME);
  std::wstring file = folders_.PlaceFor(true) + WithLinkExtension(name);
  RequireShortPath(file);
  if (Exists(file)) RaiseOSError(ERROR_ALREADY_EXISTS);
  auto made =
      std::make_unique<TemporaryShortcut>(folders_, name, ShortcutFields(CommandForShortcut(command)));
  return std::make_unique<FileTarget>(std::move(made), std::move(file), true, folders_, recorded);
}

std::unique_ptr<EntryTarget> TLocationFolderStd::PlanInsert(EntrySource& source, const ItemState& entry,
                                                            bool recorded) {
  if (auto* const file = dynamic_cast<FileSource*>(&source)) {
    const std::wstring& from = file->File().Path();
    folders_.RequireTrustedSource(file->File());
    std::wstring to = FreePath(entry.isEnabled, std::wstring(FileNamePart(from)));
    return std::make_unique<FileTarget>(*file, std::move(to), entry.isEnabled, folders_, recorded);
  }
  const ShortcutFields fields(CommandForShortcut(source.Command()));
  const ItemDetails& details = entry.details;
  const SharedText& entryName = details.EntryName.empty() ? entry.givenText : details.EntryName;
  const std::wstring name = PlainFileName(WithLinkExtension(entryName));
  std::wstring to = FreePath(entry.isEnabled, name);
  auto made = std::make_unique<TemporaryShortcut>(folders_, name, fields);
  return std::make_unique<FileTarget>(std::move(made), std::move(to), entry.isEnabled, folders_, recorded);
}

std::unique_ptr<EntryTarget> TLocationFolderStd::PlanCommand(EntrySource& source, const std::wstring& command,
                                                             bool recorded) {
  auto& file = static_cast<FileSource&>(source);
  RequireChangeableLink(file.File().Path(), file.Bytes());
  auto made = std::make_unique<TemporaryShortcut>(folders_, file.File().Path(), file.Bytes(),
                                                  CommandForShortcut(command));
  return std::make_unique<ReplacedFile>(file, std::move(made), folders_, recorded);
}

}  // namespace smh
