// The boundary of a sibling: exceptions end here and become results.
#pragma once

#include "core/contracts/boundary_string.h"

#include <utility>

namespace smh {

// The result for the exception in flight; call it inside a catch handler.
HRESULT CurrentExceptionResult() noexcept;

// S_OK, or what the exception that left `call` stands for.
template <typename Call>
HRESULT Guarded(Call&& call) noexcept {
  try {
    std::forward<Call>(call)();
    return S_OK;
  } catch (...) {
    return CurrentExceptionResult();
  }
}

// Stores the text that `call` returns as a boundary string; the empty text on failure.
template <typename Call>
HRESULT AnswerText(BoundaryText* out, Call&& call) noexcept {
  if (out == nullptr) return E_POINTER;
  *out = nullptr;
  return Guarded([&] { *out = MakeBoundaryText(std::forward<Call>(call)()); });
}

// What `call` returns, or `neutral` when an exception leaves it.
template <typename Value, typename Call>
Value ValueOr(Value neutral, Call&& call) noexcept {
  try {
    return std::forward<Call>(call)();
  } catch (...) {
    return neutral;
  }
}

}  // namespace smh
