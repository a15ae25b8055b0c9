// Where an entry lives, as its name tells it.
#pragma once

#include "hosts/common/item_record.h"

#include <string>
#include <utility>
#include <vector>

namespace smh {

// Names and texts for people: "Root", "View", "Key" and "Value" of a registry entry ("64-bit" or "32-bit"
// view, "(Default)" for the value without a name), "File" of any other. Takes them from the record alone;
// nothing is looked up.
std::vector<std::pair<std::wstring, std::wstring>> ItemPlace(const ItemRecord& item);

}  // namespace smh
