#include "siblings/guardkit/undo_reach.h"

#include "core/contracts/disabled_places.h"
#include "core/contracts/location_table.h"
#include "core/contracts/startup_approved.h"
#include "infra/files/file_facts.h"
#include "infra/runtime/ascii_text.h"
#include "infra/runtime/text.h"
#include "siblings/common/product.h"
#include "siblings/guardkit/journal_folder.h"

#include <shlobj.h>

#include <algorithm>
#include <utility>

namespace smh {

namespace {

// The part behind `prefix`, which is in lower case, of a text in lower case.
std::optional<std::wstring> Behind(std::wstring_view prefix, const std::wstring& text) {
  if (!text.starts_with(prefix)) return std::nullopt;
  return text.substr(prefix.size());
}

// A key of the 32-bit view is that of the other view, as far as locations go.
std::wstring WithoutView(const std::wstring& path) {
  for (const std::wstring_view above : {L"software\\", L"software\\classes\\"}) {
    const std::wstring view = std::wstring(above).append(L"wow6432node\\");
    if (const auto rest = Behind(view, path)) return std::wstring(above).append(*rest);
  }
  return path;
}

bool IsEmpty(const KeyState& key) noexcept {
  return key.values.empty();
}

// "C:\" or "\\server\share\", and levels that the system takes as they are written.
bool IsPlainPath(std::wstring_view path) {
  const bool isShare = path.starts_with(L"\\\\");
  if (!isShare && (path.size() < 3 || path[1] != L':' || path[2] != L'\\')) return false;
  std::wstring_view rest = path.substr(isShare ? 2 : 3);
  for (;;) {
    const std::size_t end = std::min(rest.find(L'\\'), rest.size());
    const std::wstring_view level = rest.substr(0, end);
    constexpr std::wstring_view kForbidden = L"/:*?\"<>|";
    const auto isForbidden = [&](wchar_t unit) {
      return unit < L' ' || kForbidden.find(unit) != std::wstring_view::npos;
    };
    if (level.empty() || level.ends_with(L'.') || level.ends_with(L' ') || IsDeviceName(level) ||
        std::ranges::any_of(level, isForbidden)) {
      return false;
    }
    if (end == rest.size()) return true;
    rest.remove_prefix(end + 1);
  }
}

}  // namespace

UndoReach::UndoReach(std::wstring sid) : sid_(std::move(sid)) {
  for (const LocationRow& row : kLocationTable) {
    if (row.family == LocationFamily::kNone || row.family == LocationFamily::kStartupFolder) continue;
    const bool user = row.root != LocationRoot::kMachine;
    const bool machine = row.root != LocationRoot::kUser;
    const Rights below = FamilyOf(row).entriesAreKeys ? Rights::kEverything : Rights::kNone;
    Allow(row.place, user, machine, Rights::kValues, below);
    for (const std::wstring& side : SidePaths(row)) Allow(side, user, machine, Rights::kValues, below);
  }
  for (const wchar_t* const list : kApprovedLists) {
    Allow(std::wstring(kApprovedKey).append(L"\\").append(list), true, true, Rights::kValues, Rights::kNone);
  }
}

void UndoReach::Allow(std::wstring_view path, bool user, bool machine, Rights own, Rights below) {
  const std::wstring key = AsciiLowerCase(path);
  const auto allow = [&](Rows& rows) {
    for (std::size_t end = key.find(L'\\'); end != std::wstring::npos; end = key.find(L'\\', end + 1)) {
      Row& above = rows[key.substr(0, end)];
      above.own = std::max(above.own, Rights::kAsEmptyKey);
    }
    Row& row = rows[key];
    row.own = std::max(row.own, own);
    row.below = std::max(row.below, below);
  };
  if (user) allow(user_);
  if (machine) allow(machine_);
}

// Thousands of steps name few keys.
UndoReach::Rights UndoReach::RightsTo(const std::wstring& place) const {
  const auto found = found_.find(place);
  return found != found_.end() ? found->second : found_.emplace(place, FindRights(place)).first->second;
}

UndoReach::Rights UndoReach::FindRights(const std::wstring& place) const {
  const std::wstring all = AsciiLowerCase(place);
  const std::wstring own = AsciiLowerCase(L"HKEY_USERS\\" + sid_);
  const Rows* rows = &user_;
  std::optional<std::wstring> path = Behind(std::wstring(own).append(L"\\"), all);
  if (!path) {
    path = Behind(std::wstring(own).append(L"_classes\\"), all);
    if (path) path->insert(0, L"software\\classes\\");
  }
  if (!path) {
    path = Behind(L"hkey_local_machine\\", all);
    rows = &machine_;
  }
  if (!path) return Rights::kNone;
  std::wstring key = WithoutView(*path);
  if (const auto row = rows->find(key); row != rows->end() && row->second.own > Rights::kAsEmptyKey) {
    return std::max(row->second.own, row->second.below);
  }
  const bool isAbove = rows->contains(key);
  for (std::size_t end = key.rfind(L'\\'); end != std::wstring::npos; end = key.rfind(L'\\')) {
    key.resize(end);
    const auto row = rows->find(key);
    if (row != rows->end() && row->second.below != Rights::kNone) return row->second.below;
  }
  return isAbove ? Rights::kAsEmptyKey : Rights::kNone;
}

bool UndoReach::CoversKey(const std::wstring& place) const {
  return RightsTo(place) != Rights::kNone;
}

const UndoReach::Folders& UndoReach::ShellFolders() const {
  if (folders_) return *folders_;
  Folders folders;
  constexpr std::pair<int, int> kBases[] = {{CSIDL_STARTUP, CSIDL_APPDATA},
                                            {CSIDL_COMMON_STARTUP, CSIDL_COMMON_APPDATA}};
  for (const auto& [startup, data] : kBases) {
    const std::wstring startupFolder = ShellFolder(startup);
    if (!startupFolder.empty()) {
      std::wstring folder = WithTrailingBackslash(startupFolder);
      folders.single.push_back(folder);
      folder.append(kDisabledInStartup);
      folders.single.push_back(std::move(folder));
    }
    std::wstring dataFolder = WithTrailingBackslash(ShellFolder(data));
    if (dataFolder.size() <= 1) continue;
    dataFolder.append(kDisabledByOthers);
    folders.single.push_back(std::move(dataFolder));
    folders.own.push_back(ProductFolder(data));
  }
  folders_ = std::move(folders);
  return *folders_;
}

bool UndoReach::CoversFile(const std::wstring& path) const {
  if (!IsPlainPath(path)) return false;
  const Folders& folders = ShellFolders();
  const std::wstring_view folder = FolderPart(path);
  const auto isFolder = [&](const std::wstring& one) { return SameText(one, folder); };
  if (std::ranges::any_of(folders.single, isFolder)) return true;
  return std::ranges::any_of(folders.own, [&](const std::wstring& own) {
    return StartsText(own, folder) && !StartsText(std::wstring(own).append(kJournalFolderName), folder);
  });
}

bool UndoReach::Covers(const RecordedStep& step) const {
  const StepSource& source = step.source;
  if (source.kind == StepSource::Kind::kFile && !CoversFile(source.place)) return false;
  const bool isKey = source.kind == StepSource::Kind::kValue || source.kind == StepSource::Kind::kKey;
  if (isKey && !CoversKey(source.place)) return false;
  if (const auto* const value = std::get_if<ValueStep>(&step.step)) {
    return RightsTo(value->key) >= Rights::kValues;
  }
  if (const auto* const key = std::get_if<KeyStep>(&step.step)) {
    const Rights rights = RightsTo(key->key);
    return rights == Rights::kEverything ||
           (rights != Rights::kNone && IsEmpty(key->before) && IsEmpty(key->after));
  }
  if (const auto* const file = std::get_if<FileStep>(&step.step)) return CoversFile(file->path);
  const auto& move = std::get<MoveStep>(step.step);
  return CoversFile(move.from) && CoversFile(move.to);
}

bool UndoReach::Covers(const JournalContents& checkpoint) const {
  return std::ranges::all_of(checkpoint.steps, [this](const RecordedStep& step) { return Covers(step); });
}

}  // namespace smh
