#include "locations/registry/value_changes.h"

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

void RecordedWrite(const RegistryValueAddress& address, const RegistryData& data) {
  TSgRegistryEx registry(&DLLGlobals::Safeguard());
  registry.SetRootKey(address.root);
  registry.SetAccess(address.viewBits | KEY_ALL_ACCESS);
  // A failed open is not told apart: reading back shows that nothing arrived.
  registry.OpenKey(address.key, true);
  registry.PutData(address.valueName, data.bytes.data(),
                   data.type == REG_EXPAND_SZ ? SgDataKind::kExpandString : SgDataKind::kString,
                   static_cast<DWORD>(data.bytes.size()));
  registry.CloseKey();
}

void RecordedDelete(const RegistryValueAddress& address) {
  TSgRegistryEx registry(&DLLGlobals::Safeguard());
  registry.SetRootKey(address.root);
  registry.SetAccess(address.viewBits | KEY_ALL_ACCESS);
  if (registry.KeyExists(address.key)) {
    registry.OpenKey(address.key, false);
    if (registry.ValueExists(address.valueName)) registry.DeleteValue(address.valueName);
  }
  registry.CloseKey();
}

void PlainWrite(const RegistryValueAddress& address, const RegistryData& data) {
  ScopedKey key;
  CheckStatus(RegCreateKeyExW(address.root, address.key.c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE,
                              address.viewBits | KEY_ALL_ACCESS, nullptr, key.Put(), nullptr));
  CheckStatus(RegSetValueExW(key.Get(), address.valueName.c_str(), 0, data.type,
                             reinterpret_cast<const BYTE*>(data.bytes.data()),
                             static_cast<DWORD>(data.bytes.size())));
}

void PlainDelete(const RegistryValueAddress& address) {
  ScopedKey key;
  const LSTATUS opened =
      RegOpenKeyExW(address.root, address.key.c_str(), 0, address.viewBits | KEY_ALL_ACCESS, key.Put());
  if (IsMissing(opened)) return;
  CheckStatus(opened);
  const LSTATUS deleted = RegDeleteValueW(key.Get(), address.valueName.c_str());
  if (deleted != ERROR_FILE_NOT_FOUND) CheckStatus(deleted);
}

}  // namespace

RegistryValueAddress AddressOf(const TStartupItem& item) {
  return item.Get([](const ItemState& state) { return state.address; });
}

std::optional<RegistryData> ReadValue(const RegistryValueAddress& address) {
  const ScopedKey key = OpenForReading(address.root, address.key, address.viewBits);
  if (!key) return std::nullopt;
  return QueryRegistryValue(key.Get(), address.valueName);
}

bool IsKeyWritable(HKEY root, const std::wstring& path, REGSAM view) noexcept {
  return static_cast<bool>(OpenRegistryKey(root, path, view | KEY_ALL_ACCESS));
}

RegistryData ReadSource(const RegistryValueAddress& address) {
  std::optional<RegistryData> data = ReadValue(address);
  if (!data) RaiseOSError(ERROR_FILE_NOT_FOUND);
  if (!data->IsText()) RaiseInvalidDataType(address.valueName);
  return *std::move(data);
}

void ValueWriter::Delete(const RegistryValueAddress& address) const {
  if (recorded_) {
    RecordedDelete(address);
  } else {
    PlainDelete(address);
  }
}

bool ValueWriter::WriteData(const RegistryValueAddress& address, const RegistryData& data) const {
  if (recorded_) {
    RecordedWrite(address, data);
  } else {
    PlainWrite(address, data);
  }
  return ReadValue(address) == data;
}

bool ValueWriter::WriteConfirmed(const RegistryValueAddress& address, const std::wstring& text) const {
  return WriteData(address, StringData(text));
}

bool ValueWriter::DeleteConfirmed(const RegistryValueAddress& address) const {
  Delete(address);
  return !ReadValue(address).has_value();
}

bool ValueWriter::RestoreConfirmed(const RegistryValueAddress& address, const RegistryData& data) const {
  if (WriteData(address, data)) return true;
  return recorded_ && ValueWriter(false).WriteData(address, data);
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

bool IsPlainTwin(const RegistryValueAddress& source, const RegistryData& data) {
  if (source.viewBits != KEY_WOW64_64KEY) return false;
  const std::optional<RegistryData> plain = ReadValue(PlainView(source));
  return !plain.has_value() || *plain == data;
}

namespace {

// One MoveValue: the views it works in, and how far it got.
class ValueMove {
 public:
  ValueMove(const ValueWriter& writer, const RegistryValueAddress& from, const RegistryValueAddress& to,
            bool twin)
      : writer_(writer), text_(ReadSource(from).Text()) {
    steps_.push_back({from, to, ReadValue(from)});
    if (twin) steps_.push_back({PlainView(from), PlainView(to), ReadValue(PlainView(from))});
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
    std::optional<RegistryData> source;
    bool targetTouched = false;
    bool sourceTouched = false;
  };

  bool WriteTargets() {
    for (Step& step : steps_) {
      step.targetTouched = true;
      if (!writer_.WriteConfirmed(step.to, text_)) return false;
    }
    return true;
  }

  bool DeleteSources() {
    for (Step& step : steps_) {
      step.sourceTouched = true;
      if (!writer_.DeleteConfirmed(step.from)) return false;
    }
    return true;
  }

  // First every source is back, then the targets go: the two views may show the same values. A source that
  // does not come back keeps all targets, and answers that the value moved.
  bool TakeBack() {
    for (auto step = steps_.rbegin(); step != steps_.rend(); ++step) {
      if (!step->sourceTouched || !step->source || ReadValue(step->from)) continue;
      if (!writer_.RestoreConfirmed(step->from, *step->source)) return true;
    }
    for (const Step& step : steps_) {
      if (step.targetTouched) writer_.Delete(step.to);
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

  const ValueWriter& writer_;
  const std::wstring text_;
  std::vector<Step> steps_;
};

}  // namespace

bool MoveValue(const ValueWriter& writer, const RegistryValueAddress& from, const RegistryValueAddress& to,
               bool twin) {
  return ValueMove(writer, from, to, twin).Run();
}

}  // namespace smh
