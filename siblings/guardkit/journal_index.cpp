#include "siblings/guardkit/journal_index.h"

#include "infra/runtime/exceptions.h"
#include "siblings/guardkit/format/undo_plan.h"
#include "siblings/guardkit/journal_folder.h"
#include "siblings/guardkit/live_system.h"

#include <algorithm>
#include <iterator>
#include <map>

namespace smh {

namespace {

// One file, without its steps.
struct IndexedFile {
  JournalName name;
  JournalRead result = JournalRead::kUnreadable;
  JournalContents contents = {};
  bool isOpen = false;
  std::size_t stepCount = 0;
  // By part.
  std::vector<bool> isLeft = {};
  std::vector<ContentHash> kept = {};

  bool IsWhole() const noexcept {
    return result == JournalRead::kRead && contents.whole &&
           !(name.closed && contents.end == JournalEnd::kNone);
  }
};

// Whether anything of a part without an end is there.
bool IsPartLeft(const JournalContents& contents, const JournalPart& part, const UndoReach& reach) {
  JournalContents only;
  const auto first = contents.steps.begin() + static_cast<std::ptrdiff_t>(part.firstStep);
  only.steps.assign(first, first + static_cast<std::ptrdiff_t>(part.stepCount));
  LiveSystem system(reach);
  return IsAnythingLeft(only, system);
}

// A file that is finished while it is read gets its other name.
ReadJournalFile ReadLatest(const JournalFolder& folder, JournalName& name) {
  ReadJournalFile read = ReadJournal(folder, name);
  if (read.result != JournalRead::kGone || name.closed) return read;
  JournalName closed = name;
  closed.closed = true;
  ReadJournalFile other = ReadJournal(folder, closed);
  if (other.result != JournalRead::kGone) name = closed;
  return other;
}

IndexedFile LoadFile(const JournalFolder& folder, const JournalName& name, const UndoReach& reach) {
  IndexedFile file{.name = name};
  if (name.isFolder) return file;
  const bool isDead = !name.closed && IsLeftBehind(folder, name);
  ReadJournalFile read = ReadLatest(folder, file.name);
  const bool hasNoEnd = read.result == JournalRead::kRead && read.contents.end == JournalEnd::kNone;
  if (hasNoEnd && !isDead && !file.name.closed) {
    file.isOpen = OwnerLives(folder, read.contents.header);
    // He may have finished it since it was read.
    if (!file.isOpen) read = ReadLatest(folder, file.name);
  }
  file.result = read.result;
  file.contents = std::move(read.contents);
  if (file.result != JournalRead::kRead) return file;
  JournalContents& contents = file.contents;
  // The first two versions closed a file by its name.
  if (file.name.closed && contents.whole && contents.version == 2 && contents.end == JournalEnd::kNone) {
    contents.end = JournalEnd::kClosed;
  }
  const bool mayBeLeft = !file.isOpen && file.IsWhole() && contents.end == JournalEnd::kNone;
  for (const JournalPart& part : contents.parts) {
    file.isLeft.push_back(mayBeLeft && part.end == PartEnd::kNone && IsPartLeft(contents, part, reach));
  }
  for (const RecordedStep& recorded : contents.steps) {
    const auto* const step = std::get_if<FileStep>(&recorded.step);
    if (step == nullptr) continue;
    for (const StreamState& stream : step->before.streams) file.kept.push_back(stream.hash);
  }
  file.stepCount = contents.steps.size();
  contents.steps = {};
  return file;
}

// Whether the files are all that the action has, one behind the other.
bool IsWhole(const std::vector<const IndexedFile*>& files) {
  std::uint32_t nextPart = 1;
  for (std::size_t i = 0; i < files.size(); ++i) {
    const IndexedFile& file = *files[i];
    if (!file.IsWhole() || (file.contents.header.continues == 0) != (i == 0)) return false;
    for (const JournalPart& part : file.contents.parts) {
      if (part.header.number != nextPart++) return false;
    }
    const std::uint32_t next = i + 1 < files.size() ? files[i + 1]->name.id : 0;
    const JournalEnd end = file.contents.end;
    const bool saysNext = end == JournalEnd::kDone || end == JournalEnd::kFailed;
    if (saysNext && file.contents.continuedBy != next) return false;
  }
  return true;
}

// How the whole ended: without the end of one file it has none.
JournalEnd EndOf(const std::vector<const IndexedFile*>& files) {
  const auto has = [&files](JournalEnd end) {
    return std::ranges::any_of(files, [end](const IndexedFile* file) { return file->contents.end == end; });
  };
  if (has(JournalEnd::kNone)) return JournalEnd::kNone;
  return has(JournalEnd::kClosed) ? JournalEnd::kClosed : files.front()->contents.end;
}

IndexedAction Assemble(const std::vector<const IndexedFile*>& files) {
  IndexedAction action;
  action.header = files.front()->contents.header;
  bool isOpen = false;
  for (const IndexedFile* const file : files) {
    action.files.push_back(file->name);
    isOpen = isOpen || file->isOpen;
    action.isHeld = action.isHeld || file->result == JournalRead::kHeld;
    const std::vector<JournalPart>& parts = file->contents.parts;
    for (std::size_t i = 0; i < parts.size(); ++i) {
      IndexedPart& part =
          action.parts.emplace_back(IndexedPart{.record = parts[i], .isLeft = file->isLeft[i]});
      part.record.firstStep += action.stepCount;
    }
    action.stepCount += file->stepCount;
    action.kept.insert(action.kept.end(), file->kept.begin(), file->kept.end());
  }
  action.end = EndOf(files);
  if (isOpen) {
    action.state = CheckpointState::kOpen;
  } else if (!IsWhole(files)) {
    action.state = CheckpointState::kDamaged;
  }
  return action;
}

std::vector<IndexedAction> Load(const JournalFolder& folder, const std::vector<JournalName>& names) {
  std::vector<IndexedFile> files;
  const UndoReach reach(CurrentUserSid());
  for (const JournalName& name : names) {
    IndexedFile file = LoadFile(folder, name, reach);
    if (file.result != JournalRead::kGone && file.result != JournalRead::kBlank)
      files.push_back(std::move(file));
  }
  // Files that continue another one stand behind it.
  std::map<std::uint32_t, std::vector<const IndexedFile*>> groups;
  std::vector<std::uint32_t> order;
  for (const IndexedFile& file : files) {
    const std::uint32_t first = file.contents.header.continues;
    const auto group = groups.find(first);
    if (first != 0 && group != groups.end()) {
      group->second.push_back(&file);
    } else if (groups.emplace(file.name.id, std::vector{&file}).second) {
      order.push_back(file.name.id);
    }
  }
  std::vector<IndexedAction> index;
  index.reserve(order.size());
  for (const std::uint32_t id : order) index.push_back(Assemble(groups[id]));
  return index;
}

bool IsInterrupted(const IndexedAction& action) noexcept {
  return action.state == CheckpointState::kInterrupted;
}

void CloseAll(const JournalFolder& folder, const IndexedAction& action) noexcept {
  for (const JournalName& name : action.files) CloseJournal(folder, name);
}

// Longer ones hold more than a header.
constexpr std::uint64_t kLongestBeginning = 256u << 10;

void RemoveEmpty(const JournalFolder& folder, const std::vector<JournalName>& names) {
  for (const JournalName& name : names) {
    if (name.size > kLongestBeginning) continue;
    const ReadJournalFile read = ReadJournal(folder, name);
    const bool isEmpty = read.result == JournalRead::kBlank ||
                         (read.result == JournalRead::kRead && read.contents.version == 3 &&
                          read.contents.whole && read.contents.parts.empty());
    if (isEmpty) DeleteFileW(folder.File(name.FileName()).c_str());
  }
}

}  // namespace

std::vector<IndexedAction> IndexJournal(const JournalFolder& folder) {
  std::vector<IndexedAction> index = Load(folder, ListJournals(folder));
  JoinUndos(index);
  SetStates(index);
  return index;
}

std::vector<IndexedAction> IndexInterrupted(const JournalFolder& folder) {
  std::vector<JournalName> names = ListJournals(folder);
  std::erase_if(names, [](const JournalName& name) { return name.closed; });
  std::vector<IndexedAction> index = Load(folder, names);
  SetStates(index);
  if (std::ranges::none_of(index, IsInterrupted)) return {};
  // Others may have undone it, or hold another part of it.
  index = IndexJournal(folder);
  std::erase_if(index, [](const IndexedAction& action) { return !IsInterrupted(action); });
  return index;
}

std::vector<RecordedStep> ReadSteps(const JournalFolder& folder, const IndexedAction& action) {
  std::vector<RecordedStep> steps;
  for (const JournalName& name : action.files) {
    JournalName latest = name;
    ReadJournalFile read = ReadLatest(folder, latest);
    if (read.result != JournalRead::kRead) break;
    std::ranges::move(read.contents.steps, std::back_inserter(steps));
  }
  return steps;
}

void CloseFailed(const JournalFolder& folder) noexcept {
  try {
    std::vector<JournalName> left = ListJournals(folder);
    // Not those of others that live: theirs are read by nobody here, however long they are.
    std::erase_if(left, [&](const JournalName& name) {
      return name.closed || name.isFolder || !IsLeftBehind(folder, name);
    });
    RemoveEmpty(folder, left);
    bool isUndoLeft = false;
    for (const IndexedAction& action : Load(folder, left)) {
      const bool isOrphan = action.header.continues != 0;
      if (action.state != CheckpointState::kDone || isOrphan) continue;
      if (StateOf(action) != CheckpointState::kInterrupted) {
        CloseAll(folder, action);
      } else if (action.header.undoes != 0) {
        isUndoLeft = true;
      }
    }
    if (!isUndoLeft) return;
    for (const IndexedAction& action : IndexJournal(folder)) {
      if (action.end == JournalEnd::kNone && action.state == CheckpointState::kDone) CloseAll(folder, action);
    }
  } catch (...) {
    // Nobody is told of them all the same.
  }
}

std::uint32_t NextJournalId(const std::vector<JournalName>& known,
                            const std::vector<DroppedAction>& dropped) {
  constexpr std::uint32_t kLimit = kGreatestJournalId / 100 * 99;
  std::uint32_t greatest = 0;
  const auto note = [&greatest](std::uint32_t id) {
    if (id < kLimit) greatest = std::max(greatest, id);
  };
  for (const JournalName& name : known) note(name.id);
  for (const DroppedAction& action : dropped) note(action.id);
  if (greatest + 1 == kLimit) RaiseOSError(ERROR_NO_MORE_ITEMS);
  return greatest + 1;
}

const IndexedAction* FindById(const std::vector<IndexedAction>& index, std::uint32_t id) {
  const auto found = std::ranges::find(index, id, &IndexedAction::Id);
  return found == index.end() ? nullptr : &*found;
}

const IndexedAction* FindNewestToUndo(const std::vector<IndexedAction>& index, const std::wstring& user) {
  const auto newest = std::find_if(index.rbegin(), index.rend(), [&](const IndexedAction& action) {
    const bool isNext =
        action.header.undoes == 0 || (action.state == CheckpointState::kInterrupted && IsRedo(index, action));
    return isNext && action.header.user == user && !PartsLeft(action).empty();
  });
  return newest == index.rend() ? nullptr : &*newest;
}

std::vector<const IndexedAction*> FindToRedo(const std::vector<IndexedAction>& index, std::uint32_t id) {
  const IndexedAction* const named = FindById(index, id);
  if (named != nullptr && named->header.undoes != 0) return {named};
  std::vector<const IndexedAction*> undos;
  for (const IndexedAction& action : index) {
    const bool undoes = std::ranges::any_of(action.parts, [id](const IndexedPart& part) {
      return part.record.header.undoesAction == id && part.undoneBy == 0 &&
             (part.record.stepCount != 0 || part.record.end == PartEnd::kDone);
    });
    if (undoes) undos.push_back(&action);
  }
  return undos;
}

}  // namespace smh
