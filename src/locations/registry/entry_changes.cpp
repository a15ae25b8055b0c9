#include "locations/registry/entry_changes.h"

#include "core/uDllGlobals.h"
#include "infra/exceptions.h"
#include "infra/format.h"
#include "infra/uSafeguardRegistry.h"

namespace smh {

namespace {

bool IsMissing(LSTATUS status) noexcept {
  return status == ERROR_FILE_NOT_FOUND || status == ERROR_PATH_NOT_FOUND || status == ERROR_KEY_DELETED;
}

RegistryValueAddress PlainView(RegistryValueAddress address) {
  address.viewBits = 0;
  return address;
}

// Empty for a key that does not exist.
ScopedKey OpenForReading(HKEY root, const std::wstring& path, REGSAM view) {
  ScopedKey key = OpenRegistryKey(root, path, view | KEY_READ);
  if (!key && !IsMissing(static_cast<LSTATUS>(GetLastError()))) RaiseLastOSError();
  return key;
}

// Opened for one recorded change.
class RecordedKey {
 public:
  explicit RecordedKey(const RegistryValueAddress& address) : registry_(&DLLGlobals::Safeguard()) {
    registry_.SetRootKey(address.root);
    registry_.SetAccess(address.viewBits | KEY_ALL_ACCESS);
  }
  ~RecordedKey() { registry_.CloseKey(); }
  RecordedKey(const RecordedKey&) = delete;
  RecordedKey& operator=(const RecordedKey&) = delete;
  TSgRegistryEx* operator->() noexcept { return &registry_; }

 private:
  TSgRegistryEx registry_;
};

void WriteValue(bool recorded, const RegistryValueAddress& address, const RegistryData& data) {
  const auto size = static_cast<DWORD>(data.bytes.size());
  if (recorded) {
    RecordedKey key(address);
    // A failed open is not told apart: reading back shows that nothing arrived.
    key->OpenKey(address.key, true);
    key->PutData(address.valueName, data.bytes.data(),
                 data.type == REG_EXPAND_SZ ? SgDataKind::kExpandString : SgDataKind::kString, size);
    return;
  }
  ScopedKey key;
  CheckStatus(RegCreateKeyExW(address.root, address.key.c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE,
                              address.viewBits | KEY_ALL_ACCESS, nullptr, key.Put(), nullptr));
  CheckStatus(RegSetValueExW(key.Get(), address.valueName.c_str(), 0, data.type,
                             reinterpret_cast<const BYTE*>(data.bytes.data()), size));
}

// The default value of a subkey.
RegistryValueAddress DefaultValueOf(RegistryValueAddress address) {
  address.valueName.clear();
  return address;
}

}  // namespace

RegistryValueAddress AddressOf(const TStartupItem& item) {
  return item.Get([](const ItemState& state) { return state.address; });
}

bool IsKeyWritable(HKEY root, const std::wstring& path, REGSAM view) noexcept {
  return static_cast<bool>(OpenRegistryKey(root, path, view | KEY_ALL_ACCESS));
}

bool EntryStore::WriteData(bool recorded, const RegistryValueAddress& address,
                           const RegistryData& data) const {
  Write(recorded, address, data);
  return Read(address) == data;
}

bool EntryStore::WriteConfirmed(const RegistryValueAddress& address, const std::wstring& text) const {
  return WriteData(recorded_, address, StringData(text));
}

bool EntryStore::DeleteConfirmed(const RegistryValueAddress& address) const {
  Delete(address);
  return !Read(address).has_value();
}

bool EntryStore::RestoreConfirmed(const RegistryValueAddress& address, const RegistryData& data) const {
  return WriteData(recorded_, address, data) || (recorded_ && WriteData(false, address, data));
}

std::optional<RegistryData> ValueStore::Read(const RegistryValueAddress& address) const {
  const ScopedKey key = OpenForReading(address.root, address.key, address.viewBits);
  if (!key) return std::nullopt;
  return QueryRegistryValue(key.Get(), address.valueName);
}

void ValueStore::Write(bool recorded, const RegistryValueAddress& address, const RegistryData& data) const {
  WriteValue(recorded, address, data);
}

void ValueStore::Delete(const RegistryValueAddress& address) const {
  if (IsRecorded()) {
    RecordedKey key(address);
    if (!key->KeyExists(address.key)) return;
    key->OpenKey(address.key, false);
    if (key->ValueExists(address.valueName)) key->DeleteValue(address.valueName);
    return;
  }
  ScopedKey key;
  const LSTATUS opened =
      RegOpenKeyExW(address.root, address.key.c_str(), 0, address.viewBits | KEY_ALL_ACCESS, key.Put());
  if (IsMissing(opened)) return;
  CheckStatus(opened);
  const LSTATUS deleted = RegDeleteValueW(key.Get(), address.valueName.c_str());
  if (deleted != ERROR_FILE_NOT_FOUND) CheckStatus(deleted);
}

std::optional<RegistryData> SubkeyStore::Read(const RegistryValueAddress& address) const {
  const ScopedKey key = OpenForReading(address.root, address.key, address.viewBits);
  if (!key) return std::nullopt;
  return QueryRegistryValue(key.Get(), {}).value_or(RegistryData{});
}

void SubkeyStore::Write(bool recorded, const RegistryValueAddress& address, const RegistryData& data) const {
  WriteValue(recorded, DefaultValueOf(address), data);
}

void SubkeyStore::Delete(const RegistryValueAddress& address) const {
  if (IsRecorded()) {
    RecordedKey key(address);
    if (key->KeyExists(address.key)) key->DeleteKey(address.key);
    return;
  }
  TRegistry registry(address.viewBits | KEY_ALL_ACCESS);
  registry.SetRootKey(address.root);
  if (!registry.DeleteKey(address.key) && !IsMissing(static_cast<LSTATUS>(GetLastError())))
    RaiseLastOSError();
}

RegistryData ReadSource(const EntryStore& store, const RegistryValueAddress& address) {
  std::optional<RegistryData> data = store.Read(address);
  if (!data) RaiseOSError(ERROR_FILE_NOT_FOUND);
  return *std::move(data);
}

RegistryData ReadTextSource(const EntryStore& store, const RegistryValueAddress& address) {
  RegistryData data = ReadSource(store, address);
  if (!data.IsText()) RaiseInvalidDataType(address.valueName);
  return data;
}

std::wstring UniqueValueName(const RegistryValueAddress& wanted, bool bothViews) {
  ScopedKey keys[2] = {OpenForReading(wanted.root, wanted.key, wanted.viewBits), ScopedKey()};
  if (bothViews) keys[1] = OpenForReading(wanted.root, wanted.key, 0);
  std::wstring name = wanted.valueName;
  const auto isTaken = [&](const ScopedKey& key) {
    return key &&
           RegQueryValueExW(key.Get(), name.c_str(), nullptr, nullptr, nullptr, nullptr) == ERROR_SUCCESS;
  };
  for (int number = 1; isTaken(keys[0]) || isTaken(keys[1]); ++number) {
    name = Format(L"%s (%d)", wanted.valueName, number);
  }
  return name;
}

bool IsPlainTwin(const EntryStore& store, const RegistryValueAddress& source, const RegistryData& data) {
  if (source.viewBits != KEY_WOW64_64KEY) return false;
  const std::optional<RegistryData> plain = store.Read(PlainView(source));
  return !plain.has_value() || *plain == data;
}

namespace {

// One move: the views it works in, and how far it got.
class RunningMove {
 public:
  RunningMove(const EntryStore& store, const EntryMove& move) : store_(store), text_(move.text) {
    AddStep(move.from, move.to);
    if (move.twin) AddStep(PlainView(move.from), PlainView(move.to));
  }

