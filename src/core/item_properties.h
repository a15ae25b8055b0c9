// The properties of an item as variants.
#pragma once

#include "core/contracts/StartupManagerHelper.h"
#include "model/uStartupItem.h"

namespace smh {

// `index` is an ItemProperty; VT_NULL for an unknown one. The caller clears the variant. Takes the item's
// lock, for any thread. Raises std::bad_alloc.
VARIANT ItemPropertyValue(const TStartupItem& item, std::int32_t index);

}  // namespace smh
