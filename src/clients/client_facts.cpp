#include "clients/client_facts.h"

#include "core/contracts/StartupManagerHelper.h"
#include "core/contracts/uDllGlobals.h"
#include "infra/registry/uRegistryUtils.h"
#include "infra/runtime/format.h"
#include "infra/runtime/text.h"
#include "model/basic_info.h"
#include "model/extended_info.h"
#include "model/started_through.h"
#include "sysutil/command_line.h"
#include "sysutil/network_roots.h"
#include "sysutil/uFileUtils.h"

#include <iterator>

namespace smh {

namespace {

constexpr const wchar_t* kKindKeys[] = {
    L"",
    L"Software\\Clients\\Mail",
    L"Software\\Clients\\Media",
    L"Software\\Clients\\StartMenuInternet",
    L"Software\\Clients\\Contacts",
    L"Software\\Clients\\Calendar",
    L"Software\\Clients\\Internet Call",
    L"Software\\Clients\\IM",
};
static_assert(std::size(kKindKeys) == kFavoriteMessaging + 1);

// Where a client's display name may stand, the first that yields a text wins; keys hold the client's for
// "%s".
struct NameSource {
  const wchar_t* key;
  const wchar_t* value;
};
constexpr NameSource kNameSources[] = {
    {L"%s", L"LocalizedString"},
    {L"%s\\Capabilities", L"ApplicationName"},
    {L"%s", L""},
};
constexpr wchar_t kCommandKey[] = L"%s\\shell\\open\\command";
constexpr wchar_t kIconKey[] = L"%s\\DefaultIcon";

struct ResourcePlace {
  std::wstring file;
  std::int32_t index = 0;
};

// "file,index"; without index the first one. Clients of the 64-bit view mean the native folders.
ResourcePlace SplitResourceLocation(const std::wstring& location) {
  ResourcePlace place;
  const std::wstring file = TakeText([&](BoundaryText* out) {
    return DLLGlobals::Helper().SplitIndirectString(location.c_str(), out, &place.index);
  });
  place.file = FileUtils::MapWow64Path(file);
  return place;
}

std::wstring ResolveIndirect(std::wstring text) {
  if (!text.starts_with(L'@')) return text;
  const ResourcePlace place = SplitResourceLocation(text.substr(1));
  if (!IsReachable(place.file)) return {};
  return DLLGlobals::LoadStringResource(place.file, place.index);
}

// Empty when there is no such text.
std::wstring ReadText(std::wstring keyPath, const std::wstring& value) {
  TRegistryEx registry(KEY_READ);
  registry.SetRootKey(HKEY_LOCAL_MACHINE);
  registry.KeyPath = std::move(keyPath);
  registry.ValueName = value;
  registry.AcceptedTypes = {RegistryDataKind::kString, RegistryDataKind::kExpandString};
  return registry.ValueExistsEx(true, true) ? registry.ReadStringEx(true, true) : std::wstring();
}

std::wstring ReadName(const std::wstring& keyPath) {
  for (const NameSource& source : kNameSources) {
    std::wstring name = Trim(ResolveIndirect(ReadText(Format(source.key, keyPath), source.value)));
    if (!name.empty()) return name;
  }
  return Trim(std::wstring_view(keyPath).substr(keyPath.rfind(L'\\') + 1));
}

std::wstring ReadCommand(const std::wstring& keyPath) {
  const std::wstring text = ReadText(Format(kCommandKey, keyPath), L"");
  return Trim(TakeText([&](BoundaryText* command) {
    return DLLGlobals::ShellHelper().NormalizeCommand(text.c_str(), command);
  }));
}

// An added path may have blanks without quotes: it has no arguments.
SharedText StartedFile(const FavoriteIdentity& client) {
  if (!client.keyPath.empty()) return ResolveCommandToFile(client.command.c_str());
  return ResolveCommandToFile(QuoteText(DequoteText(Trim(client.command))).c_str());
}

// A shortcut's icon goes before the registered one; a path that was added shows its own.
ResourcePlace FindIcon(const FavoriteIdentity& client, const ItemDetails& details) {
  if (!details.IconPath.empty()) {
    return {FileUtils::MapWow64Path(FileUtils::NormalizePath(details.IconPath)), details.IconIndex};
  }
  if (client.keyPath.empty()) return {std::wstring(details.FilePath), 0};
  return SplitResourceLocation(client.iconLocation);
}

int LoadIcon(const ResourcePlace& icon, IconLists& icons, IconSource& source) {
  if (!FileUtils::FileExists(icon.file)) return kFavoriteImageUnknown;
  int image = icons.AppendIcon(source, icon.file, icon.index);
  if (image < 0 && icon.index != 0) image = icons.AppendIcon(source, icon.file, 0);
  return image < 0 ? kFavoriteImageUnknown : image;
}

}  // namespace

std::span<const wchar_t* const> ClientKindKeys() noexcept {
  return kKindKeys;
}

std::vector<std::wstring> ClientNames(std::int32_t kind, REGSAM view) {
  TRegistryEx registry(KEY_READ | view);
  registry.SetRootKey(HKEY_LOCAL_MACHINE);
  if (!registry.OpenKeyReadOnly(kKindKeys[kind])) return {};
  return registry.KeyNames();
}

std::optional<FavoriteIdentity> ReadClient(std::int32_t kind, const std::wstring& keyPath) {
  FavoriteIdentity client{.kind = kind, .keyPath = keyPath, .name = {}, .command = {}, .iconLocation = {}};
  client.command = ReadCommand(keyPath);
  if (client.command.empty()) return std::nullopt;
  client.name = ReadName(keyPath);
  if (client.name.empty()) return std::nullopt;
  client.iconLocation = ReadText(Format(kIconKey, keyPath), L"");
  return client;
}

FavoriteIdentity IdentityOfPath(const std::wstring& path) {
  const std::wstring file = DequoteText(Trim(path));
  std::wstring name = TakeText(
      [&](BoundaryText* out) { return DLLGlobals::Helper().GetFileNameWithoutExt(file.c_str(), out); });
  if (name.empty()) name = file;
  return {.kind = kFavoritePath, .keyPath = {}, .name = std::move(name), .command = path, .iconLocation = {}};
}

void LoadClientDetails(const FavoriteIdentity& client, IconLists& icons, IconSource* source,
                       ItemDetails& details) {
  details.FilePath = StartedFile(client);
  details.Kind = TargetKindOfFile(details.FilePath);
  if (details.Kind == TargetKind::kShortcut) {
    FollowShortcut(details);
  } else {
    TakeStartedThrough(details.FilePath, details.Command, details);
  }
  std::optional<FileStamp> stamp;
  if (IsFullPath(details.FilePath)) stamp = ReachableStamp(details.FilePath);
  // A folder is no program.
  if (stamp && stamp->isFolder) stamp.reset();
  DescribeStartedFile(stamp, details);
  ReadFileFacts(details);
  if (source != nullptr) details.ImageIndex = LoadIcon(FindIcon(client, details), icons, *source);
}

}  // namespace smh
