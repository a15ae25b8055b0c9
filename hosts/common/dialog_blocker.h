// Keeps dialogs of this thread from opening: a message box that nobody sees would hold a script for ever.
#pragma once

#include <windows.h>

namespace smh {

class DialogBlocker {
 public:
  DialogBlocker() noexcept;
  ~DialogBlocker();
  DialogBlocker(const DialogBlocker&) = delete;
  DialogBlocker& operator=(const DialogBlocker&) = delete;

  // Whether a dialog was kept from opening since the beginning of the latest blocker.
  static bool HasRefused() noexcept;

 private:
  HHOOK hook_;
};

}  // namespace smh
