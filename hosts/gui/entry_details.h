// Everything that is known about one entry, as the lines of the details. Pure but for the user's forms of
// dates; any thread.
#pragma once

#include "hosts/common/item_record.h"
#include "hosts/gui/visible_text.h"

#include <string>
#include <vector>

namespace smh {

// The name of a property, and its value as it is shown.
struct DetailLine {
  const wchar_t* name;
  VisibleText value;
};

// In the order of display; what is empty is left out. `file` is the program that the command starts.
std::vector<DetailLine> DetailsOf(const ItemRecord& item, const std::wstring& file);

}  // namespace smh
