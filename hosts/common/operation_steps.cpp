#include "hosts/common/operation_steps.h"

#include "core/contracts/disabled_places.h"
#include "hosts/common/entry_place.h"
#include "hosts/common/location_names.h"
#include "hosts/common/start_words.h"
#include "hosts/common/texts/operation_texts.h"
#include "infra/files/file_facts.h"
#include "infra/runtime/text.h"
#include "sysutil/version/uWinVersionInfo.h"

namespace smh {

namespace {

using Steps = std::vector<Phrase>;

// Of a step in the journal, without its texts: prefix, kind, states, mark.
constexpr std::uint64_t kStepBytes = 128;

bool IsInFolder(std::int32_t location) noexcept {
  return LocationRowOf(location).family == LocationFamily::kStartupFolder;
}

Phrase KeyText(std::wstring_view root, std::wstring_view key, std::int32_t view) {
  const bool isOther = view == 32 && WinVersionInfo::IsWow64();
  return Say(isOther ? texts::kIn32BitView : texts::kQuotedKey, std::wstring(root).append(L"\\").append(key));
}

// Of a value: what happens to it.
Phrase ValueStep(const Text& step, const ItemRecord& item, std::wstring_view key, std::int32_t view) {
  const std::wstring name = item.value.value_or(std::wstring());
  return Say(step, name.empty() ? Phrase(texts::kUnnamedValue) : Phrase(name), KeyText(item.root, key, view));
}

// The key that holds the location's entries of that state.
std::wstring PlaceOf(std::int32_t location, bool enabled) {
  const LocationRow& row = LocationRowOf(location);
  return enabled ? std::wstring(row.place) : SidePaths(row).front();
}

// The views that a change of the entry reaches. They share what is the user's.
std::vector<std::int32_t> ViewsOf(const ItemRecord& item) {
  if (item.twin == kTwinSame && !IsUserLocation(item.location)) return {item.view, 32};
  return {item.view};
}

Phrase FolderText(std::int32_t location, bool enabled) {
  if (!enabled) return Say(texts::kOwnFolder, WithoutTrailingBackslash(kDisabledByThis));
  return Say(texts::kFolder, LocationPlace(LocationRowOf(location)));
}

void AddDeletion(const ItemRecord& item, Steps& steps) {
  if (item.root.empty()) {
    steps.push_back(Say(texts::kDeleteFile, item.name));
    return;
  }
  for (const std::int32_t view : ViewsOf(item)) {
    steps.push_back(item.value ? ValueStep(texts::kDeleteValue, item, item.key, view)
                               : Say(texts::kDeleteKey, KeyText(item.root, item.key, view)));
  }
}

void AddSystemSwitch(bool off, Steps& steps) {
  steps.emplace_back(off ? texts::kSwitchItOff : texts::kTakeSwitchBack);
}

void AddState(const ItemRecord& item, bool enable, Steps& steps) {
  if (item.root.empty()) {
    steps.push_back(Say(texts::kMoveFile, item.name, FolderText(item.location, enable)));
    return;
  }
  const std::wstring place = PlaceOf(item.location, enable);
  for (const std::int32_t view : ViewsOf(item)) {
    const std::wstring key = place + L'\\' + std::wstring(FileNamePart(item.key));
    steps.push_back(item.value ? ValueStep(texts::kWriteValue, item, place, view)
                               : Say(texts::kMakeKey, KeyText(item.root, key, view)));
  }
  AddDeletion(item, steps);
}

void AddMove(const EntryChange& change, Steps& steps) {
  const ItemRecord& item = change.before;
  const std::int32_t target = change.order.target;
  if (item.root.empty() && IsInFolder(target)) {
    steps.push_back(Say(texts::kMoveFile, item.name, FolderText(target, item.enabled)));
    return;
  }
  if (IsInFolder(target)) {
    steps.push_back(Say(texts::kMakeShortcutTo, item.command, FolderText(target, item.enabled)));
  } else {
    const ItemRecord place = PlaceOfNewValue(target, {});
    steps.push_back(
        Say(texts::kWriteData, item.command, KeyText(place.root, PlaceOf(target, item.enabled), place.view)));
  }
  AddDeletion(item, steps);
}

void AddAddition(const ItemRecord& wanted, Steps& steps) {
  if (IsInFolder(wanted.location)) {
    steps.push_back(Say(texts::kMakeShortcut, wanted.caption, FolderText(wanted.location, true)));
    return;
  }
  const ItemRecord place = PlaceOfNewValue(wanted.location, wanted.caption);
  steps.push_back(ValueStep(texts::kWriteValue, place, place.key, place.view));
}

}  // namespace

std::vector<Phrase> StepsOf(const EntryChange& change) {
  const ItemRecord& item = change.before;
  Steps steps;
  switch (change.verb) {
    case Verb::kEnable:
    case Verb::kDisable:
      if (item.enabled != (change.verb == Verb::kEnable)) {
        AddState(item, change.verb == Verb::kEnable, steps);
      }
      break;
    case Verb::kSwitchOff:
    case Verb::kSwitchOn:
      AddSystemSwitch(change.verb == Verb::kSwitchOff, steps);
      break;
    case Verb::kDelete:
      AddDeletion(item, steps);
      break;
    case Verb::kAdd:
      AddAddition(item, steps);
      break;
    case Verb::kMove:
      AddMove(change, steps);
      break;
    case Verb::kChange:
      steps.push_back(item.root.empty() ? Say(texts::kReplaceFile, item.name)
                                        : ValueStep(texts::kWriteValue, item, item.key, item.view));
      break;
  }
  if (change.verb == Verb::kAdd && change.order.enabled == false) steps.emplace_back(texts::kDisableIt);
  if (change.verb == Verb::kChange && change.order.enabled.value_or(item.enabled) != item.enabled) {
    AddState(item, !item.enabled, steps);
  }
  std::optional<bool> off = change.order.switchedOff;
  if (!off && change.verb == Verb::kEnable) off = false;
  if (change.verb == Verb::kSwitchOff || change.verb == Verb::kSwitchOn) off.reset();
  if (off && NeedsSwitch(item, *off)) AddSystemSwitch(*off, steps);
  return steps;
}

std::uint64_t RecordedBytes(const EntryChange& change) {
  const ItemRecord& item = change.before;
  const std::size_t units =
      item.name.size() + 2 * (item.command.size() + change.order.command.size()) + item.caption.size();
  const std::uint64_t texts = std::uint64_t{2} * units * sizeof(wchar_t);
  const bool keepsFile = item.root.empty() && (change.verb == Verb::kDelete || change.verb == Verb::kChange ||
                                               change.verb == Verb::kMove);
  const std::optional<FileStamp> file = keepsFile ? StampOf(item.name) : std::nullopt;
  return StepsOf(change).size() * kStepBytes + texts + (file ? file->size : 0);
}

}  // namespace smh
