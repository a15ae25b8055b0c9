// The properties of an item as variants.
#pragma once

#include "core/contracts/StartupManagerHelper.h"
#include "model/uStartupItem.h"

namespace smh {

// VT_NULL for an unknown index. The caller owns the variant. Raises std::bad_alloc.
VARIANT ItemPropertyValue(const TStartupItem& item, std::int32_t index);

}  // namespace smh
