#include "hosts/cli/dsc_instance.h"

#include "hosts/cli/apply_plan.h"
#include "hosts/cli/texts/usage_texts.h"
#include "hosts/common/flat_json.h"
#include "hosts/common/host_error.h"
#include "hosts/common/json_output.h"
#include "hosts/common/location_names.h"
#include "hosts/common/start_words.h"
#include "hosts/common/text_encoding.h"
#include "hosts/common/texts/snapshot_texts.h"
#include "infra/registry/full_value_path.h"
#include "infra/runtime/embedded_nul.h"
#include "infra/runtime/text.h"

#include <algorithm>
#include <functional>
#include <iterator>
#include <tuple>
#include <utility>

namespace smh {

namespace {

// "_inDesiredState" is for reading only, but comes back when an answer is used as a wish.
constexpr std::string_view kKeys[] = {"location", "name", "command", "enabled", "_exist", "_inDesiredState"};

FlatObject ParseObject(std::string_view json) {
  FlatObject object = ReadFlatJson(json);
  for (const auto& [key, value] : object.Members()) {
    if (std::ranges::find(kKeys, key) == std::end(kKeys)) {
      throw JsonFault(Format(texts::kNoProperty, Printable(FromUtf8(key))));
    }
  }
  return object;
}

std::optional<std::int32_t> LocationIn(const FlatObject& object) {
  const std::optional<std::wstring> name = object.Text("location");
  if (!name) return std::nullopt;
  if (const auto location = LocationByName(*name)) return *location;
  throw JsonFault(Format(texts::kNoLocation, Printable(*name)));
}

std::optional<std::wstring> TextIn(const FlatObject& object, const char* key) {
  std::optional<std::wstring> text = object.Text(key);
  if (text && HoldsNul(*text)) throw JsonFault(Format(texts::kHoldsNul, FromUtf8(key)));
  return text;
}

// A shortcut is meant without its extension, too.
bool HasName(const SnapshotEntry& entry, std::wstring_view name) {
  return SameText(entry.Name(), name) || (entry.root.empty() && SameText(NameToAdd(entry), name));
}

bool HoldsUnpairedSurrogate(std::wstring_view text) {
  bool holds = false;
  ForEachCodePoint(text,
                   [&](std::uint32_t value, std::wstring_view) { holds = holds || IsSurrogate(value); });
  return holds;
}

// Neither disabled nor switched off in Task Manager.
bool IsOn(const SnapshotEntry& entry) noexcept {
  return entry.enabled && !entry.switchedOff.value_or(false);
}

bool IsOn(const ItemRecord& item) noexcept {
  return item.enabled && !IsSwitchedOff(item);
}

// What is switched off in Task Manager need not be disabled besides.
void Switch(SnapshotEntry& entry, bool on) {
  if (IsOn(entry) == on) return;
  entry.enabled = on;
  entry.disabledBy = on ? L"" : kDisabledByUs;
  entry.switchedOff = on ? std::optional(false) : std::nullopt;
}

SnapshotEntry NewEntry(const DscInstance& wanted, const MachineFacts& machine) {
  const LocationRow& row = LocationRowOf(wanted.location);
  SnapshotEntry entry;
  entry.location = wanted.location;
  entry.command = *wanted.command;
  entry.enabled = wanted.enabled.value_or(true);
  if (!entry.enabled) entry.disabledBy = kDisabledByUs;
  if (row.family == LocationFamily::kStartupFolder) {
    entry.file = EndsText(L".lnk", wanted.name) ? wanted.name : wanted.name + L".lnk";
  } else {
    entry.root = RootKeyName(row.root == LocationRoot::kUser ? HKEY_CURRENT_USER : HKEY_LOCAL_MACHINE);
    entry.view = machine.OwnView();
    entry.valueName = wanted.name;
  }
  return entry;
}

// The properties of an instance; none of an entry when there is none.
std::wstring Properties(std::int32_t location, std::wstring_view name, const SnapshotEntry* entry) {
  std::wstring json = L"{\"location\":" + JsonText(LocationName(location)) + L",\"name\":" + JsonText(name);
  if (entry != nullptr) {
    json += L",\"command\":" + JsonText(entry->command) + L",\"enabled\":" + JsonValue(IsOn(*entry));
  }
  return json + L",\"_exist\":" + JsonValue(entry != nullptr);
}

bool Leaves(const DscFilter& filter, const SnapshotEntry& entry) {
  return filter.location.value_or(entry.location) == entry.location &&
         (!filter.name || HasName(entry, *filter.name)) &&
         filter.command.value_or(entry.command) == entry.command &&
         filter.enabled.value_or(IsOn(entry)) == IsOn(entry);
}

// By location and name, in which the entries of one instance agree.
int CompareInstances(const SnapshotEntry& a, const SnapshotEntry& b) noexcept {
  if (a.location != b.location) return a.location < b.location ? -1 : 1;
  return CompareText(a.Name(), b.Name());
}

}  // namespace

DscInstance ParseDscInstance(std::string_view json) {
  const FlatObject object = ParseObject(json);
  DscInstance instance;
  instance.location = Required(LocationIn(object), L"location");
  instance.name = Required(TextIn(object, "name"), L"name");
  instance.command = TextIn(object, "command");
  instance.enabled = object.Flag("enabled");
  instance.exists = object.Flag("_exist").value_or(true);
  if (instance.command && instance.command->empty()) throw JsonFault(Format(texts::kIsEmpty, L"command"));
  return instance;
}

DscFilter ParseDscFilter(std::string_view json) {
  if (json.empty()) return {};
  const FlatObject object = ParseObject(json);
  return {.location = LocationIn(object),
          .name = object.Text("name"),
          .command = object.Text("command"),
          .enabled = object.Flag("enabled")};
}

DscState::DscState(std::int32_t location, std::wstring name, const std::optional<std::wstring>& command,
                   std::span<const ItemRecord> items)
    : location_(location), name_(std::move(name)) {
  std::ranges::copy_if(items, std::back_inserter(entries_), [&](const ItemRecord& item) {
    return item.location == location_ && HasName(EntryOf(item), name_);
  });
  std::ranges::stable_sort(entries_, std::ranges::greater(), [&](const ItemRecord& item) {
    return std::tuple(IsOn(item), item.enabled, item.command == command);
  });
}

bool DscState::IsEnabled() const noexcept {
  return IsOn(entries_.front());
}

bool DscState::Fits(const DscInstance& wanted) const {
  if (!Exists() || !wanted.exists) return Exists() == wanted.exists;
  return wanted.command.value_or(Command()) == Command() &&
         wanted.enabled.value_or(IsEnabled()) == IsEnabled();
}

std::vector<SnapshotEntry> DscState::Target(const DscInstance& wanted, const MachineFacts& machine) const {
  if (!wanted.exists) return {};
  if (!Exists()) {
    if (!wanted.command) throw HostError(texts::kNeedsCommandNow);
    return {NewEntry(wanted, machine)};
  }
  std::vector<SnapshotEntry> target = EntriesOf(entries_);
  SnapshotEntry& main = target.front();
  main.command = wanted.command.value_or(main.command);
  // Not enabled means that none of them is.
  for (SnapshotEntry& entry : target) {
    if (wanted.enabled == false) Switch(entry, false);
  }
  if (wanted.enabled == true) Switch(main, true);
  return target;
}

std::wstring DscState::Json(std::optional<bool> inDesiredState) const {
  const std::optional<SnapshotEntry> main =
      Exists() ? std::optional(EntryOf(entries_.front())) : std::nullopt;
  return Properties(location_, name_, main ? &*main : nullptr) + L",\"_inDesiredState\":" +
         (inDesiredState ? JsonValue(*inDesiredState) : L"null") + L"}\n";
}

std::wstring ExportLines(std::span<const ItemRecord> items, const DscFilter& filter,
                         std::vector<std::wstring>& leftOut) {
  std::vector<SnapshotEntry> entries = EntriesOf(items);
  std::ranges::stable_sort(entries, std::ranges::greater(),
                           [](const SnapshotEntry& entry) { return std::pair(IsOn(entry), entry.enabled); });
  std::ranges::stable_sort(
      entries, [](const SnapshotEntry& a, const SnapshotEntry& b) { return CompareInstances(a, b) < 0; });
  std::wstring lines;
  const SnapshotEntry* last = nullptr;
  for (const SnapshotEntry& entry : entries) {
    const bool isKnown = last != nullptr && CompareInstances(*last, entry) == 0;
    last = &entry;
    if (isKnown || !Leaves(filter, entry)) continue;
    if (HoldsUnpairedSurrogate(entry.Name()) || HoldsUnpairedSurrogate(entry.command)) {
      leftOut.emplace_back(entry.Name());
    } else {
      lines += Properties(entry.location, entry.Name(), &entry) + L"}\n";
    }
  }
  return lines;
}

std::wstring DscSchema() {
  std::wstring locations;
  for (std::int32_t location = kFirstLocation; location <= kLastLocation; ++location) {
    if (!locations.empty()) locations += L',';
    locations += JsonText(LocationName(location));
  }
  return LR"({"$schema":"https://json-schema.org/draft/2020-12/schema","title":"Start-up entry","type":"object",)"
         LR"("required":["location","name"],"additionalProperties":false,"properties":{)"
         LR"("location":{"type":"string","description":"A location, as startupctl locations names it.","enum":[)" +
         locations +
         LR"(]},"name":{"type":"string","description":"The value's or the key's name; of a Startup folder the )"
         LR"(file's, of which a shortcut may lack its extension."},)"
         LR"("command":{"type":"string","description":"The command line. Needed for an entry that is missing."},)"
         LR"("enabled":{"type":"boolean","description":"Whether it is neither disabled nor switched off in )"
         LR"(Task Manager."},)"
         LR"("_exist":{"type":"boolean","default":true,"description":"Whether the entry is there."},)"
         LR"("_inDesiredState":{"type":["boolean","null"],"readOnly":true,)"
         LR"("description":"Whether test found nothing to do."}}})"
         L" ";
}

}  // namespace smh
