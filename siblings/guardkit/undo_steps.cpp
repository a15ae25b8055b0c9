#include "siblings/guardkit/undo_steps.h"

#include "infra/files/file_facts.h"
#include "infra/runtime/exceptions.h"
#include "infra/runtime/format.h"
#include "infra/runtime/text.h"
#include "siblings/guardkit/file_changes.h"
#include "siblings/guardkit/held_path.h"
#include "siblings/guardkit/registry_changes.h"
#include "siblings/guardkit/registry_place.h"
#include "siblings/guardkit/registry_state.h"

#include <optional>

namespace smh {

namespace {

// Makes what is missing on the way; `made` says whether the last level was.
ScopedKey MakePlace(OpenCheckpoint& checkpoint, const std::wstring& place, REGSAM access,
                    const KeyState& like = {}, bool* made = nullptr) {
  ScopedKey key = OpenPlace(place, access);
  if (key) return key;
  if (!MayMakeKey(place)) RaiseOSError(ERROR_PATH_NOT_FOUND);
  const ScopedKey parent = MakePlace(checkpoint, ParentPlace(place), KEY_QUERY_VALUE | KEY_CREATE_SUB_KEY);
  CheckStatus(CreateLevelRecorded(checkpoint, parent.Get(), LastLevel(place), access | KEY_WOW64_64KEY, like,
                                  key.Put()));
  if (made != nullptr) *made = true;
  return key;
}

std::wstring FolderOf(const std::wstring& file) {
  return std::wstring(FolderPart(file));
}

void RemoveFile(OpenCheckpoint& checkpoint, const std::wstring& path) {
  const DWORD attributes = AttributesOf(path);
  // Recorded first as it is, the file would refuse to go.
  if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_READONLY) != 0) {
    SetFileAttributesW(path.c_str(), attributes & ~DWORD{FILE_ATTRIBUTE_READONLY});
  }
  const LSTATUS status = DeleteRecorded(checkpoint, path);
  if (status != ERROR_FILE_NOT_FOUND) CheckStatus(status);
}

bool IsEmpty(HKEY key) {
  DWORD keys = 0;
  DWORD values = 0;
  CheckStatus(RegQueryInfoKeyW(key, nullptr, nullptr, nullptr, &keys, nullptr, nullptr, &values, nullptr,
                               nullptr, nullptr, nullptr));
  return keys == 0 && values == 0;
}

struct Undoer {
  OpenCheckpoint& checkpoint;
  StepOutcome usual;  // undone, or overwritten

  StepOutcome operator()(const ValueStep& step) const {
    constexpr REGSAM kAccess = KEY_QUERY_VALUE | KEY_SET_VALUE;
    if (step.before.exists) {
      const ScopedKey key = MakePlace(checkpoint, step.key, kAccess);
      CheckStatus(SetValueRecorded(checkpoint, key.Get(), step.name, step.before));
    } else if (const ScopedKey key = OpenPlace(step.key, kAccess)) {
      const LSTATUS status = DeleteValueRecorded(checkpoint, key.Get(), step.name);
      if (status != ERROR_FILE_NOT_FOUND) CheckStatus(status);
    }
    return usual;
  }

  StepOutcome operator()(const KeyStep& step) const {
    if (!step.before.exists) return RemoveMadeKey(step.key);
    bool made = false;
    const ScopedKey key = MakePlace(checkpoint, step.key, KEY_ALL_ACCESS, step.before, &made);
    for (const NamedValue& value : step.before.values) {
      CheckStatus(SetValueRecorded(checkpoint, key.Get(), value.name, {true, value.type, value.data}));
    }
    if (made) CheckStatus(ApplyKeySecurity(key.Get(), step.before.security));
    return usual;
  }

  StepOutcome operator()(const FileStep& step) const {
    if (step.before.exists) {
      const HeldPath held(FolderOf(step.path), true);
      CheckStatus(MakeRecorded(checkpoint, step.path, step.before, true));
    } else {
      const HeldPath held(FolderOf(step.path));
      RemoveFile(checkpoint, step.path);
    }
    return usual;
  }

  StepOutcome operator()(const MoveStep& step) const {
    if (!Exists(step.to)) {
      // Forced: nothing is left to move, but it may be back already.
      return ReadFileState(step.from).streams == step.file.streams ? StepOutcome::kNothing
                                                                   : StepOutcome::kImpossible;
    }
    const HeldPath heldFrom(FolderOf(step.from), true);
    const HeldPath heldTo(FolderOf(step.to));
    if (Exists(step.from)) RemoveFile(checkpoint, step.from);
    CheckStatus(MoveRecorded(checkpoint, step.to, step.from));
    // The rights may have been changed for the other folder. They are no part of the content.
    if (ReadFileState(step.from).security != step.file.security)
      ApplyFileSecurity(step.from, step.file.security);
    return usual;
  }

 private:
  StepOutcome RemoveMadeKey(const std::wstring& place) const {
    ScopedKey key = OpenPlace(place, KEY_READ);
    if (!key) return StepOutcome::kNothing;
    if (!IsEmpty(key.Get())) return StepOutcome::kKept;
    key.Reset();
    const ScopedKey parent = OpenPlace(ParentPlace(place), KEY_QUERY_VALUE);
    CheckStatus(DeleteKeyRecorded(checkpoint, parent.Get(), LastLevel(place), KEY_WOW64_64KEY));
    return usual;
  }
};

struct Describer {
  std::wstring operator()(const ValueStep& step) const {
    const wchar_t* const format = !step.before.exists ? L"Delete the value \"%s\" of the key \"%s\""
                                  : step.after.exists
                                      ? L"Give the value \"%s\" of the key \"%s\" its old data"
                                      : L"Restore the value \"%s\" of the key \"%s\"";
    return Format(format, step.name, step.key);
  }
  std::wstring operator()(const KeyStep& step) const {
    return Format(step.before.exists ? L"Restore the key \"%s\"" : L"Remove the key \"%s\" if it is empty",
                  step.key);
  }
  std::wstring operator()(const FileStep& step) const {
    const wchar_t* const format = !step.before.exists ? L"Delete the file \"%s\""
                                  : step.after.exists ? L"Give the file \"%s\" its old content"
                                                      : L"Restore the file \"%s\"";
    return Format(format, step.path);
  }
  std::wstring operator()(const MoveStep& step) const {
    return Format(L"Move the file \"%s\" back to \"%s\"", step.to, step.from);
  }
};

}  // namespace

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
    held.emplace(FolderOf(path));
  } catch (const EOSError& error) {
    if (error.Code() == ERROR_PATH_NOT_FOUND) return {};
    throw;
  }
  return ReadFileState(path);
}

bool LiveSystem::SameName(std::wstring_view a, std::wstring_view b) {
  return SameText(a, b);
}

StepOutcome UndoStep(OpenCheckpoint& checkpoint, const Step& step, bool isConflict) {
  return std::visit(Undoer{checkpoint, isConflict ? StepOutcome::kOverwritten : StepOutcome::kUndo}, step);
}

std::wstring DescribeUndo(const Step& step) {
  return std::visit(Describer(), step);
}

}  // namespace smh
