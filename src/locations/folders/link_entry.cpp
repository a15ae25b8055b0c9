#include "locations/folders/link_entry.h"

#include "infra/runtime/exceptions.h"
#include "infra/runtime/text.h"

namespace smh {

ItemRef MakeFileItem(TTypeStartupLocation location, const std::wstring& file, bool enabled) {
  FoundEntry entry;
  entry.name = SharedText(file);
  entry.command = SharedText(file);
  const std::wstring_view name = FileNamePart(file);
  entry.caption = SharedText(name.substr(0, name.size() - ExtensionPart(name).size()));
  entry.isEnabled = enabled;
  auto item = std::make_shared<TStartupItem>(location, std::move(entry));
  item->FillBasicInfo();
  return item;
}

std::unique_ptr<TShellLinkInfo> RequireChangeableLink(const std::wstring& file) {
  if (!SameText(ExtensionPart(file), L".lnk")) RaiseOSError(ERROR_NOT_SUPPORTED);
  auto link = std::make_unique<TShellLinkInfo>(file);
  const bool installed = link->FindExtraData(TExtraDataKind::edkDarwin) != nullptr;
  if (installed || link->Target().empty()) RaiseOSError(ERROR_NOT_SUPPORTED);
  return link;
}

void KeepFieldsOfLink(const std::unique_ptr<TShellLinkInfo>& link, ShortcutFields& fields) {
  fields.description = link->StoredDescription();
  fields.workingFolder = link->WorkingDirectory();
  fields.iconLocation = link->IconLocation();
  fields.iconIndex = link->IconIndex();
  fields.showCommand = static_cast<int>(link->ShowCommand());
  fields.hotKey = link->HotKey();
}

}  // namespace smh
