// Whether the strings in the items of an ID list end inside their items. The shell's folders read them up to
// their NUL, whatever the size of the item says.
//
// The layouts of the items are not published; these are the parts in which all Windows agree.
#pragma once

#include "infra/runtime/byte_cursor.h"

namespace smh {

// For a well-formed list (TLinkTargetIDList::IsWellFormed). False for an item whose strings do not end in it,
// or that is too short for what its kind always has; an item of an unknown kind must end with zeros, as then
// any string in it does. False too for items in the recycle bin, which have no such strings, and for a folder
// that is named by its identifier below another: shells fail over both. No state: any thread. Portable.
bool DoItemsHoldTheirStrings(Bytes list) noexcept;

}  // namespace smh
