#include "model/basic_info.h"

#include "core/uDllGlobals.h"
#include "infra/format.h"
#include "infra/text.h"
#include "model/rundll_rule.h"
#include "model/shortcut_facts.h"
#include "sysutil/command_file.h"

namespace smh {

namespace {

std::wstring ShortName(const std::wstring& file) {
  return TakeText(
      [&](BoundaryText* name) { return DLLGlobals::Helper().GetFileNameWithoutExt(file.c_str(), name); });
}

std::wstring ExistingFile(std::wstring_view element) {
  std::wstring path = FileUtils::NormalizePath(element);
  if (std::wstring found; FileUtils::FindFileByName(path, found)) path = std::move(found);
  return FileUtils::FileExistsWow64(path) ? path : std::wstring();
}

// Without a trailing backslash, except for the root of a drive.
std::wstring FolderOf(const std::wstring& path) {
  std::wstring folder = WithoutTrailingBackslash(FolderPart(path));
  if (folder.ends_with(L':')) folder += L'\\';
  return folder;
}

bool Exists(const std::wstring& path) {
  return FileUtils::FileExists(path) || FileUtils::DirectoryExists(path);
}

// The details' file is the shortcut itself; it becomes the shortcut's target.
void FillFromShortcut(bool inFolder, ItemDetails& details) {
  details.LinkPath = details.FilePath;
  const std::optional<ShortcutFacts> facts = ReadShortcutFacts(details.LinkPath);
  if (!facts) {
    // Listed all the same: Windows may start it.
    if (inFolder) details.Caption = FileNamePart(details.LinkPath);
    return;
  }
  details.WorkingFolder = facts->workingFolder;
  details.IconPath = facts->iconPath;
  details.IconIndex = facts->iconIndex;
  details.Description = facts->description;
  details.LinkShowCommand = facts->hotKey;
  if (facts->targetFile.empty()) return;
  details.FilePath = facts->targetFile;
  if (inFolder) details.Command = facts->command;
}

void FindFile(TTypeStartupLocation location, ItemDetails& details) {
  details.FileFound = Exists(details.FilePath);
  if (details.FileFound || IsFolderLocation(location) || details.Command.empty()) return;
  std::wstring again = ResolveCommandToFile(details.Command);
  if (!Exists(again)) return;
  details.FilePath = std::move(again);
  details.FileFound = true;
}

void TakeVersionTexts(ItemDetails& details) {
  if (!details.FileFound) return;
  details.Version = ReadVersionTexts(details.FilePath);
  const std::wstring& description = details.Version.FileDescription;
  if (description.empty()) return;
  details.Description = description;
  if (details.Caption.empty()) details.Caption = description;
}

void CompleteCaption(ItemDetails& details) {
  if (details.Caption.empty()) details.Caption = details.EntryName;
  const std::wstring& description = details.Version.FileDescription;
  if (!description.empty() && SameText(details.Caption, FileNamePart(details.FilePath))) {
    details.Caption = Format(L"%s (%s)", details.Caption, description);
  }
}

}  // namespace

bool IsFolderLocation(TTypeStartupLocation location) noexcept {
  return location == sulFolderUser || location == sulFolderCommon;
}

TargetKind TargetKindOfFile(std::wstring_view file) {
  const std::wstring_view extension = ExtensionPart(file);
  if (extension.empty()) return TargetKind::kOther;
  if (SameText(extension, L".lnk")) return TargetKind::kShortcut;
  const std::wstring list = TakeText(
      [](BoundaryText* extensions) { return DLLGlobals::Helper().GetExecutableExtensions(extensions); });
  for (std::wstring_view rest = list; !rest.empty();) {
    const std::size_t end = rest.find(L';');
    if (SameText(rest.substr(0, end), extension)) return TargetKind::kExecutable;
    rest.remove_prefix(end == std::wstring_view::npos ? rest.size() : end + 1);
  }
  return TargetKind::kOther;
}

ItemDetails InitialDetails(TTypeStartupLocation location, const std::wstring& name, std::wstring_view caption,
                           std::wstring_view command, CommandParts& target) {
  ItemDetails details;
  details.Caption = caption;
  details.Command = command;
  target = IsFolderLocation(location) ? CommandParts{name, {}} : ResolveCommand(command);
  details.Kind = TargetKindOfFile(target.path);
  return details;
}

void FillBasicDetails(TTypeStartupLocation location, CommandParts target, ItemDetails& details) {
  details.EntryName = ShortName(target.path);
  details.FilePath = std::move(target.path);
  if (details.Kind == TargetKind::kShortcut) {
    FillFromShortcut(IsFolderLocation(location), details);
  } else if (IsRundll(details.EntryName)) {
    if (std::wstring file = RundllTarget(details.Command, ExistingFile); !file.empty()) {
      details.FilePath = std::move(file);
    }
  }
  FindFile(location, details);
  if (details.WorkingFolder.empty()) details.WorkingFolder = FolderOf(details.FilePath);
  TakeVersionTexts(details);
  CompleteCaption(details);
}

}  // namespace smh
