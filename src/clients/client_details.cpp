#include "clients/client_details.h"

#include "core/contracts/uDllGlobals.h"
#include "infra/runtime/text.h"
#include "model/basic_info.h"
#include "model/extended_info.h"
#include "sysutil/command_line.h"
#include "sysutil/uFileUtils.h"

namespace smh {

namespace {

struct IconPlace {
  std::wstring file;
  std::int32_t index = 0;
};

// "file,index"; without index the first icon.
IconPlace SplitIconLocation(const std::wstring& location) {
  IconPlace icon;
  const std::wstring file = TakeText([&](BoundaryText* out) {
    return DLLGlobals::Helper().SplitIndirectString(location.c_str(), out, &icon.index);
  });
  icon.file = FileUtils::MapWow64Path(file);
  return icon;
}

// An added path may have blanks without quotes: it has no arguments.
SharedText StartedFile(const FavoriteIdentity& client) {
  if (!client.keyPath.empty()) return ResolveCommandToFile(client.command.c_str());
  return ResolveCommandToFile(QuoteText(DequoteText(Trim(client.command))).c_str());
}

// A shortcut's icon goes before the registered one; a path that was added shows its own.
IconPlace FindIcon(const FavoriteIdentity& client, const ItemDetails& details) {
  if (!details.IconPath.empty()) {
    return {FileUtils::MapWow64Path(FileUtils::NormalizePath(details.IconPath)), details.IconIndex};
  }
  if (client.keyPath.empty()) return {std::wstring(details.FilePath), 0};
  return SplitIconLocation(client.iconLocation);
}

int LoadIcon(const IconPlace& icon, IconLists& icons) {
  if (!FileUtils::FileExists(icon.file)) return kFavoriteImageUnknown;
  int image = icons.AppendIcon(icon.file, icon.index);
  if (image < 0 && icon.index != 0) image = icons.AppendIcon(icon.file, 0);
  return image < 0 ? kFavoriteImageUnknown : image;
}

}  // namespace

void LoadClientDetails(const FavoriteIdentity& client, IconLists& icons, ItemDetails& details) {
  details.FilePath = StartedFile(client);
  details.Kind = TargetKindOfFile(details.FilePath);
  if (details.Kind == TargetKind::kShortcut) FollowShortcut(details);
  std::optional<FileStamp> stamp = StampOf(details.FilePath);
  // A folder is no program.
  if (stamp && stamp->isFolder) stamp.reset();
  DescribeStartedFile(stamp, details);
  ReadFileFacts(details);
  details.ImageIndex = LoadIcon(FindIcon(client, details), icons);
}

}  // namespace smh
