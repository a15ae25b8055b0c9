// What keys mean in the main window before its table of keys is asked. For the window's thread.
#pragma once

#include <windows.h>

namespace smh {

// Where keys lead to; all are controls of the main window.
struct KeyTargets {
  HWND window;  // the main window
  HWND search;
  HWND tree;
  HWND main;  // the main control of the view that is shown
};

// Who is next with a message.
enum class KeyTurn {
  kCommands,  // the table of keys, then the control
  kControl,   // the control only: the key has a meaning of its own in an edit field
  kNobody     // it is done
};

// Does what leads from pane to pane without a command: Esc back to the view, Enter and the down arrow key out
// of the search box, Enter out of the tree. Has the system show focus rectangles from the first such key on.
KeyTurn TakeKey(const MSG& message, const KeyTargets& targets);

// Whether the command, CMD_COPY or CMD_SELECT_ALL, means the edit field that has the focus: one without a
// selection has nothing to copy. RunInEdit does it then.
bool MeansEdit(UINT command);
void RunInEdit(UINT command);

}  // namespace smh
