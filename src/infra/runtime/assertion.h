// Assertions guard operations that a caller must not make in the present state. They are on in every build.
#pragma once

#include "infra/runtime/exceptions.h"
#include "infra/runtime/format.h"

namespace smh {

// Raises EAssertionFailed "Assertion failure (uUnit, line N)". Any thread.
[[noreturn]] inline void RaiseAssertion(std::wstring_view unit, int line) {
  throw EAssertionFailed(Format(L"Assertion failure (%s, line %d)", unit, line));
}

}  // namespace smh

// The same when the condition does not hold.
#define SMH_ASSERT(unit, condition)                          \
  do {                                                       \
    if (!(condition)) ::smh::RaiseAssertion(unit, __LINE__); \
  } while (false)
