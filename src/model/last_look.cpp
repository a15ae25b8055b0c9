#include "model/last_look.h"

#include "core/contracts/uDllGlobals.h"
#include "infra/runtime/exceptions.h"
#include "model/change_refused.h"

namespace smh {

void RequireStill(const LastLook& look) {
  if (!look()) RaiseChangedMeanwhile();
}

ScopedLook::ScopedLook(const LastLook& look) : look_(look) {
  CheckStatus(DLLGlobals::Safeguard().SetChangeCheck(this));
}

ScopedLook::~ScopedLook() {
  DLLGlobals::Safeguard().SetChangeCheck(nullptr);
}

LSTATUS ScopedLook::Check() {
  try {
    if (look_()) return ERROR_SUCCESS;
  } catch (const EOSError& error) {
    // Who has it open will have looked at it soon.
    if (error.Code() == ERROR_SHARING_VIOLATION) return ERROR_SHARING_VIOLATION;
  } catch (...) {
    // What cannot be looked at is not what it was.
  }
  hasRefused_ = true;
  return ERROR_REVISION_MISMATCH;
}

void ScopedLook::RequireKept() const {
  if (hasRefused_) RaiseChangedMeanwhile();
}

}  // namespace smh
