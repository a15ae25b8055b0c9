// What the journal let go of: "dropped.list" in its folder, so that nothing goes without a word.
//
// A file of records (format/journal_format.h): id, action that it undoes, time of the begin, parts, steps,
// time of dropping, title. What is damaged in it, and everything behind that, is left out.
#pragma once

#include "siblings/guardkit/journal_folder.h"

#include <cstdint>
#include <string>
#include <vector>

namespace smh {

// An action that is no longer there. Times are FILETIMEs.
struct DroppedAction {
  std::uint32_t id = 0;
  std::uint32_t undoes = 0;
  std::uint64_t time = 0;
  std::uint32_t parts = 0;
  std::uint32_t steps = 0;
  std::uint64_t dropped = 0;
  std::wstring title = {};
  // Its user wanted it to go: it only keeps its number from being given out again.
  bool forgotten = false;
};

// Oldest first; empty when there is none or it cannot be read. Raises std::bad_alloc.
std::vector<DroppedAction> ReadDropped(const JournalFolder& folder);
// Keeps the last 1,000. The caller holds the journal's lock. Raises EOSError; the old list stays then.
void WriteDropped(const JournalFolder& folder, const std::vector<DroppedAction>& dropped);

}  // namespace smh
