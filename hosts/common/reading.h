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
// The wrappers of the entries of one location, in list order.
std::vector<ComPtr<IStartupItem>> ListedIn(const Library& library, std::int32_t location);
// A copy of every listed entry, as TakeSnapshot makes it, and its wrapper at the same position, which stays
// with it.
struct Listing {
  std::vector<ItemRecord> items;
  std::vector<ComPtr<IStartupItem>> wrappers;
};
Listing TakeListing(const Library& library);
// Has the locations that are chosen read once more, and waits until all are listed. Raises HostError as
// above.
void ReadAgain(const Library& library);
// Reads all locations, as far as it takes to know what there is and, with `details`, everything about it;
// then the reader rests, so that changes have the machine for themselves. Raises HostError when that takes
// too long.
void ReadForChanges(const Library& library, bool details);
// Fills ItemRecord::file of entries with a command, empty where none is found; searching takes time and disk,
// so it is done only for entries that are shown.
void ResolveFiles(const Library& library, std::span<ItemRecord> items);
// ReadToEnd of all locations, which it requires to be listed, then a copy of every entry.
std::vector<ItemRecord> ReadAllItems(const Library& library);

// The listed entry of that location and name, compared unit by unit; empty when it has gone. It may leave the
// list right after.
ComPtr<IStartupItem> FindListedItem(const Library& library, std::int32_t location, std::wstring_view name);

}  // namespace smh
