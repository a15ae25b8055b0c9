#include "hosts/common/snapshot_file.h"

#include "hosts/common/flat_json.h"
#include "hosts/common/host_error.h"
#include "hosts/common/json_output.h"
#include "hosts/common/location_names.h"
#include "hosts/common/text_encoding.h"
#include "hosts/common/texts/snapshot_texts.h"
#include "infra/files/file_facts.h"
#include "infra/files/file_reading.h"
#include "infra/registry/full_value_path.h"
#include "infra/runtime/embedded_nul.h"
#include "infra/runtime/exceptions.h"
#include "infra/runtime/handle.h"
#include "infra/runtime/text.h"

#include <windows.h>

#include <algorithm>

namespace smh {

namespace {

constexpr std::int64_t kFormatVersion = 1;
// One that is enabled, and those in the places of disabled ones, of which no location has so many.
constexpr std::size_t kMostOfOneName = 16;

// JSON cannot hold unpaired surrogates, and readers stop at a NUL.
bool NeedsEscapes(std::wstring_view text) {
  bool needs = HoldsNul(text);
  ForEachCodePoint(text,
                   [&](std::uint32_t value, std::wstring_view) { needs = needs || IsSurrogate(value); });
  return needs;
}

// What DecodeEscapes takes back: escapes for backslashes and for what JSON cannot hold.
std::wstring WithEscapes(std::wstring_view text) {
  std::wstring result;
  ForEachCodePoint(text, [&](std::uint32_t value, std::wstring_view units) {
    if (value == L'\\' || value == 0 || IsSurrogate(value)) {
      wchar_t escape[16];
      wsprintfW(escape, L"\\u{%x}", static_cast<unsigned>(value));
      result += escape;
    } else {
      result += units;
    }
  });
  return result;
}

// Appends members to one object.
class ObjectText {
 public:
  void Raw(std::wstring_view key, std::wstring_view json) {
    text_ += text_.empty() ? L'{' : L',';
    text_ += JsonMember(key, json);
  }
  void Text(std::wstring_view key, const std::wstring& text) { Raw(key, JsonText(text)); }
  void TextOrNone(std::wstring_view key, const std::wstring& text) {
    Raw(key, text.empty() ? std::wstring(L"null") : JsonText(text));
  }
  std::wstring Take() && { return std::move(text_) + L'}'; }

 private:
  std::wstring text_;
};

std::wstring EntryText(const SnapshotEntry& entry) {
  const std::wstring name = entry.valueName.value_or(std::wstring());
  const std::wstring twin = entry.twin.value_or(std::wstring());
  const std::wstring* const texts[] = {&entry.key,        &name, &entry.file, &entry.command,
                                       &entry.disabledBy, &twin};
  const bool escaped =
      std::ranges::any_of(texts, [](const std::wstring* text) { return NeedsEscapes(*text); });
  const auto written = [escaped](const std::wstring& text) { return escaped ? WithEscapes(text) : text; };
  const auto given = [&](bool isGiven, const std::wstring& text) {
    return isGiven ? JsonText(written(text)) : std::wstring(L"null");
  };
  ObjectText object;
  object.Raw(L"location", JsonText(LocationName(entry.location)));
  if (entry.root.empty()) {
    object.Text(L"file", written(entry.file));
  } else {
    object.Text(L"root", entry.root);
    object.Raw(L"view", std::to_wstring(entry.view));
    object.Text(L"key", written(entry.key));
    object.Raw(L"valueName", given(entry.valueName.has_value(), name));
    object.Raw(L"twin", given(entry.twin.has_value(), twin));
  }
  object.Text(L"command", written(entry.command));
  object.Raw(L"enabled", entry.enabled ? L"true" : L"false");
  object.TextOrNone(L"disabledBy", written(entry.disabledBy));
  if (entry.switchedOff) object.Raw(L"switchedOff", *entry.switchedOff ? L"true" : L"false");
  if (escaped) object.Raw(L"escaped", L"true");
  return std::move(object).Take();
}

}  // namespace

std::wstring SnapshotText(const Snapshot& snapshot) {
  ObjectText head;
  head.Raw(L"snapshotVersion", std::to_wstring(kFormatVersion));
  head.Text(L"machine", snapshot.machine.name);
  head.Text(L"time", snapshot.time);
  head.Raw(L"views", snapshot.machine.hasTwoViews ? L"2" : L"1");
  head.TextOrNone(L"profileFolder", snapshot.machine.profileFolder);
  head.TextOrNone(L"roamingFolder", snapshot.machine.roamingFolder);
  head.TextOrNone(L"localFolder", snapshot.machine.localFolder);
  std::vector<std::wstring> rows;
  for (const SnapshotEntry& entry : snapshot.entries) rows.push_back(EntryText(entry));
  const std::wstring list = JsonArray(rows);
  head.Raw(L"entries", std::wstring_view(list).substr(0, list.size() - 1));
  return std::move(head).Take() + L"\n";
}

namespace {

// The texts of one row.
class RowTexts {
 public:
  explicit RowTexts(const FlatObject& row) : row_(row), escaped_(row.Flag("escaped").value_or(false)) {}

