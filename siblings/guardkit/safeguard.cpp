#include "siblings/guardkit/safeguard.h"

#include "core/contracts/boundary_call.h"
#include "core/contracts/boundary_string.h"
#include "infra/files/file_facts.h"
#include "infra/runtime/exceptions.h"
#include "siblings/guardkit/checkpoints.h"
#include "siblings/guardkit/copy_source.h"
#include "siblings/guardkit/file_changes.h"
#include "siblings/guardkit/undo_runner.h"

namespace smh {

namespace {

// As the system would take the name now: the journal is read from other current folders.
std::wstring FullPath(const wchar_t* path) {
  std::optional<std::wstring> full = FullPathOf(path);
  if (!full.has_value()) RaiseLastOSError();
  return *std::move(full);
}

}  // namespace

HRESULT Safeguard::GetRegAccess(IRegAccess** access) {
  return AnswerService(access, regAccess_);
}

LSTATUS Safeguard::BeginCheckpoint(const wchar_t* title) {
  return GuardedStatus([&]() -> LSTATUS {
    g_checkpoints->Begin(TextArgument(title));
    return ERROR_SUCCESS;
  });
}

LSTATUS Safeguard::EndCheckpoint() {
  return GuardedStatus(
      []() -> LSTATUS { return g_checkpoints->End() ? ERROR_SUCCESS : ERROR_INVALID_FUNCTION; });
}

LSTATUS Safeguard::MoveRecordedFile(const wchar_t* from, const wchar_t* to) {
  if (from == nullptr || to == nullptr) return ERROR_INVALID_PARAMETER;
  return GuardedStatus([&] {
    const ScopedRecording recording(*g_checkpoints);
    return MoveRecorded(*recording, FullPath(from), FullPath(to));
  });
}

LSTATUS Safeguard::DeleteRecordedFile(const wchar_t* file) {
  if (file == nullptr) return ERROR_INVALID_PARAMETER;
  return GuardedStatus([&] {
    const ScopedRecording recording(*g_checkpoints);
    return DeleteRecorded(*recording, FullPath(file));
  });
}

LSTATUS Safeguard::CopyRecordedFile(const wchar_t* from, const wchar_t* to, BOOL overwrite) {
  if (from == nullptr || to == nullptr) return ERROR_INVALID_PARAMETER;
  return GuardedStatus([&] {
    const ScopedRecording recording(*g_checkpoints);
    return CopyRecorded(*recording, FullPath(from), FullPath(to), (overwrite & 0xFF) != 0);
  });
}

LSTATUS Safeguard::FailCheckpoint() {
  return GuardedStatus([]() -> LSTATUS {
    OpenCheckpoint* const checkpoint = g_checkpoints->Current();
    return checkpoint == nullptr ? ERROR_INVALID_FUNCTION : TakeBack(*checkpoint);
  });
}

LSTATUS Safeguard::SetChangeCheck(IChangeCheck* check) {
  return GuardedStatus([check]() -> LSTATUS {
    OpenCheckpoint* const checkpoint = g_checkpoints->Current();
    if (checkpoint == nullptr) return ERROR_INVALID_FUNCTION;
    checkpoint->SetCheck(check);
    return ERROR_SUCCESS;
  });
}

LSTATUS Safeguard::SetSource(HKEY key, const wchar_t* name, const wchar_t* path) {
  return GuardedStatus([&]() -> LSTATUS {
    OpenCheckpoint* const checkpoint = g_checkpoints->Current();
    if (checkpoint == nullptr) return ERROR_INVALID_FUNCTION;
    std::optional<StepSource> source = StepSource();
    if (key != nullptr) {
      source = name != nullptr ? SourceAt(key, std::wstring(name)) : SourceAt(key);
    } else if (path != nullptr) {
      source = SourceAt(FullPath(path));
    }
    const bool isThere = source.has_value();
    checkpoint->SetSource(std::move(source).value_or(StepSource()));
    return isThere ? ERROR_SUCCESS : ERROR_FILE_NOT_FOUND;
  });
}

}  // namespace smh
