// The box in which the user chooses columns and their order, by keyboard or mouse. For the window's thread.
#pragma once

#include "hosts/gui/column_layout.h"

#include <windows.h>

#include <optional>

namespace smh {

// Modal above `owner`, whose messages are handled meanwhile. `layout` is what is shown now; a column that is
// new in the answer has its first width. None when the user has cancelled it.
std::optional<ColumnLayout> AskColumns(HWND owner, const ColumnLayout& layout);

}  // namespace smh