  std::optional<std::wstring> Get(const char* key) const {
    std::optional<std::wstring> text = row_.Text(key);
    if (!text) return text;
    if (escaped_) return DecodeEscapes(*text);
    if (HoldsNul(*text)) throw JsonFault(Format(texts::kHoldsNul, FromUtf8(key)));
    return text;
  }

 private:
  const FlatObject& row_;
  const bool escaped_;
};

void RequireSinglePart(std::wstring_view name) {
  const bool isOne = !name.empty() && name != L"." && name != L".." &&
                     name.find_first_of(std::wstring_view(L"\\/:\0", 4)) == std::wstring_view::npos;
  if (!isOne) throw JsonFault(texts::kFileNotHeld.Get());
}

// Whether `key` is the one of the location, or one of its places for disabled entries.
bool IsPlaceOf(const LocationRow& row, std::wstring_view key, bool enabled) {
  if (enabled) return SameText(key, row.place);
  const std::vector<std::wstring> sides = SidePaths(row);
  return std::ranges::any_of(sides, [&](const std::wstring& side) { return SameText(key, side); });
}

void RequirePlace(const SnapshotEntry& entry) {
  const LocationRow& row = LocationRowOf(entry.location);
  const bool isUsers = entry.root == RootKeyName(HKEY_CURRENT_USER);
  const bool isMachines = entry.root == RootKeyName(HKEY_LOCAL_MACHINE);
  const bool rootFits =
      (isUsers && row.root != LocationRoot::kMachine) || (isMachines && row.root != LocationRoot::kUser);
  if (!rootFits) throw JsonFault(texts::kRootIsOther.Get());
  if (entry.view != 64 && entry.view != 32) throw JsonFault(texts::kViewIsOther.Get());
  const bool isKey = FamilyOf(row).entriesAreKeys;
  if (isKey == entry.valueName.has_value()) {
    throw JsonFault((isKey ? texts::kHasValueName : texts::kHasNoValueName).Get());
  }
  std::wstring_view place = entry.key;
  if (isKey) {
    const std::size_t end = place.rfind(L'\\');
    const std::wstring_view name =
        end == std::wstring_view::npos ? std::wstring_view() : place.substr(end + 1);
    if (name.empty() || HoldsNul(name)) throw JsonFault(texts::kKeyNotHeld.Get());
    place = place.substr(0, end);
  }
  if (!IsPlaceOf(row, place, entry.enabled)) throw JsonFault(texts::kKeyOutside.Get());
}

SnapshotEntry EntryIn(const FlatObject& row) {
  const RowTexts texts(row);
  SnapshotEntry entry;
  const std::wstring location = Required(row.Text("location"), L"location");
  entry.location = LocationByName(location).value_or(sulNone);
  if (entry.location == sulNone) {
    throw JsonFault(Format(texts::kNoLocation, CutEnd(Printable(location), 60)));
  }
  entry.command = Required(texts.Get("command"), L"command");
  entry.enabled = Required(row.Flag("enabled"), L"enabled");
  entry.disabledBy = texts.Get("disabledBy").value_or(std::wstring());
  if (entry.enabled != entry.disabledBy.empty()) {
    throw JsonFault(Format(texts::kContradicts, L"enabled", L"disabledBy"));
  }
  entry.switchedOff = row.Flag("switchedOff");
  if (entry.switchedOff == true && !entry.enabled) {
    throw JsonFault(Format(texts::kContradicts, L"enabled", L"switchedOff"));
  }
  if (LocationRowOf(entry.location).family == LocationFamily::kStartupFolder) {
    entry.file = Required(texts.Get("file"), L"file");
    RequireSinglePart(entry.file);
    if (row.Text("root") || row.Text("key")) throw JsonFault(texts::kFileWithKey.Get());
    return entry;
  }
  if (row.Text("file")) throw JsonFault(texts::kFileWithoutPlace.Get());
  entry.root = Required(row.Text("root"), L"root");
  entry.view =
      static_cast<std::int32_t>(std::clamp<std::int64_t>(Required(row.Number("view"), L"view"), 0, 99));
  entry.key = Required(texts.Get("key"), L"key");
  entry.valueName = texts.Get("valueName");
  entry.twin = texts.Get("twin");
  RequirePlace(entry);
  return entry;
}

// A folder whose name stands for another one's: never a drive or less.
std::wstring UserFolder(const FlatObject& head, const char* key) {
  std::wstring folder = WithoutTrailingBackslash(head.Text(key).value_or(std::wstring()));
  if (folder.empty()) return folder;
  if (folder.size() < 4 || !IsFullPath(folder) || HoldsNul(folder) ||
      folder.find(L"..") != std::wstring::npos) {
    throw JsonFault(Format(texts::kNoFullPath, FromUtf8(key)));
  }
  return folder;
}

void RequireVersion(const FlatObject& head) {
  const std::int64_t version = Required(head.Number("snapshotVersion"), L"snapshotVersion");
  if (version != kFormatVersion) {
    throw JsonFault(Format(texts::kOtherVersion, version, kFormatVersion));
  }
}

// Else comparing would take as long as somebody likes.
void RequireFewOfOneName(const std::vector<SnapshotEntry>& entries) {
  std::vector<const SnapshotEntry*> sorted;
  sorted.reserve(entries.size());
  for (const SnapshotEntry& entry : entries) sorted.push_back(&entry);
  std::ranges::sort(
      sorted, [](const SnapshotEntry* a, const SnapshotEntry* b) { return CompareIdentity(*a, *b) < 0; });
  for (std::size_t i = kMostOfOneName; i < sorted.size(); ++i) {
    if (CompareIdentity(*sorted[i], *sorted[i - kMostOfOneName]) == 0) {
      throw JsonFault(texts::kTooManyOfOneName.Get());
    }
  }
}

}  // namespace

Snapshot ParseSnapshot(std::string_view bytes) {
  Snapshot snapshot;
  const FlatObject head =
      ReadFlatJson(bytes, "entries", [&](const FlatObject& before, const FlatObject& row) {
        if (snapshot.entries.empty() && before.Number("snapshotVersion")) RequireVersion(before);
        try {
          snapshot.entries.push_back(EntryIn(row));
        } catch (const JsonFault& fault) {
          throw JsonFault(Format(texts::kInEntry, snapshot.entries.size() + 1, fault.Reason()));
        }
      });
  RequireVersion(head);
  const std::int64_t views = Required(head.Number("views"), L"views");
  if (views != 1 && views != 2) throw JsonFault(Format(texts::kViewsAreOther, L"views"));
  snapshot.time = Required(head.Text("time"), L"time");
  snapshot.machine = {.name = Required(head.Text("machine"), L"machine"),
                      .hasTwoViews = views == 2,
                      .profileFolder = UserFolder(head, "profileFolder"),
                      .roamingFolder = UserFolder(head, "roamingFolder"),
                      .localFolder = UserFolder(head, "localFolder")};
  RequireFewOfOneName(snapshot.entries);
  return snapshot;
}

namespace {

Phrase LastErrorText() {
  return SystemErrorText(HRESULT_FROM_WIN32(GetLastError()));
}

[[noreturn]] void RaiseUnwritten(const std::wstring& path, const Phrase& why) {
  throw HostError(Say(texts::kCannotWriteFile, path, why));
}

// Deletes the file unless it has been moved to its place.
class NewFile {
 public:
  // Raises HostError.
  explicit NewFile(const std::wstring& path) : target_(path) {
    const std::optional<std::wstring> full = FullPathOf(path.c_str());
    if (!full) RaiseUnwritten(target_, LastErrorText());
    const std::wstring folder(FolderPart(*full));
    wchar_t name[MAX_PATH];
    if (folder.size() > MAX_PATH - 14 || !GetTempFileNameW(folder.c_str(), L"snp", 0, name)) {
      RaiseUnwritten(target_, LastErrorText());
    }
    name_ = name;
  }
  ~NewFile() {
    if (!name_.empty()) DeleteFileW(name_.c_str());
  }
  NewFile(const NewFile&) = delete;
  NewFile& operator=(const NewFile&) = delete;

