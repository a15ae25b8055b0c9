#include "siblings/guardkit/journal_index.h"

#include "infra/runtime/exceptions.h"
#include "siblings/guardkit/format/undo_plan.h"
#include "siblings/guardkit/journal_folder.h"
#include "siblings/guardkit/live_system.h"

#include <algorithm>

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

// A checkpoint that is finished while it is read gets its other name.
std::optional<JournalContents> ReadLatest(const JournalFolder& folder, const JournalName& name) {
  std::optional<JournalContents> contents = ReadJournal(folder, name);
  if (name.closed || (contents && contents->finished)) return contents;
  std::optional<JournalContents> closed = ReadJournal(folder, {.id = name.id, .closed = true});
  return closed ? std::move(closed) : std::move(contents);
}

// Of one that nobody has open.
CheckpointState StateOf(const IndexedCheckpoint& checkpoint) {
  const JournalContents& contents = checkpoint.contents;
  if (contents.finished) return contents.failed ? CheckpointState::kFailed : CheckpointState::kDone;
  // Closed by CloseFailed; what another change brought about since is not its doing. Or by an undo.
  if (checkpoint.name.closed) return CheckpointState::kFailed;
  const UndoReach reach(CurrentUserSid());
  LiveSystem system(reach);
  return IsAnythingLeft(contents, system) ? CheckpointState::kInterrupted : CheckpointState::kFailed;
}

// `only` chooses by name.
template <typename Filter>
std::vector<IndexedCheckpoint> Load(const JournalFolder& folder, bool lockHeld, Filter&& only) {
  const std::vector<JournalName> names = ListJournals(folder);
  std::vector<IndexedCheckpoint> index;
  for (const JournalName& name : names) {
    if (!only(name)) continue;
    std::optional<JournalContents> contents = ReadLatest(folder, name);
    if (contents) index.push_back({name, *std::move(contents)});
  }
  for (IndexedCheckpoint& checkpoint : index) {
    // There is one lock, so only the newest can be open.
    const bool mayBeOpen =
        !lockHeld && !checkpoint.contents.finished && checkpoint.name.id == names.back().id;
    if (mayBeOpen && IsLocked(folder)) {
      checkpoint.state = CheckpointState::kOpen;
      continue;
    }
    // Its owner may have finished it since it was read.
    if (mayBeOpen) checkpoint.contents = ReadLatest(folder, checkpoint.name).value_or(checkpoint.contents);
    checkpoint.state = StateOf(checkpoint);
  }
  return index;
}

std::uint32_t IdOf(const IndexedCheckpoint& checkpoint) noexcept {
  return checkpoint.name.id;
}

}  // namespace

std::vector<IndexedCheckpoint> IndexJournal(const JournalFolder& folder, bool lockHeld) {
  std::vector<IndexedCheckpoint> index = Load(folder, lockHeld, [](const JournalName&) { return true; });
  // Newest first: whether an undo still holds is known when its turn comes.
  for (auto checkpoint = index.rbegin(); checkpoint != index.rend(); ++checkpoint) {
    const std::uint32_t undoes = checkpoint->contents.header.undoes;
    if (undoes == 0 || !checkpoint->contents.finished || checkpoint->contents.failed) continue;
    const auto target = std::ranges::find(index, undoes, IdOf);
    if (target == index.end() || target->undoneBy != 0) continue;
    if (checkpoint->undoneBy != 0) {
      // Undone and made again, it stands as a whole.
      if (!target->contents.finished) target->state = CheckpointState::kDone;
      continue;
    }
    target->undoneBy = checkpoint->name.id;
    target->state = CheckpointState::kUndone;
  }
  return index;
}

std::vector<IndexedCheckpoint> IndexInterrupted(const JournalFolder& folder) {
  std::vector<IndexedCheckpoint> index =
      Load(folder, false, [](const JournalName& name) { return !name.closed; });
  std::erase_if(index, [](const IndexedCheckpoint& checkpoint) {
    return checkpoint.state != CheckpointState::kInterrupted;
  });
  return index;
}

void CloseFailed(const JournalFolder& folder) noexcept {
  try {
    const auto isOpen = [](const JournalName& name) { return !name.closed; };
    for (const IndexedCheckpoint& checkpoint : Load(folder, true, isOpen)) {
      if (checkpoint.state == CheckpointState::kFailed) CloseJournal(folder, checkpoint.name.id);
    }
  } catch (...) {
    // Nobody is told of them all the same.
  }
}

const IndexedCheckpoint* FindById(const std::vector<IndexedCheckpoint>& index, std::uint32_t id) {
  const auto found = std::ranges::find(index, id, IdOf);
  return found == index.end() ? nullptr : &*found;
}

const IndexedCheckpoint* FindNewestToUndo(const std::vector<IndexedCheckpoint>& index,
                                          const std::wstring& user) {
  const auto isNextToUndo = [&user](const IndexedCheckpoint& checkpoint) {
    const CheckpointHeader& header = checkpoint.contents.header;
    const bool isNext = (header.undoes == 0 || checkpoint.state == CheckpointState::kInterrupted) &&
                        checkpoint.state != CheckpointState::kFailed;
    const bool isLeft = checkpoint.undoneBy == 0 && !checkpoint.contents.steps.empty();
    return isNext && isLeft && header.user == user;
  };
  const auto newest = std::find_if(index.rbegin(), index.rend(), isNextToUndo);
  return newest == index.rend() ? nullptr : &*newest;
}

const IndexedCheckpoint* FindToRedo(const std::vector<IndexedCheckpoint>& index, std::uint32_t id) {
  const IndexedCheckpoint* const named = FindById(index, id);
  if (named == nullptr || named->contents.header.undoes != 0) return named;
  return named->undoneBy != 0 ? FindById(index, named->undoneBy) : nullptr;
}

}  // namespace smh
