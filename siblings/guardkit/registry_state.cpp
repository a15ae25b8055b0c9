#include "siblings/guardkit/registry_state.h"

#include "infra/registry/registry_values.h"
#include "infra/runtime/embedded_nul.h"
#include "infra/runtime/exceptions.h"
#include "siblings/guardkit/native_registry.h"
#include "siblings/guardkit/security_state.h"

namespace smh {

namespace {

// The system's limit for a value's name, in units; what the journal of another machine says may be longer.
constexpr std::size_t kLongestName = 16'383;

UNICODE_STRING Counted(const std::wstring& name) noexcept {
  const auto bytes = static_cast<USHORT>(name.size() * sizeof(wchar_t));
  return {bytes, bytes, const_cast<wchar_t*>(name.data())};
}

LSTATUS StatusOf(NTSTATUS status) noexcept {
  return status >= 0 ? ERROR_SUCCESS : static_cast<LSTATUS>(RtlNtStatusToDosError(status));
}

ByteVector ToBytes(std::span<const std::byte> data) {
  return ByteVector(data.begin(), data.end());
}

std::wstring ClassOf(HKEY key) {
  std::wstring name(64, L'\0');
  for (;;) {
    auto length = static_cast<DWORD>(name.size());
    const LSTATUS status = RegQueryInfoKeyW(key, name.data(), &length, nullptr, nullptr, nullptr, nullptr,
                                            nullptr, nullptr, nullptr, nullptr, nullptr);
    if (status == ERROR_MORE_DATA && name.size() < 0x10000) {
      name.resize(name.size() * 4);
      continue;
    }
    CheckStatus(status);
    name.resize(length);
    return name;
  }
}

ByteVector SecurityOf(HKEY key) {
  ByteVector security(512);
  for (;;) {
    auto size = static_cast<DWORD>(security.size());
    const LSTATUS status = RegGetKeySecurity(key, kKeptSecurity, security.data(), &size);
    if (status == ERROR_INSUFFICIENT_BUFFER && size > security.size()) {
      security.resize(size);
      continue;
    }
    CheckStatus(status);
    security.resize(size);
    return security;
  }
}

}  // namespace

ValueState ReadValueState(HKEY key, const std::wstring& name) {
  if (!HoldsNul(name)) {
    const std::optional<RegistryData> data = QueryRegistryValue(key, name);
    return data ? ValueState{true, data->type, data->bytes} : ValueState{};
  }
  RegistryValueReader values(key);
  while (values.Next()) {
    if (values.Name() == name) return {true, values.Type(), ToBytes(values.Data())};
  }
  return {};
}

KeyState ReadKeyState(HKEY key) {
  KeyState state;
  state.exists = true;
  state.className = ClassOf(key);
  state.security = SecurityOf(key);
  state.values = ReadValues(key);
  return state;
}

std::vector<NamedValue> ReadValues(HKEY key) {
  std::vector<NamedValue> all;
  RegistryValueReader values(key);
  while (values.Next()) {
    all.push_back({std::wstring(values.Name()), values.Type(), ToBytes(values.Data())});
  }
  return all;
}

LSTATUS WriteValue(HKEY key, const std::wstring& name, const ValueState& value) noexcept {
  if (name.size() > kLongestName) return ERROR_INVALID_PARAMETER;
  const auto size = static_cast<DWORD>(value.data.size());
  if (HoldsNul(name)) {
    UNICODE_STRING counted = Counted(name);
    return StatusOf(NtSetValueKey(key, &counted, 0, value.type, value.data.data(), size));
  }
  try {
    // The platform adds a NUL that it finds behind a text: there must be none, or other bytes get stored.
    ByteVector padded = value.data;
    padded.resize(padded.size() + 2 * sizeof(wchar_t), std::byte{0xFF});
    return RegSetValueExW(key, name.c_str(), 0, value.type, reinterpret_cast<const BYTE*>(padded.data()),
                          size);
  } catch (const std::bad_alloc&) {
    return ERROR_OUTOFMEMORY;
  }
}

LSTATUS RemoveValue(HKEY key, const std::wstring& name) noexcept {
  if (name.size() > kLongestName) return ERROR_INVALID_PARAMETER;
  if (!HoldsNul(name)) return RegDeleteValueW(key, name.c_str());
  UNICODE_STRING counted = Counted(name);
  return StatusOf(NtDeleteValueKey(key, &counted));
}

LSTATUS ApplyKeySecurity(HKEY key, const ByteVector& security) noexcept {
  return ApplySecurity(security, [key](SECURITY_INFORMATION parts, PSECURITY_DESCRIPTOR descriptor) {
    return static_cast<DWORD>(RegSetKeySecurity(key, parts, descriptor));
  });
}

}  // namespace smh
