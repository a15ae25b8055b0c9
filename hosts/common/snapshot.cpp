#include "hosts/common/snapshot.h"

#include "hosts/common/start_words.h"
#include "infra/files/file_facts.h"
#include "infra/runtime/text.h"
#include "sysutil/version/uWinVersionInfo.h"

#include <windows.h>
#include <shlobj.h>

#include <algorithm>
#include <array>

namespace smh {

std::wstring_view SnapshotEntry::Name() const noexcept {
  if (root.empty()) return file;
  if (valueName) return *valueName;
  return std::wstring_view(key).substr(key.rfind(L'\\') + 1);
}

SnapshotEntry EntryOf(const ItemRecord& item) {
  SnapshotEntry entry;
  entry.location = item.location;
  entry.root = item.root;
  entry.view = item.view;
  entry.key = item.key;
  entry.valueName = item.value;
  if (item.root.empty()) entry.file = FileNamePart(item.name);
  entry.command = item.command;
  entry.enabled = item.enabled;
  entry.disabledBy = item.disabledBy;
  if (item.twin == kTwinOther) entry.twin = item.twinCommand;
  if (item.enabled) entry.switchedOff = IsSwitchedOff(item);
  return entry;
}

std::vector<SnapshotEntry> EntriesOf(std::span<const ItemRecord> items) {
  std::vector<SnapshotEntry> entries;
  entries.reserve(items.size());
  for (const ItemRecord& item : items) entries.push_back(EntryOf(item));
  return entries;
}

MachineFacts ThisMachine() {
  MachineFacts facts;
  wchar_t name[MAX_COMPUTERNAME_LENGTH + 1];
  DWORD length = ARRAYSIZE(name);
  if (GetComputerNameW(name, &length)) facts.name.assign(name, length);
  facts.hasTwoViews = WinVersionInfo::IsWow64();
  facts.profileFolder = ShellFolder(CSIDL_PROFILE);
  facts.roamingFolder = ShellFolder(CSIDL_APPDATA);
  facts.localFolder = ShellFolder(CSIDL_LOCAL_APPDATA);
  return facts;
}

namespace {

// UTC: "2024-05-31T23:59:59Z".
std::wstring TimeNow() {
  SYSTEMTIME time;
  GetSystemTime(&time);
  wchar_t text[32];
  wsprintfW(text, L"%04d-%02d-%02dT%02d:%02d:%02dZ", time.wYear, time.wMonth, time.wDay, time.wHour,
            time.wMinute, time.wSecond);
  return text;
}

}  // namespace

Snapshot SnapshotOf(std::span<const ItemRecord> items) {
  return {ThisMachine(), TimeNow(), EntriesOf(items)};
}

int CompareIdentity(const SnapshotEntry& a, const SnapshotEntry& b) noexcept {
  if (a.location != b.location) return a.location < b.location ? -1 : 1;
  if (const int order = a.root.compare(b.root)) return order;
  if (a.view != b.view) return a.view < b.view ? -1 : 1;
  return CompareText(a.Name(), b.Name());
}

namespace {

// A folder of the snapshot's user, and the one that takes its place.
struct FolderPair {
  std::wstring_view from;
  std::wstring_view to;
};

// Whether a path can go on or end at that unit.
bool EndsName(wchar_t unit) noexcept {
  return std::wstring_view(L"\\/\"' \t,;").find(unit) != std::wstring_view::npos;
}

// Whether that unit can stand in front of a full path.
bool ComesBeforePath(wchar_t unit) noexcept {
  return std::wstring_view(L"\"' \t,;=:@(").find(unit) != std::wstring_view::npos;
}

bool StandsAt(std::wstring_view text, std::size_t position, std::wstring_view folder) noexcept {
  if (folder.empty() || (position != 0 && !ComesBeforePath(text[position - 1]))) return false;
  const std::wstring_view rest = text.substr(position);
  return StartsText(folder, rest) && (rest.size() == folder.size() || EndsName(rest[folder.size()]));
}

bool HoldsBlank(std::wstring_view text) noexcept {
  return text.find(L' ') != std::wstring_view::npos;
}

// A folder with a blank takes the word that it stands in, outside of quotes, into quotes.
std::wstring WithFolders(std::wstring_view text, std::span<const FolderPair> pairs) {
  std::wstring result;
  bool inQuotes = false;
  bool closesWord = false;
  for (std::size_t position = 0; position < text.size();) {
    const auto pair = std::ranges::find_if(
        pairs, [&](const FolderPair& each) { return StandsAt(text, position, each.from); });
    if (pair != pairs.end()) {
      if (!inQuotes && !closesWord && HoldsBlank(pair->to) && !HoldsBlank(pair->from)) {
        result += L'"';
        closesWord = true;
      }
      result += pair->to;
      position += pair->from.size();
      continue;
    }
    const wchar_t unit = text[position++];
    if (closesWord && (unit == L' ' || unit == L'"')) {
      result += L'"';
      closesWord = false;
    }
    if (unit == L'"') inQuotes = !inQuotes;
    result += unit;
  }
  if (closesWord) result += L'"';
  return result;
}

// The library shows the program of a shortcut in quotes only when it has a blank.
std::wstring WithNeededQuotes(std::wstring command) {
  const std::size_t end = command.starts_with(L'"') ? command.find(L'"', 1) : std::wstring::npos;
  if (end == std::wstring::npos || HoldsBlank(std::wstring_view(command).substr(0, end))) return command;
  return command.substr(1, end - 1) + command.substr(end + 1);
}

}  // namespace

void AdaptTo(Snapshot& snapshot, const MachineFacts& target) {
  const MachineFacts from = snapshot.machine;
  // The longest first: the others are parts of them.
  std::array<FolderPair, 3> pairs{{{from.localFolder, target.localFolder},
                                   {from.roamingFolder, target.roamingFolder},
                                   {from.profileFolder, target.profileFolder}}};
  for (FolderPair& pair : pairs) {
    if (pair.to.empty()) pair.from = {};
  }
  std::ranges::stable_sort(pairs, {},
                           [](const FolderPair& pair) { return -static_cast<int>(pair.from.size()); });
  for (SnapshotEntry& entry : snapshot.entries) {
    entry.command = WithFolders(entry.command, pairs);
    if (entry.twin) entry.twin = WithFolders(*entry.twin, pairs);
    if (entry.root.empty()) entry.command = WithNeededQuotes(std::move(entry.command));
    if (from.hasTwoViews != target.hasTwoViews && entry.view != 0) entry.view = target.OwnView();
  }
  snapshot.machine = target;
}

}  // namespace smh
