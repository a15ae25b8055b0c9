#include "siblings/guardkit/registry_changes.h"

#include "infra/registry/registry_tree.h"
#include "infra/registry/registry_values.h"
#include "infra/runtime/exceptions.h"
#include "siblings/guardkit/format/state_content.h"
#include "siblings/guardkit/registry_place.h"
#include "siblings/guardkit/registry_state.h"

namespace smh {

namespace {

std::vector<std::wstring> LevelsOf(const std::wstring& path) {
  std::vector<std::wstring> levels;
  for (std::size_t at = 0; at < path.size();) {
    const std::size_t end = std::min(path.find(L'\\', at), path.size());
    if (end > at) levels.push_back(path.substr(at, end - at));
    at = end + 1;
  }
  return levels;
}

bool HasSubKeys(HKEY key) {
  DWORD count = 0;
  CheckStatus(RegQueryInfoKeyW(key, nullptr, nullptr, nullptr, &count, nullptr, nullptr, nullptr, nullptr,
                               nullptr, nullptr, nullptr));
  return count != 0;
}

template <typename State>
bool IsExpected(const State& found, const State* expected) {
  return expected == nullptr || SameContent(found, *expected);
}

bool IsMissing(HKEY parent, const std::wstring& level, REGSAM viewBits) noexcept {
  ScopedKey key;
  return RegOpenKeyExW(parent, level.c_str(), 0, viewBits | KEY_QUERY_VALUE, key.Put()) ==
         ERROR_FILE_NOT_FOUND;
}

// The call itself tells whether somebody else made the key meanwhile: it is that one's then.
LSTATUS MakeLevel(HKEY parent, const std::wstring& level, REGSAM access, const std::wstring& className,
                  HKEY* key) noexcept {
  DWORD disposition = 0;
  const LSTATUS status = RegCreateKeyExW(parent, level.c_str(), 0, const_cast<wchar_t*>(className.c_str()),
                                         REG_OPTION_NON_VOLATILE, access, nullptr, key, &disposition);
  if (status != ERROR_SUCCESS || disposition == REG_CREATED_NEW_KEY) return status;
  RegCloseKey(*key);
  *key = nullptr;
  return ERROR_REVISION_MISMATCH;
}

}  // namespace

LSTATUS SetValueRecorded(OpenCheckpoint& checkpoint, HKEY key, const std::wstring& name,
                         const ValueState& value, const ValueState* expected) {
  const ValueStep step{PlaceOf(key), name, ReadValueState(key, name), value};
  if (step.before == value) return ERROR_SUCCESS;
  if (!IsExpected(step.before, expected)) return ERROR_REVISION_MISMATCH;
  const LSTATUS status = checkpoint.Record(
      step, [&] { return ReadValueState(key, name) == step.before; },
      [&] { return WriteValue(key, name, value); });
  if (status == ERROR_SUCCESS) checkpoint.NoteWrite(step.key);
  return status;
}

LSTATUS DeleteValueRecorded(OpenCheckpoint& checkpoint, HKEY key, const std::wstring& name,
                            const ValueState* expected) {
  const ValueStep step{PlaceOf(key), name, ReadValueState(key, name), {}};
  if (!step.before.exists) return ERROR_FILE_NOT_FOUND;
  if (!IsExpected(step.before, expected)) return ERROR_REVISION_MISMATCH;
  checkpoint.FlushBeforeDelete(step.key);
  return checkpoint.Record(
      step, [&] { return ReadValueState(key, name) == step.before; }, [&] { return RemoveValue(key, name); });
}

LSTATUS CreateLevelRecorded(OpenCheckpoint& checkpoint, HKEY parent, const std::wstring& level, REGSAM access,
                            const KeyState& like, HKEY* key) {
  const REGSAM viewBits = access & kViewBits;
  if (IsRegistryLink(parent, level, viewBits)) return ERROR_NOT_SUPPORTED;
  KeyStep step;
  step.key = PlaceOf(parent) + L'\\' + level;
  step.after.exists = true;
  step.after.className = like.className;
  const LSTATUS status = checkpoint.Record(
      step, [&] { return IsMissing(parent, level, viewBits); },
      [&] { return MakeLevel(parent, level, access, step.after.className, key); });
  if (status == ERROR_SUCCESS) checkpoint.NoteWrite(step.key);
  return status;
}

LSTATUS CreateKeyRecorded(OpenCheckpoint& checkpoint, HKEY parent, const std::wstring& path, REGSAM access,
                          HKEY* key) {
  const std::vector<std::wstring> levels = LevelsOf(path);
  if (levels.empty()) return ERROR_BAD_PATHNAME;
  const REGSAM onTheWay = (access & kViewBits) | KEY_QUERY_VALUE | KEY_CREATE_SUB_KEY;
  ScopedKey current;
  for (std::size_t i = 0; i < levels.size(); ++i) {
    const HKEY base = i == 0 ? parent : current.Get();
    const REGSAM wanted = i + 1 == levels.size() ? access : onTheWay;
    ScopedKey next;
    // What exists on the way needs to be looked into only; the level that is made next asks for more.
    LSTATUS status = RegOpenKeyExW(base, levels[i].c_str(), 0, wanted, next.Put());
    if (status == ERROR_ACCESS_DENIED && i + 1 < levels.size()) {
      status = RegOpenKeyExW(base, levels[i].c_str(), 0, (access & kViewBits) | KEY_QUERY_VALUE, next.Put());
    }
    if (status == ERROR_FILE_NOT_FOUND) {
      status = CreateLevelRecorded(checkpoint, base, levels[i], wanted, {}, next.Put());
    }
    if (status != ERROR_SUCCESS) return status;
    current = std::move(next);
  }
  *key = current.Release();
  return ERROR_SUCCESS;
}

LSTATUS DeleteKeyRecorded(OpenCheckpoint& checkpoint, HKEY parent, const std::wstring& path, REGSAM viewBits,
                          const KeyState* expected) {
  if (IsRegistryLink(parent, path, viewBits)) return ERROR_NOT_SUPPORTED;
  KeyStep step;
  {
    ScopedKey key;
    const LSTATUS status = RegOpenKeyExW(parent, path.c_str(), 0, viewBits | KEY_READ, key.Put());
    if (status != ERROR_SUCCESS) return status;
    if (HasSubKeys(key.Get())) return ERROR_ACCESS_DENIED;
    step.key = PlaceOf(key.Get());
    step.before = ReadKeyState(key.Get());
  }
  if (!IsExpected(step.before, expected)) return ERROR_REVISION_MISMATCH;
  checkpoint.FlushBeforeDelete(step.key);
  const auto isStill = [&] {
    const ScopedKey key = OpenRegistryKey(parent, path, viewBits | KEY_READ);
    return key && !IsRegistryLink(parent, path, viewBits) && PlaceOf(key.Get()) == step.key &&
           !HasSubKeys(key.Get()) && ReadKeyState(key.Get()) == step.before;
  };
  return checkpoint.Record(step, isStill, [&] { return RegDeleteKeyExW(parent, path.c_str(), viewBits, 0); });
}

}  // namespace smh