  void Fill(std::string_view bytes) const {
    const ScopedHandle file(
        CreateFileW(name_.c_str(), GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    DWORD written = 0;
    if (!file || !WriteFile(file.Get(), bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr) ||
        written != bytes.size() || !FlushFileBuffers(file.Get())) {
      RaiseUnwritten(target_, LastErrorText());
    }
  }
  void MoveToItsPlace() {
    if (!MoveFileExW(name_.c_str(), target_.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH)) {
      RaiseUnwritten(target_, LastErrorText());
    }
    name_.clear();
  }

 private:
  const std::wstring target_;
  std::wstring name_;
};

}  // namespace

void WriteSnapshotFile(const std::wstring& path, const Snapshot& snapshot) {
  const std::string bytes = ToUtf8(SnapshotText(snapshot));
  if (bytes.size() > kMostSnapshotBytes) RaiseUnwritten(path, texts::kSnapshotTooLarge);
  NewFile file(path);
  file.Fill(bytes);
  file.MoveToItsPlace();
}

Snapshot ReadSnapshotFile(const std::wstring& path) {
  if (!IsFile(path)) throw HostError(Say(texts::kNoFile, path));
  std::string bytes;
  try {
    bytes = ReadWholeFile(path, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, kMostSnapshotBytes);
  } catch (const EOSError& error) {
    const bool isLarge = error.Code() == ERROR_FILE_TOO_LARGE;
    throw HostError(Say(texts::kCannotReadFile, path,
                        isLarge ? Phrase(texts::kFileTooLarge) : SystemErrorText(error.Result())));
  }
  try {
    return ParseSnapshot(bytes);
  } catch (const JsonFault& fault) {
    throw HostError(Format(texts::kNoSnapshot, path, fault.Reason()));
  }
}

}  // namespace smh
