#include "siblings/guardkit/live_system.h"

#include "infra/registry/registry_values.h"
#include "infra/runtime/exceptions.h"
#include "infra/runtime/text.h"
#include "siblings/guardkit/file_state.h"
#include "siblings/guardkit/native_registry.h"
#include "siblings/guardkit/registry_place.h"
#include "siblings/guardkit/registry_state.h"

namespace smh {

namespace {

// A key of which more single values are asked is read as a whole.
constexpr unsigned kSingleLooks = 16;
// How many keys, and folders, stay open at once.
constexpr std::size_t kMostOpen = 4096;

}  // namespace

void LiveSystem::RequireReach(const std::wstring& key) const {
  if (!reach_.CoversKey(key)) RaiseOSError(ERROR_ACCESS_DENIED);
}

ScopedKey LiveSystem::Open(const std::wstring& place, REGSAM access) {
  const std::wstring parent = ParentPlace(place);
  if (HiveOf(parent) == parent) return OpenPlace(place, access);
  const OpenedKey& above = Opened(parent);
  return above.key ? OpenLevel(above.key.Get(), LastLevel(place), access) : ScopedKey();
}

LiveSystem::OpenedKey& LiveSystem::Opened(const std::wstring& place) {
  const std::wstring name = Folded(place);
  const auto known = keys_.find(name);
  if (known != keys_.end()) return known->second;
  ScopedKey key = Open(place, KEY_QUERY_VALUE);
  if (keys_.size() >= kMostOpen) keys_.clear();
  return keys_.emplace(name, OpenedKey{.key = std::move(key)}).first->second;
}

ValueState LiveSystem::Value(const std::wstring& key, const std::wstring& name) {
  RequireReach(key);
  OpenedKey& opened = Opened(key);
  if (!opened.key) return {};
  if (!opened.values) {
    if (opened.asked++ < kSingleLooks) return ReadValueState(opened.key.Get(), name);
    opened.values.emplace();
    for (NamedValue& value : ReadValues(opened.key.Get())) {
      opened.values->emplace(Folded(value.name), ValueState{true, value.type, std::move(value.data)});
    }
  }
  const auto value = opened.values->find(Folded(name));
  return value == opened.values->end() ? ValueState{} : value->second;
}

KeyState LiveSystem::Key(const std::wstring& key) {
  RequireReach(key);
  const ScopedKey opened = Open(key, KEY_READ);
  return opened ? ReadKeyState(opened.Get()) : KeyState{};
}

FileState LiveSystem::File(const std::wstring& path) {
  if (!reach_.CoversFile(path)) RaiseOSError(ERROR_ACCESS_DENIED);
  const std::wstring folder(FolderPart(path));
  const std::wstring name = Folded(folder);
  auto held = folders_.find(name);
  if (held == folders_.end()) {
    std::optional<HeldPath> opened;
    try {
      opened.emplace(folder);
    } catch (const EOSError& error) {
      if (error.Code() != ERROR_PATH_NOT_FOUND) throw;
    }
    if (folders_.size() >= kMostOpen) folders_.clear();
    held = folders_.emplace(name, std::move(opened)).first;
  }
  return held->second ? ReadFileState(path) : FileState{};
}

// Unit by unit, by the table that the system compares names of files and registry keys by.
std::wstring LiveSystem::Folded(std::wstring_view name) {
  std::wstring folded(name);
  for (wchar_t& unit : folded) {
    if (unit >= L'a' && unit <= L'z') {
      unit = static_cast<wchar_t>(unit - L'a' + L'A');
    } else if (unit >= 0x80) {
      unit = RtlUpcaseUnicodeChar(unit);
    }
  }
  return folded;
}

}  // namespace smh
