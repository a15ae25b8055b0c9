#include "guardkit/journal_index.h"

#include "guardkit/journal_lock.h"
#include "infra/exceptions.h"

#include <algorithm>
#include <ranges>

namespace smh {

namespace {

bool IsLocked(const JournalFolder& folder) {
  try {
    const JournalLock lock(folder, 0);
    return false;
  } catch (const EOSError&) {
    return true;
  }
}

// `only` chooses by name.
template <typename Filter>
std::vector<IndexedCheckpoint> Load(const JournalFolder& folder, bool lockHeld, Filter&& only) {
  const std::vector<JournalName> names = ListJournals(folder);
  std::vector<IndexedCheckpoint> index;
  for (const JournalName& name : names) {
    if (!only(name)) continue;
    std::optional<JournalContents> contents = ReadJournal(folder, name);
    if (contents) index.push_back({name, *std::move(contents)});
  }
  for (IndexedCheckpoint& checkpoint : index) {
    if (checkpoint.contents.finished) continue;
    // There is one lock, so only the newest can be open.
    const bool open = !lockHeld && checkpoint.name.id == names.back().id && IsLocked(folder);
    checkpoint.state = open ? CheckpointState::kOpen : CheckpointState::kInterrupted;
  }
  return index;
}

IndexedCheckpoint* FindById(std::vector<IndexedCheckpoint>& index, std::uint32_t id) {
  const auto found = std::ranges::find(index, id, [](const IndexedCheckpoint& c) { return c.name.id; });
  return found == index.end() ? nullptr : &*found;
}

}  // namespace

std::vector<IndexedCheckpoint> IndexJournal(const JournalFolder& folder, bool lockHeld) {
  std::vector<IndexedCheckpoint> index = Load(folder, lockHeld, [](const JournalName&) { return true; });
  // Newest first: whether an undo still holds is known when its turn comes.
  for (const IndexedCheckpoint& checkpoint : std::views::reverse(index)) {
    if (checkpoint.contents.header.undoes == 0 || !checkpoint.contents.finished || checkpoint.undoneBy != 0)
      continue;
    IndexedCheckpoint* const target = FindById(index, checkpoint.contents.header.undoes);
    if (target == nullptr || target->undoneBy != 0) continue;
    target->undoneBy = checkpoint.name.id;
    target->state = CheckpointState::kUndone;
  }
  return index;
}

std::vector<IndexedCheckpoint> IndexInterrupted(const JournalFolder& folder) {
  std::vector<IndexedCheckpoint> index =
      Load(folder, false, [](const JournalName& name) { return !name.closed; });
  std::erase_if(index, [](const IndexedCheckpoint& checkpoint) {
    return checkpoint.state != CheckpointState::kInterrupted || checkpoint.contents.steps.empty();
  });
  return index;
}

const IndexedCheckpoint* FindToUndo(const std::vector<IndexedCheckpoint>& index, std::uint32_t id) {
  for (const IndexedCheckpoint& checkpoint : std::views::reverse(index)) {
    if (id != 0 ? checkpoint.name.id == id
                : checkpoint.undoneBy == 0 && !checkpoint.contents.steps.empty() &&
                      (checkpoint.contents.header.undoes == 0 ||
                       checkpoint.state == CheckpointState::kInterrupted)) {
      return &checkpoint;
    }
  }
  return nullptr;
}

const IndexedCheckpoint* FindToRedo(const std::vector<IndexedCheckpoint>& index, std::uint32_t id) {
  const IndexedCheckpoint* const named = FindToUndo(index, id);
  if (named == nullptr || id == 0) return nullptr;
  if (named->undoneBy != 0 && named->contents.header.undoes == 0) return FindToUndo(index, named->undoneBy);
  return named->contents.header.undoes != 0 ? named : nullptr;
}

}  // namespace smh
