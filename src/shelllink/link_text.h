// Texts of a link and of the shell as the system's UTF-16 strings.
#pragma once

#include "shelllink/format/section_view.h"

#include <string>

namespace smh {

// From the system code page; bytes that stand for no character give its replacement. Raises std::bad_alloc.
// Any thread.
std::wstring WidenAnsi(std::string_view text);
// In whichever encoding the text is stored. Raises std::bad_alloc. Any thread.
std::wstring ToWide(const StoredText& text);

}  // namespace smh
