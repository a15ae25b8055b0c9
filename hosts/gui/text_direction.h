// The direction of a shown text where lines run from right to left. What is copied or searched never has the
// marks of it. Windows itself writes mirrored windows that way; the marks say it to every system. Any thread.
#pragma once

#include "hosts/gui/visible_text.h"

#include <string>

namespace smh {

// Where the language of the process runs from left to right, the text itself. Else in invisible marks that
// keep it together: a path, a command, a name and whatever else has no letter that runs from right to left is
// read as it was written; a text with such letters runs as a whole from right to left, `room` blanks in front
// of it included.
std::wstring Directed(const std::wstring& text, std::size_t room = 0);
// The same, with marks that stand for nothing.
VisibleText Directed(const VisibleText& text);

}  // namespace smh
