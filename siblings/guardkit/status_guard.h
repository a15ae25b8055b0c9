// The boundary of the slots that answer Win32 statuses: exceptions end here.
#pragma once

#include "infra/runtime/exceptions.h"

#include <new>
#include <utility>

namespace smh {

// What `call` answers, or the status that the exception which left it stands for: the code of an EOSError,
// ERROR_OUTOFMEMORY, or ERROR_INTERNAL_ERROR for any other.
template <typename Call>
LSTATUS GuardedStatus(Call&& call) noexcept {
  try {
    return std::forward<Call>(call)();
  } catch (const EOSError& error) {
    return static_cast<LSTATUS>(error.Code());
  } catch (const std::bad_alloc&) {
    return ERROR_OUTOFMEMORY;
  } catch (...) {
    return ERROR_INTERNAL_ERROR;
  }
}

}  // namespace smh
