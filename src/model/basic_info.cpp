#include "model/basic_info.h"

#include "core/contracts/uDllGlobals.h"
#include "infra/log/uStatisticsLog.h"
#include "infra/runtime/format.h"
#include "infra/runtime/text.h"
#include "model/started_through.h"
#include "shelllink/link_file.h"
#include "shelllink/uShellLinkInfo.h"
#include "sysutil/command_line.h"
#include "sysutil/network_roots.h"
#include "sysutil/program_file.h"
#include "sysutil/uFileUtils.h"

#include <algorithm>
#include <tuple>
#include <utility>

namespace smh {

namespace {

void TakeFileTexts(const FileStamp& stamp, ItemDetails& details) {
  FileTexts texts = ReadFileTexts(details.FilePath, stamp);
  details.FilePath = std::move(texts.path);
  details.Version = std::move(texts.version);
  if (details.WorkingFolder.empty()) details.WorkingFolder = std::move(texts.folder);
  const SharedText& description = details.Version->FileDescription;
  if (description.empty()) return;
  details.Description = description;
  if (details.Caption.empty()) details.Caption = description;
}

// A library without folder is the system's own. None is loaded from where nobody answers, nor from the folder
// that the host stands in.
SharedText DescriptionText(const SharedText& stored) {
  const std::wstring_view text = stored;
  if (!text.starts_with(L'@')) return stored;
  const std::wstring reference(text.substr(1));
  std::int32_t number = 0;
  std::wstring file = TakeText([&](BoundaryText* out) {
    return DLLGlobals::Helper().SplitIndirectString(reference.c_str(), out, &number);
  });
  if (FileNamePart(file) == file) file.insert(0, FileUtils::GetSystemDir());
  if (!IsFullPath(file) || !IsReachable(file)) return {};
  return SharedText(DLLGlobals::LoadStringResource(file, number));
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

// A file or a folder; the command is resolved once more when there is none. A name that was not found is none
// of the folder that this process stands in.
std::optional<FileStamp> FindFile(TTypeStartupLocation location, ItemDetails& details) {
  std::optional<FileStamp> stamp;
  if (IsFullPath(details.FilePath)) stamp = ReachableStamp(details.FilePath);
  if (stamp || IsFolderLocation(location) || details.Command.empty()) return stamp;
  SharedText again = ResolveCommandToFile(details.Command.c_str());
  if (IsFullPath(again)) stamp = ReachableStamp(again);
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

// What is started through another program, and cannot be told, may have come.
bool IsServedAsSeen(const ItemDetails& details) {
  if (details.StartedThrough.empty()) return true;
  if (details.ServedFile.empty()) return false;
  return details.ServedFile == details.FilePath || ReachableStamp(details.ServedFile) == details.SeenServed;
}

SharedText ShortName(const SharedText& file) {
  return TakeSharedText(
      [&](BoundaryText* name) { return DLLGlobals::Helper().GetFileNameWithoutExt(file.c_str(), name); });
}

}  // namespace

ShortcutFacts ShortcutFactsOf(const TShellLinkInfo& link) {
  ShortcutFacts facts;
  const std::wstring target = link.Target();
  const std::wstring arguments = link.Arguments();
  if (!target.empty()) {
    const std::wstring command = FileUtils::MakeCommandLine(target, arguments);
    facts.targetFile = ResolveCommandToFile(command.c_str());
    facts.command = SharedText(
        facts.targetFile == target ? command : FileUtils::MakeCommandLine(facts.targetFile, arguments));
  }
  facts.description = SharedText(link.StoredDescription());
  facts.workingFolder = SharedText(link.WorkingDirectory());
  facts.iconPath = SharedText(link.IconLocation());
  facts.iconIndex = link.IconIndex();
  facts.hotKey = link.HotKey();
  facts.stamp = link.Stamp();
  return facts;
}

ShortcutReading ReadShortcut(const std::wstring& file) {
  if (!IsReachable(file)) return {.facts = std::nullopt, .isHeld = true};
  try {
    return {.facts = ShortcutFactsOf(TShellLinkInfo(file))};
  } catch (const EAbort&) {
    throw;
  } catch (const EFOpenError& exception) {
    LogError(exception);
    const DWORD code = exception.Code();
    return {.facts = std::nullopt, .isHeld = code != ERROR_FILE_NOT_FOUND && code != ERROR_PATH_NOT_FOUND};
  } catch (const Exception& exception) {
    LogError(exception);
    return {};
  }
}

TargetKind TargetKindOfFile(std::wstring_view file) {
  const std::wstring_view extension = ExtensionPart(file);
  if (extension.empty()) return TargetKind::kOther;
  if (SameText(extension, L".lnk")) return TargetKind::kShortcut;
  const auto isSame = [extension](const std::wstring& other) { return SameText(other, extension); };
  return std::ranges::any_of(FileUtils::StartableExtensions(), isSame) ? TargetKind::kExecutable
                                                                       : TargetKind::kOther;
}

std::optional<ShortcutFacts> FollowShortcut(ItemDetails& details) {
  details.LinkPath = details.FilePath;
  auto [facts, isHeld] = ReadShortcut(std::wstring(details.LinkPath));
  details.IsLinkRead = facts.has_value();
  details.IsLinkHeld = isHeld;
  details.SeenLink = facts ? facts->stamp : ReachableStamp(details.LinkPath).value_or(FileStamp{});
  if (!facts) return facts;
  details.WorkingFolder = facts->workingFolder;
  details.IconPath = facts->iconPath;
  details.IconIndex = facts->iconIndex;
  details.Description = DescriptionText(facts->description);
  details.LinkShowCommand = facts->hotKey;
  if (!facts->targetFile.empty()) {
    details.FilePath = facts->targetFile;
    TakeStartedThrough(facts->targetFile, facts->command, details);
  }
  return facts;
}

bool StandsAsSeen(const ItemDetails& details) {
  if (!details.FileFound || !details.IsLinkRead || ReachableStamp(details.FilePath) != details.SeenFile)
    return false;
  if (!IsServedAsSeen(details)) return false;
  return details.LinkPath.empty() || ReachableStamp(details.LinkPath) == details.SeenLink;
}

bool IsSeenAlike(const ItemDetails& a, const ItemDetails& b) {
  const auto seen = [](const ItemDetails& details) {
    return std::tie(details.FilePath, details.Reachability, details.SeenFile, details.ServedFile,
                    details.SeenServed, details.LinkPath, details.SeenLink, details.IsLinkRead);
  };
  return seen(a) == seen(b);
}

void DescribeStartedFile(const std::optional<FileStamp>& stamp, ItemDetails& details) {
  details.FileFound = stamp.has_value();
  details.SeenFile = stamp.value_or(FileStamp{});
  details.Reachability = stamp ? kFileFound : IsReachable(details.FilePath) ? kFileMissing : kFileUnreachable;
  if (stamp) TakeFileTexts(*stamp, details);
  if (details.WorkingFolder.empty()) details.WorkingFolder = FolderTextOf(details.FilePath);
}

bool IsFolderLocation(TTypeStartupLocation location) noexcept {
  return LocationRowOf(location).family == LocationFamily::kStartupFolder;
}

void FillBasicDetails(TTypeStartupLocation location, const SharedText& name, ItemDetails& details) {
  details.FilePath = IsFolderLocation(location) ? name : ResolveCommandToFile(details.Command.c_str());
  details.Kind = TargetKindOfFile(details.FilePath);
  details.EntryName = ShortName(details.FilePath);
  if (details.Kind == TargetKind::kShortcut) {
    FillFromShortcut(IsFolderLocation(location), details);
  } else {
    TakeStartedThrough(details.FilePath, details.Command, details);
    SharedText library = RundllFileOf(details.FilePath, details.Command);
    if (!library.empty()) details.FilePath = std::move(library);
  }
  DescribeStartedFile(FindFile(location, details), details);
  CompleteCaption(details);
}

}  // namespace smh
