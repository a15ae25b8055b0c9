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

void CheckRemoved(LSTATUS status) {
  if (status != ERROR_FILE_NOT_FOUND) CheckStatus(status);
}

// What stands in the way of a move, aside until the move is done: when that fails it is put back.
class MadeRoom {
 public:
  MadeRoom(OpenCheckpoint& checkpoint, const std::wstring& path) : checkpoint_(checkpoint), path_(path) {
    if (!Exists(path)) return;
    state_ = ReadFileState(path);
    CheckRemoved(DeleteRecorded(checkpoint, path, ReadOnly::kDeleted));
  }
  ~MadeRoom() {
    if (state_.exists) PutBack();
  }
  MadeRoom(const MadeRoom&) = delete;
  MadeRoom& operator=(const MadeRoom&) = delete;

  // The move is done.
  void Keep() noexcept { state_.exists = false; }

 private:
  void PutBack() noexcept {
    try {
      checkpoint_.Aside().PutBack(path_, state_, false);
    } catch (...) {
      // It was recorded: undoing the undo brings it back.
    }
  }

  OpenCheckpoint& checkpoint_;
  const std::wstring& path_;
  FileState state_;
};

bool IsEmpty(HKEY key) {
  DWORD keys = 0;
  DWORD values = 0;
  CheckStatus(RegQueryInfoKeyW(key, nullptr, nullptr, nullptr, &keys, nullptr, nullptr, &values, nullptr,
                               nullptr, nullptr, nullptr));
  return keys == 0 && values == 0;
}

struct Undoer {
  OpenCheckpoint& checkpoint;
  bool forced;

  // What has to stand there; anything when forced.
  template <typename State>
  const State* Expected(const State& after) const noexcept {
    return forced ? nullptr : &after;
  }
  StepOutcome Usual() const noexcept { return forced ? StepOutcome::kOverwritten : StepOutcome::kUndo; }

  StepOutcome operator()(const ValueStep& step) const {
    constexpr REGSAM kAccess = KEY_QUERY_VALUE | KEY_SET_VALUE;
    if (step.before.exists) {
      const ScopedKey key = MakePlace(checkpoint, step.key, kAccess);
      CheckStatus(SetValueRecorded(checkpoint, key.Get(), step.name, step.before, Expected(step.after)));
    } else if (const ScopedKey key = OpenPlace(step.key, kAccess)) {
      CheckRemoved(DeleteValueRecorded(checkpoint, key.Get(), step.name, Expected(step.after)));
    }
    return Usual();
  }

  StepOutcome operator()(const KeyStep& step) const {
    if (!step.before.exists) return RemoveMadeKey(step.key);
    bool made = false;
    const ScopedKey key = MakePlace(checkpoint, step.key, KEY_ALL_ACCESS, step.before, &made);
    // What can be brought back is, whatever cannot.
    LSTATUS status = ERROR_SUCCESS;
    const auto note = [&status](LSTATUS answer) {
      if (status == ERROR_SUCCESS) status = answer;
    };
    const ValueState missing;
    for (const NamedValue& value : step.before.values) {
      note(SetValueRecorded(checkpoint, key.Get(), value.name, {true, value.type, value.data},
                            Expected(missing)));
    }
    if (made) note(ApplyKeySecurity(key.Get(), step.before.security));
    CheckStatus(status);
    return Usual();
  }

  StepOutcome operator()(const FileStep& step) const {
    if (step.before.exists) {
      const HeldPath held(FolderOf(step.path), true);
      CheckStatus(MakeRecorded(checkpoint, step.path, step.before, true, Expected(step.after)));
    } else {
      const HeldPath held(FolderOf(step.path));
      CheckRemoved(DeleteRecorded(checkpoint, step.path, ReadOnly::kDeleted, Expected(step.after)));
    }
    return Usual();
  }

  StepOutcome operator()(const MoveStep& step) const {
    if (!Exists(step.to)) {
      // Nothing is left to move, but it may be back already.
      if (ReadFileState(step.from).streams == step.file.streams) return StepOutcome::kNothing;
      if (!forced) RaiseOSError(ERROR_REVISION_MISMATCH);
      return StepOutcome::kImpossible;
    }
    const HeldPath heldFrom(FolderOf(step.from), true);
    const HeldPath heldTo(FolderOf(step.to));
    if (!forced && Exists(step.from)) RaiseOSError(ERROR_REVISION_MISMATCH);
    MadeRoom room(checkpoint, step.from);
    CheckStatus(MoveRecorded(checkpoint, step.to, step.from, Expected(step.file)));
    room.Keep();
    // The rights may have been changed for the other folder. They are no part of the content.
    if (ReadFileState(step.from).security != step.file.security)
      ApplyFileSecurity(step.from, step.file.security);
    return Usual();
  }

 private:
  StepOutcome RemoveMadeKey(const std::wstring& place) const {
    ScopedKey key = OpenPlace(place, KEY_READ);
    if (!key) return StepOutcome::kNothing;
    if (!IsEmpty(key.Get())) return StepOutcome::kKept;
    key.Reset();
    const ScopedKey parent = OpenPlace(ParentPlace(place), KEY_QUERY_VALUE);
    KeyState empty;
    empty.exists = true;
    CheckStatus(DeleteKeyRecorded(checkpoint, parent.Get(), LastLevel(place), KEY_WOW64_64KEY, &empty));
    return Usual();
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

StepOutcome UndoStep(OpenCheckpoint& checkpoint, const Step& step, bool isConflict) {
  return std::visit(Undoer{checkpoint, isConflict}, step);
}

bool OnlyBringsBack(const Step& step) {
  const auto isDeletion = [](const auto& change) { return change.before.exists && !change.after.exists; };
  if (const auto* const value = std::get_if<ValueStep>(&step)) return isDeletion(*value);
  if (const auto* const key = std::get_if<KeyStep>(&step)) return isDeletion(*key);
  if (const auto* const file = std::get_if<FileStep>(&step)) return isDeletion(*file);
  return true;
}

std::wstring DescribeUndo(const Step& step) {
  return std::visit(Describer(), step);
}

}  // namespace smh
