// What the process of a host must not do: load a library from wherever it was started, and ask in boxes that
// nobody sees, which would hold a script for ever.
#pragma once

#include <windows.h>

namespace smh {

// Takes the current folder out of the search for libraries, and makes critical disk errors fail instead of
// asking. For the whole process: call it once, before anything else is loaded.
void SetUpHostProcess() noexcept;

// While an object lives, every creation of a window of the system's dialog class on its thread fails, and the
// function that would show the dialog returns at once. Made and destroyed by the same thread. When the hook
// cannot be set, dialogs open as usual.
class DialogBlocker {
 public:
  // Begins to refuse, and forgets what was refused before. May be nested.
  DialogBlocker() noexcept;
  ~DialogBlocker();
  DialogBlocker(const DialogBlocker&) = delete;
  DialogBlocker& operator=(const DialogBlocker&) = delete;

  // Whether a dialog was kept from opening since the beginning of the latest blocker. Of the calling thread;
  // still readable after that blocker is gone.
  static bool HasRefused() noexcept;

 private:
  HHOOK hook_;
};

}  // namespace smh
