#include "locations/registry/entry_changes.h"

#include "infra/runtime/exceptions.h"
#include "infra/runtime/format.h"

namespace smh {

namespace {

RegistryValueAddress PlainView(RegistryValueAddress address) {
  address.viewBits = 0;
  return address;
}

}  // namespace

RegistryValueAddress AddressOf(const TStartupItem& item) {
  return item.Get([](const ItemState& state) { return RegistryValueAddress(state.address); });
}

bool IsKeyWritable(HKEY root, const std::wstring& path, REGSAM view) noexcept {
  return static_cast<bool>(OpenRegistryKey(root, path, view | KEY_ALL_ACCESS));
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
    if (!key) return false;
    const LSTATUS status = RegQueryValueExW(key.Get(), name.c_str(), nullptr, nullptr, nullptr, nullptr);
    if (status != ERROR_FILE_NOT_FOUND) CheckStatus(status);
    return status == ERROR_SUCCESS;
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

// One change: the places that it writes and deletes, and how far it got.
class RunningChange {
 public:
  explicit RunningChange(const EntryStore& store) : store_(store) {}

  void AddTarget(const RegistryValueAddress& address) { targets_.push_back({address, store_.Keep(address)}); }
  void AddSource(const RegistryValueAddress& address) { sources_.push_back({address, store_.Keep(address)}); }

  // First every target is written with the text, then every source goes.
  bool Run(const std::wstring& text = {}) {
    try {
      if (WriteTargets(text) && DeleteSources()) return true;
      return TakeBack();
    } catch (...) {
      TakeBackQuietly();
      throw;
    }
  }

 private:
  struct Place {
    RegistryValueAddress address;
    // What stood there.
    KeptEntry kept;
    bool touched = false;
  };

  bool WriteTargets(const std::wstring& text) {
    for (Place& target : targets_) {
      target.touched = true;
      if (!store_.WriteConfirmed(target.address, text)) return false;
    }
    return true;
  }

  bool DeleteSources() {
    for (Place& source : sources_) {
      source.touched = true;
      if (!store_.DeleteConfirmed(source.address)) return false;
    }
    return true;
  }

  // First every source is back, then the targets go: the two views may show the same entry. A source that
  // does not come back keeps all targets, and answers that the change is done.
  bool TakeBack() {
    for (auto source = sources_.rbegin(); source != sources_.rend(); ++source) {
      if (source->touched && !store_.RestoreConfirmed(source->address, source->kept)) return true;
    }
    for (auto target = targets_.rbegin(); target != targets_.rend(); ++target) {
      if (target->touched) store_.RestoreConfirmed(target->address, target->kept);
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
  std::vector<Place> targets_;
  std::vector<Place> sources_;
};

}  // namespace

bool MoveEntry(const EntryStore& store, const EntryMove& move) {
  RunningChange change(store);
  change.AddTarget(move.to);
  change.AddSource(move.from);
  if (move.twin) {
    change.AddTarget(PlainView(move.to));
    change.AddSource(PlainView(move.from));
  }
  return change.Run(move.text);
}

bool WriteEntry(const EntryStore& store, const RegistryValueAddress& address, const std::wstring& text) {
  RunningChange change(store);
  change.AddTarget(address);
  return change.Run(text);
}

bool DeleteEntry(const EntryStore& store, const RegistryValueAddress& address) {
  RunningChange change(store);
  change.AddSource(address);
  return change.Run();
}

bool DeleteEntryAndTwin(const EntryStore& store, const RegistryValueAddress& address) {
  const std::optional<RegistryData> data = store.Read(address);
  RunningChange change(store);
  change.AddSource(address);
  if (data && IsPlainTwin(store, address, *data)) change.AddSource(PlainView(address));
  return change.Run();
}

}  // namespace smh
