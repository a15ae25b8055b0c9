// Reading the entries: starting the library's reader, waiting for it, copying what it found.
#pragma once

#include "hosts/common/item_record.h"
#include "hosts/common/library.h"

#include <functional>
#include <span>
#include <string_view>
#include <vector>

namespace smh {

// Whether the reader has to look at all locations or at the usual ones is enough.
enum class ReadScope { kUsual, kAll };

// Raises HostError when that takes more than two minutes: a dead network path must not hold a script for
// ever.
void WaitForReader(const std::function<bool()>& isComplete);

// Starts reading anew and waits until every entry is complete, as WaitForReader does.
void ReadToEnd(const Library& library, ReadScope scope);

// A copy of every listed entry, in list order, without the files of their commands.
std::vector<ItemRecord> TakeSnapshot(const Library& library);
// Fills ItemRecord::file; searching takes time and disk, so it is done only for entries that are shown.
void ResolveFiles(const Library& library, std::span<ItemRecord> items);
// ReadToEnd of all locations, then a copy of every entry.
std::vector<ItemRecord> ReadAllItems(const Library& library);

// The listed entry of that location and name; empty when it has gone.
ComPtr<IStartupItem> FindListedItem(const Library& library, std::int32_t location, std::wstring_view name);

}  // namespace smh
