#include "model/basic_info.h"

#include "core/contracts/uDllGlobals.h"
#include "infra/runtime/format.h"
#include "infra/runtime/text.h"
#include "model/rundll_rule.h"
#include "model/started_file.h"
#include "sysutil/command_line.h"
#include "sysutil/file_search.h"
#include "sysutil/uFileUtils.h"
#include "sysutil/wow64_paths.h"

namespace smh {

namespace {

SharedText ShortName(const SharedText& file) {
  return TakeSharedText(
      [&](BoundaryText* name) { return DLLGlobals::Helper().GetFileNameWithoutExt(file.c_str(), name); });
}

std::wstring ExistingFile(std::wstring_view element) {
  SharedText path = FileUtils::NormalizePath(SharedText(element));
  if (std::wstring found; FileUtils::FindFileByName(path, found)) path = SharedText(found);
  return FileUtils::FileExistsWow64(path) ? std::wstring(path) : std::wstring();
}

void FillFromShortcut(bool inFolder, ItemDetails& details) {
  const std::optional<ShortcutFacts> facts = FollowShortcut(details);
  if (!inFolder) return;
  if (!facts) {
    // Listed all the same: Windows may start it.
    details.Caption = SharedText(FileNamePart(details.LinkPath));
  } else if (!facts->targetFile.empty()) {
    details.Command = facts->command;
  }
}

// A file or a folder; the command is resolved once more when there is none.
std::optional<FileStamp> FindFile(TTypeStartupLocation location, ItemDetails& details) {
  std::optional<FileStamp> stamp = StampOf(details.FilePath);
  if (stamp || IsFolderLocation(location) || details.Command.empty()) return stamp;
  SharedText again = ResolveCommandToFile(details.Command.c_str());
  stamp = StampOf(again);
  if (stamp) details.FilePath = std::move(again);
  return stamp;
}

void CompleteCaption(ItemDetails& details) {
  if (details.Caption.empty()) details.Caption = details.EntryName;
  const SharedText& description = details.Version->FileDescription;
  if (!description.empty() && SameText(details.Caption, FileNamePart(details.FilePath))) {
    details.Caption = SharedText(Format(L"%s (%s)", details.Caption, description));
  }
}

}  // namespace

bool IsFolderLocation(TTypeStartupLocation location) noexcept {
  return LocationRowOf(location).family == LocationFamily::kStartupFolder;
}

void FillBasicDetails(TTypeStartupLocation location, const SharedText& name, ItemDetails& details) {
  details.FilePath = IsFolderLocation(location) ? name : ResolveCommandToFile(details.Command.c_str());
  details.Kind = TargetKindOfFile(details.FilePath);
  details.EntryName = ShortName(details.FilePath);
  if (details.Kind == TargetKind::kShortcut) {
    FillFromShortcut(IsFolderLocation(location), details);
  } else if (IsRundll(details.EntryName)) {
    if (const std::wstring file = RundllTarget(details.Command, ExistingFile); !file.empty()) {
      details.FilePath = SharedText(file);
    }
  }
  DescribeStartedFile(FindFile(location, details), details);
  CompleteCaption(details);
}

}  // namespace smh
