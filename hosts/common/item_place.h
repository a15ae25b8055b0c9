// Where an entry lives, as its name tells it.
#pragma once

#include "hosts/common/item_record.h"

#include <string>
#include <utility>
#include <vector>

namespace smh {

// Names and texts for people: root, view, key and value of a registry entry (the 64-bit or the 32-bit view of
// the registry, "(Default)" for the value without a name), the file of any other.
std::vector<std::pair<std::wstring, std::wstring>> ItemPlace(const ItemRecord& item);

}  // namespace smh
