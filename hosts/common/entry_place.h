// What stands at the place of an entry: asked of the registry or the disk itself, past the library, so that a
// host sees with its own eyes whether a change came about. Any thread; no lock.
#pragma once

#include "hosts/common/item_record.h"

namespace smh {

// What is found where an entry lies.
enum class Standing {
  kNothing,
  kSame,   // the entry: its value with its command, its key, its file
  kOther,  // a value of its name with another text
};

// Looks at the place that the record names. Raises HostError or EOSError when it cannot be looked at.
Standing LookAtPlace(const ItemRecord& item);
// The place of a value that is to be added to a registry location: root, view, key and value, the rest empty.
ItemRecord PlaceOfNewValue(std::int32_t location, const std::wstring& name);

}  // namespace smh
