#include "guardkit/safeguard.h"

#include <utility>

#include "common/guard.h"
#include "guardkit/checkpoints.h"
#include "guardkit/file_changes.h"

namespace smh {

namespace {

Checkpoints* checkpoints = nullptr;

}  // namespace

HRESULT Safeguard::GetRegAccess(IRegAccess** access) {
  return AnswerService(access, regAccess_);
}

LSTATUS Safeguard::BeginCheckpoint(const wchar_t* title) {
  return ValueOr<LSTATUS>(ERROR_OUTOFMEMORY, [&]() -> LSTATUS {
    checkpoints->Begin(TextArgument(title));
    return ERROR_SUCCESS;
  });
}

LSTATUS Safeguard::EndCheckpoint() {
  return checkpoints->End() ? ERROR_SUCCESS : ERROR_INVALID_FUNCTION;
}

LSTATUS Safeguard::MoveRecordedFile(const wchar_t* from, const wchar_t* to) {
  return MoveFileNew(from, to);
}

LSTATUS Safeguard::DeleteRecordedFile(const wchar_t* file) {
  return RemoveFile(file);
}

LSTATUS Safeguard::CopyRecordedFile(const wchar_t* from, const wchar_t* to, BOOL overwrite) {
  return CopyFileTo(from, to, (overwrite & 0xFF) != 0);
}

void StartCheckpoints() {
  checkpoints = new Checkpoints;
}

void StopCheckpoints() noexcept {
  delete std::exchange(checkpoints, nullptr);
}

}  // namespace smh
