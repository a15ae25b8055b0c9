// The look that a change takes directly before it is made: whether what it is about to overwrite or delete
// still is what it was.
#pragma once

#include "core/contracts/intf_safeguard.h"

#include <functional>

namespace smh {

// Answers whether it is; may raise.
using LastLook = std::function<bool()>;

// Raises EChangeRefused when it is not.
void RequireStill(const LastLook& look);

// Has the backup service take the look, behind its own record of the change and directly before it; for the
// scope of one recorded change, on its thread.
class [[nodiscard]] ScopedLook final : public IChangeCheck {
 public:
  // Raises EOSError without a checkpoint.
  explicit ScopedLook(const LastLook& look);
  ~ScopedLook();
  ScopedLook(const ScopedLook&) = delete;
  ScopedLook& operator=(const ScopedLook&) = delete;

  LSTATUS STDMETHODCALLTYPE Check() override;
  // For after the change: raises EChangeRefused when the look has refused it.
  void RequireKept() const;

 private:
  const LastLook& look_;
  bool hasRefused_ = false;
};

}  // namespace smh