  bool Run() {
    try {
      if (WriteTargets() && DeleteSources()) return true;
      return TakeBack();
    } catch (...) {
      TakeBackQuietly();
      throw;
    }
  }

 private:
  struct Step {
    RegistryValueAddress from;
    RegistryValueAddress to;
    // What stood at both ends.
    std::optional<RegistryData> source;
    std::optional<RegistryData> target;
    bool targetTouched = false;
    bool sourceTouched = false;
  };

  void AddStep(const RegistryValueAddress& from, const RegistryValueAddress& to) {
    steps_.push_back({from, to, store_.Read(from), store_.Read(to)});
  }

  bool WriteTargets() {
    for (Step& step : steps_) {
      step.targetTouched = true;
      if (!store_.WriteConfirmed(step.to, text_)) return false;
    }
    return true;
  }

  bool DeleteSources() {
    for (Step& step : steps_) {
      step.sourceTouched = true;
      if (!store_.DeleteConfirmed(step.from)) return false;
    }
    return true;
  }

  // First every source is back, then the targets go: the two views may show the same entry. A source that
  // does not come back keeps all targets, and answers that the entry moved.
  bool TakeBack() {
    for (auto step = steps_.rbegin(); step != steps_.rend(); ++step) {
      if (!step->sourceTouched || !step->source || store_.Read(step->from) == step->source) continue;
      if (!store_.RestoreConfirmed(step->from, *step->source)) return true;
    }
    for (auto step = steps_.rbegin(); step != steps_.rend(); ++step) {
      if (!step->targetTouched) continue;
      if (step->target) {
        store_.RestoreConfirmed(step->to, *step->target);
      } else {
        store_.Delete(step->to);
      }
    }
    return false;
  }

  void TakeBackQuietly() noexcept {
    try {
      TakeBack();
    } catch (...) {
      // The first failure is the one to report.
    }
  }

  const EntryStore& store_;
  const std::wstring text_;
  std::vector<Step> steps_;
};

}  // namespace

bool MoveEntry(const EntryStore& store, const EntryMove& move) {
  return RunningMove(store, move).Run();
}

bool DeleteEntry(const EntryStore& store, const RegistryValueAddress& address, bool& complete) {
  const std::optional<RegistryData> data = store.Read(address);
  const bool twin = data.has_value() && IsPlainTwin(store, address, *data);
  complete = store.DeleteConfirmed(address);
  if (!complete) return false;
  // A twin that stays is an entry of its own from now on; the next load lists it.
  if (twin) complete = store.DeleteConfirmed(PlainView(address));
  return true;
}

}  // namespace smh
