// What IStartupItemFacts answers, as variants, which the caller clears.
#pragma once

#include "model/uStartupItem.h"

#include <windows.h>
#include <oaidl.h>

namespace smh {

// `index` is an ItemFact; VT_NULL for an unknown one and for one that does not apply. Takes the item's lock.
// Raises std::bad_alloc.
VARIANT ItemFactValue(const TStartupItem& item, std::int32_t index);
// The same of what is known of any program's file; takes no lock.
VARIANT DetailFactValue(const ItemDetails& details, std::int32_t index);

}  // namespace smh
