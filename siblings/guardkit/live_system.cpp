#include "siblings/guardkit/live_system.h"

#include "infra/runtime/exceptions.h"
#include "infra/runtime/text.h"
#include "siblings/guardkit/file_state.h"
#include "siblings/guardkit/held_path.h"
#include "siblings/guardkit/registry_place.h"
#include "siblings/guardkit/registry_state.h"

#include <optional>

namespace smh {

void LiveSystem::RequireOwn(const std::wstring& key) const {
  if (!IsOwnPlace(key, sid_)) RaiseOSError(ERROR_ACCESS_DENIED);
}

ValueState LiveSystem::Value(const std::wstring& key, const std::wstring& name) {
  RequireOwn(key);
  const ScopedKey opened = OpenPlace(key, KEY_QUERY_VALUE);
  return opened ? ReadValueState(opened.Get(), name) : ValueState{};
}

KeyState LiveSystem::Key(const std::wstring& key) {
  RequireOwn(key);
  const ScopedKey opened = OpenPlace(key, KEY_READ);
  return opened ? ReadKeyState(opened.Get()) : KeyState{};
}

FileState LiveSystem::File(const std::wstring& path) {
  std::optional<HeldPath> held;
  try {
    held.emplace(std::wstring(FolderPart(path)));
  } catch (const EOSError& error) {
    if (error.Code() == ERROR_PATH_NOT_FOUND) return {};
    throw;
  }
  return ReadFileState(path);
}

bool LiveSystem::SameName(std::wstring_view a, std::wstring_view b) {
  return SameText(a, b);
}

}  // namespace smh
