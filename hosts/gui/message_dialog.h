// Boxes that tell or ask something, in the colours of the window. For the window's thread.
#pragma once

#include <windows.h>

#include <string>

namespace smh {

struct Message {
  std::wstring title;
  std::wstring text;
  const wchar_t* icon = IDI_INFORMATION;  // IDI_ERROR, IDI_QUESTION and so on
  // What the user may agree to, as a verb: "Delete 3 entries". Empty when there is nothing to choose.
  std::wstring verb;
};

// Modal to `owner`. With a verb there are two buttons, and Cancel is what Enter presses: true when the user
// chose the verb. Without one the only button says Close, and the answer is false. Ctrl+C copies the text.
// False, too, when no box could be made.
bool ShowMessage(HWND owner, const Message& message);

}  // namespace smh
