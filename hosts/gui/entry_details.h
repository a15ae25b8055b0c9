// Everything that is known about one entry, as the lines of the details. Pure but for the user's forms of
// dates; any thread.
#pragma once

#include "hosts/common/item_record.h"

#include <string>
#include <utility>
#include <vector>

namespace smh {

// Names and texts in the order of display, made printable; what is empty is left out. `file` is the program
// that the command starts.
std::vector<std::pair<std::wstring, std::wstring>> DetailsOf(const ItemRecord& item,
                                                             const std::wstring& file);

}  // namespace smh
