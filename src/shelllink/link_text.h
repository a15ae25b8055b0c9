// Texts of a link and of the shell as the system's UTF-16 strings.
#pragma once

#include "shelllink/format/stored_text.h"

#include <string>

namespace smh {

// From the system code page.
std::wstring WidenAnsi(std::string_view text);
std::wstring ToWide(const StoredText& text);

}  // namespace smh
