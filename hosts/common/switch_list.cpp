#include "hosts/common/switch_list.h"

#include "core/contracts/intf_safeguard.h"
#include "core/contracts/location_table.h"
#include "core/contracts/startup_approved.h"
#include "hosts/common/entry_place.h"
#include "hosts/common/host_error.h"
#include "hosts/common/iso_time.h"
#include "hosts/common/library.h"
#include "hosts/common/location_names.h"
#include "hosts/common/texts/failure_texts.h"
#include "hosts/common/texts/title_texts.h"
#include "infra/files/file_facts.h"
#include "infra/registry/full_value_path.h"
#include "infra/runtime/embedded_nul.h"
#include "infra/runtime/text.h"
#include "sysutil/version/uWinVersionInfo.h"

#include <algorithm>
#include <cstring>

namespace smh {

namespace {

struct ListRow {
  HKEY root;
  const wchar_t* list;
  std::int32_t location;
  std::int32_t view;  // of its entries; 0 for any
};
const ListRow kLists[] = {
    {HKEY_CURRENT_USER, kApprovedRun, sulRegistryUserRun, 0},
    {HKEY_LOCAL_MACHINE, kApprovedRun, sulRegistryCommonRun, 64},
    {HKEY_LOCAL_MACHINE, kApprovedRun32, sulRegistryCommonRun, 32},
    {HKEY_CURRENT_USER, kApprovedFolder, sulFolderUser, 0},
    {HKEY_LOCAL_MACHINE, kApprovedFolder, sulFolderCommon, 0},
};

std::wstring ListPath(std::wstring_view list) {
  return std::wstring(kApprovedKey).append(L"\\").append(list);
}

REGSAM SystemView() {
  return WinVersionInfo::IsWow64() ? KEY_WOW64_64KEY : 0;
}

bool IsInFolder(std::int32_t location) noexcept {
  return LocationRowOf(location).family == LocationFamily::kStartupFolder;
}

bool IsOwner(const ItemRecord& item, const ListRow& row, const std::wstring& name) {
  if (item.location != row.location) return false;
  if (IsInFolder(row.location)) return SameText(FileNamePart(item.name), name);
  // Without a second view nobody reads the list of the 32-bit one.
  if (row.view == 32 && !WinVersionInfo::IsWow64()) return false;
  const bool isView = row.view == 0 || !WinVersionInfo::IsWow64() || item.view == row.view ||
                      (row.view == 32 && item.twin != kTwinNone);
  return isView && item.value && SameText(*item.value, name);
}

void ReadList(const ListRow& row, std::span<const ItemRecord> items, std::vector<SwitchRecord>& records) {
  const std::wstring path = ListPath(row.list);
  const ScopedKey key = OpenRegistryKey(row.root, path, KEY_READ | SystemView());
  if (!key) {
    const DWORD error = GetLastError();
    if (error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND) return;
    throw HostError(Say(texts::kCannotReadList, path, SystemErrorText(HRESULT_FROM_WIN32(error))));
  }
  RegistryValueReader values(key.Get());
  while (values.Next()) {
    SwitchRecord& record = records.emplace_back();
    record.location = row.location;
    record.root = row.root;
    record.list = row.list;
    record.name = values.Name();
    record.data.type = values.Type();
    record.data.bytes.assign(values.Data().begin(), values.Data().end());
    const std::vector<std::byte>& bytes = record.data.bytes;
    if (record.data.type == REG_BINARY && bytes.size() >= kLeastSwitchBytes) {
      record.off = (bytes.front() & kSwitchOffBit) != std::byte{0};
      if (*record.off) std::memcpy(&record.since, &bytes[kSwitchTimeAt], sizeof(record.since));
    }
    const auto owner =
        std::ranges::find_if(items, [&](const ItemRecord& item) { return IsOwner(item, row, record.name); });
    if (owner == items.end()) continue;
    record.isOrphan = false;
    record.id = owner->id;
    record.caption = owner->caption;
  }
}

FieldValue TextOrNone(const std::wstring& text) {
  return text.empty() ? FieldValue() : FieldValue(text);
}

FieldValue TimeOf(const FILETIME& time) {
  const bool isSet = time.dwLowDateTime != 0 || time.dwHighDateTime != 0;
  return isSet ? TextOrNone(IsoTime(time)) : FieldValue();
}

using R = const SwitchRecord&;

constexpr Field<SwitchRecord> kFields[] = {
    {L"list", [](R record) { return FieldValue(record.list); }},
    {L"root", [](R record) { return FieldValue(std::wstring(RootKeyName(record.root))); }},
    {L"name", [](R record) { return FieldValue(record.name); }},
    {L"off", [](R record) { return record.off ? FieldValue(*record.off) : FieldValue(); }},
    {L"since", [](R record) { return TimeOf(record.since); }},
    {L"orphan", [](R record) { return FieldValue(record.isOrphan); }},
    {L"id", [](R record) { return TextOrNone(record.id); }},
    {L"caption", [](R record) { return TextOrNone(record.caption); }},
    {L"location", [](R record) { return FieldValue(std::wstring(LocationName(record.location))); }},
};

// Somebody may have added an entry of that name since the list was read: then the switch is that one's.
bool HasEntryNow(const SwitchRecord& record) {
  ItemRecord place;
  EntryPlaces places;
  const auto hasEntry = [&] { return places.LookAt(place) != Standing::kNothing; };
  if (IsInFolder(record.location)) {
    return std::ranges::any_of(PlacesOfFile(record.location, record.name), [&](std::wstring& file) {
      place.name = std::move(file);
      return hasEntry();
    });
  }
  const bool isOf32 = record.list == std::wstring_view(kApprovedRun32);
  if (isOf32 && !WinVersionInfo::IsWow64()) return false;
  place = PlaceOfNewValue(record.location, record.name);
  if (isOf32) place.view = 32;
  if (hasEntry()) return true;
  // What is disabled keeps its switch.
  const std::wstring key = place.key;
  const auto& sides = FamilyOf(LocationRowOf(record.location)).sideSuffixes;
  return std::ranges::any_of(sides, [&](std::wstring_view side) {
    place.key = key + std::wstring(side);
    return hasEntry();
  });
}

// Asked as a part of the last look.
class StillNobodys final : public IChangeCheck {
 public:
  explicit StillNobodys(const SwitchRecord& record) noexcept : record_(record) {}
  LSTATUS STDMETHODCALLTYPE Check() override {
    try {
      return HasEntryNow(record_) ? ERROR_REVISION_MISMATCH : ERROR_SUCCESS;
    } catch (...) {
      return ERROR_REVISION_MISMATCH;
    }
  }

