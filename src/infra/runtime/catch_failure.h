// Cancellation passes: the one way to catch what may fail where work may also be cancelled.
#pragma once

#include "infra/runtime/exceptions.h"

#include <type_traits>

namespace smh {

// Runs `body` and answers what it answers. EAbort, which cancels the current work, passes; any other failure
// is given to `onFailure`, which is called inside the handler, so that it may log the exception in flight or
// raise it again (`throw;`), and whose answer then stands for the body's. From any thread.
template <typename Body, typename OnFailure>
auto CatchFailure(Body&& body, OnFailure&& onFailure) -> std::invoke_result_t<Body> {
  try {
    return body();
  } catch (const EAbort&) {
    throw;
  } catch (...) {
    return onFailure();
  }
}

}  // namespace smh
