// The properties that an item's details answer, as variants.
#pragma once

#include "model/item_details.h"

#include <windows.h>
#include <oaidl.h>

namespace smh {

// `index` is an ItemProperty; VT_NULL for one that the details do not hold. The caller clears the variant.
// Takes no lock. Raises std::bad_alloc.
VARIANT DetailPropertyValue(const ItemDetails& details, std::int32_t index);

}  // namespace smh
