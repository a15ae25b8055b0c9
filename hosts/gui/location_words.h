// What Windows does with the entries of a location, in a sentence. Any thread.
#pragma once

#include "hosts/gui/entry_details.h"
#include "hosts/gui/entry_rows.h"

#include <string>
#include <vector>

namespace smh {

// Holds for all of the locations; a literal.
const wchar_t* LocationSentence(const LocationSet& locations) noexcept;

// The lines of the details while no entry is selected: what is shown, named `title`, what that is, and the
// place of a single location.
std::vector<DetailLine> LocationLines(const LocationSet& locations, const std::wstring& title);

}  // namespace smh
