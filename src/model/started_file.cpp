#include "model/started_file.h"

#include "infra/runtime/text.h"
#include "sysutil/uFileUtils.h"

#include <algorithm>

namespace smh {

namespace {

// Without a trailing backslash, except for the root of a drive.
SharedText FolderOf(std::wstring_view path) {
  std::wstring_view folder = FolderPart(path);
  if (folder.ends_with(L':')) return SharedText(folder, L"\\");
  if (folder.ends_with(L'\\') && !folder.ends_with(L":\\")) folder.remove_suffix(1);
  return SharedText(folder);
}

void TakeVersionTexts(const FileStamp& stamp, ItemDetails& details) {
  details.Version = ReadVersionTexts(details.FilePath, stamp);
  const SharedText& description = details.Version->FileDescription;
  if (description.empty()) return;
  details.Description = description;
  if (details.Caption.empty()) details.Caption = description;
}

}  // namespace

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
  std::optional<ShortcutFacts> facts = ReadShortcutFacts(std::wstring(details.LinkPath));
  if (!facts) return facts;
  details.WorkingFolder = facts->workingFolder;
  details.IconPath = facts->iconPath;
  details.IconIndex = facts->iconIndex;
  details.Description = facts->description;
  details.LinkShowCommand = facts->hotKey;
  if (!facts->targetFile.empty()) details.FilePath = facts->targetFile;
  return facts;
}

void DescribeStartedFile(const std::optional<FileStamp>& stamp, ItemDetails& details) {
  details.FileFound = stamp.has_value();
  if (details.WorkingFolder.empty()) details.WorkingFolder = FolderOf(details.FilePath);
  if (stamp) TakeVersionTexts(*stamp, details);
}

}  // namespace smh
