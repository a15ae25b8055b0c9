// Reading the entries: starting the library's reader, waiting for it, copying what it found. What the library
// refuses raises HostError. The list's lock is taken by those that copy or search, and for that time only;
// ReadToEnd fails on a thread that holds it.
#pragma once

#include "hosts/common/item_record.h"
#include "hosts/common/library.h"

#include <windows.h>

#include <functional>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

namespace smh {

// Whether the reader has to look at all locations or the usual ones, those read by default, are enough.
enum class ReadScope { kUsual, kAll };

// Something that does not answer must not hold a script for ever.
inline constexpr DWORD kReadingLimitMs = 60'000;

// Asks `isComplete` every ten milliseconds until it says yes; blocks the thread. Answers false after the
// limit, in milliseconds.
bool WaitForReader(const std::function<bool()>& isComplete, DWORD limit = kReadingLimitMs);

// Starts reading anew and waits until every entry is complete, as WaitForReader does; answers how far the
// reader got. The scope stays chosen for later reads.
ReadState ReadToEnd(const Library& library, ReadScope scope, DWORD limit = kReadingLimitMs);
// Raise HostError when some locations were not read in time; and, for after what there is has been printed,
// when anything was not.
void RequireListed(ReadState state);
void RequireComplete(ReadState state);

// A copy of every listed entry, in list order, without the files of their commands: one state of the list,
// under its lock.
std::vector<ItemRecord> TakeSnapshot(const Library& library);
// Fills ItemRecord::file of entries with a command, empty where none is found; searching takes time and disk,
// so it is done only for entries that are shown.
void ResolveFiles(const Library& library, std::span<ItemRecord> items);
// ReadToEnd of all locations, which it requires to be listed, then a copy of every entry.
std::vector<ItemRecord> ReadAllItems(const Library& library);

// The enabled entry that an addition has made, or found, under `name`, the value's or the shortcut's. `index`
// is what AddItem has answered: others may have changed the list since. None when it has gone.
std::optional<ItemRecord> FindAddedEntry(const Library& library, std::int32_t index, std::int32_t location,
                                         const std::wstring& name);

// The listed entry of that location and name, compared unit by unit; empty when it has gone. It may leave the
// list right after.
ComPtr<IStartupItem> FindListedItem(const Library& library, std::int32_t location, std::wstring_view name);

}  // namespace smh