 private:
  const SwitchRecord& record_;
};

LSTATUS DeleteRecorded(HKEY key, const SwitchRecord& record) {
  const ScopedModule guardkit = LoadFromOwnFolder(ISafeguard::kLibrary);
  ISafeguard& safeguard = AskService<ISafeguard>(guardkit.Get());
  ComPtr<IRegAccess> access;
  if (FAILED(safeguard.GetRegAccess(access.Put()))) return ERROR_NOT_SUPPORTED;
  const std::wstring title = FormatIn(Language::kEnglish, texts::kDeletingSwitch, record.name);
  if (const LSTATUS status = safeguard.BeginCheckpoint(title.c_str())) return status;
  StillNobodys check(record);
  LSTATUS status = safeguard.SetChangeCheck(&check);
  if (status == ERROR_SUCCESS) {
    // What is recorded as standing there is read behind this.
    const std::optional<RegistryData> now = QueryRegistryValue(key, record.name);
    status = now == record.data ? access->DeleteValue(key, record.name.c_str()) : ERROR_REVISION_MISMATCH;
  }
  if (status != ERROR_SUCCESS) safeguard.FailCheckpoint();
  const LSTATUS ended = safeguard.EndCheckpoint();
  return status != ERROR_SUCCESS ? status : ended;
}

}  // namespace

std::vector<SwitchRecord> ReadSwitches(std::span<const ItemRecord> items) {
  std::vector<SwitchRecord> records;
  for (const ListRow& row : kLists) ReadList(row, items, records);
  return records;
}

std::span<const Field<SwitchRecord>> SwitchFields() noexcept {
  return kFields;
}

std::wstring Describe(const SwitchRecord& record) {
  return Format(texts::kSwitchInList, record.name, record.list, RootKeyName(record.root));
}

std::wstring DeleteSwitch(const SwitchRecord& record, bool recorded) {
  if (HoldsNul(record.name)) return texts::kNameHoldsNul.Get();
  const std::wstring path = ListPath(record.list);
  const ScopedKey key =
      OpenRegistryKey(record.root, path, KEY_QUERY_VALUE | KEY_SET_VALUE | KEY_READ | SystemView());
  if (!key) return SystemErrorText(HRESULT_FROM_WIN32(GetLastError())).Shown();
  LSTATUS status = ERROR_REVISION_MISMATCH;
  if (recorded) {
    status = DeleteRecorded(key.Get(), record);
  } else if (QueryRegistryValue(key.Get(), record.name) == record.data && !HasEntryNow(record)) {
    status = RegDeleteValueW(key.Get(), record.name.c_str());
  }
  if (status == ERROR_REVISION_MISMATCH) return texts::kSwitchHasChanged.Get();
  return status == ERROR_SUCCESS ? std::wstring() : SystemErrorText(HRESULT_FROM_WIN32(status)).Shown();
}

}  // namespace smh
