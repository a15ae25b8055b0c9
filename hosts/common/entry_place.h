// What stands at the place of an entry: asked of the registry or the disk itself, past the library, so that a
// host sees with its own eyes whether a change came about. No lock.
#pragma once

#include "hosts/common/item_record.h"
#include "infra/runtime/handle.h"

#include <cstdint>
#include <string>
#include <vector>

namespace smh {

// What is found where an entry lies.
enum class Standing {
  kNothing,
  kSame,   // the entry: its value with its command, its key, its file
  kOther,  // a value of its name with another text
};

// Looks at one place after the other; the keys that it has seen values in last stay open, so that one that is
// renamed meanwhile is seen as it was. For one thread.
class EntryPlaces {
 public:
  // Looks at the place that the record names. Raises HostError or EOSError when it cannot be looked at.
  Standing LookAt(const ItemRecord& item);

 private:
  struct Row {
    std::wstring place;
    ScopedKey key;
  };
  Standing LookAtValue(const ItemRecord& item);

  // The latest ones last.
  std::vector<Row> rows_;
};

// The places of a file of that name in a Startup folder: enabled, then where disabled ones are looked for.
// Empty when the shell knows no such folder.
std::vector<std::wstring> PlacesOfFile(std::int32_t location, const std::wstring& name);

// The place of a value that is to be added to a registry location: root, view, key and value, the rest empty.
ItemRecord PlaceOfNewValue(std::int32_t location, const std::wstring& name);

}  // namespace smh
