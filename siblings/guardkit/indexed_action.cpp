#include "siblings/guardkit/indexed_action.h"

#include <algorithm>

namespace smh {

namespace {

std::uint32_t IdOf(const IndexedAction& action) noexcept {
  return action.Id();
}

IndexedPart* FindPart(std::vector<IndexedAction>& index, std::uint32_t id, std::uint32_t number) {
  const auto action = std::ranges::lower_bound(index, id, {}, IdOf);
  if (action == index.end() || action->Id() != id || number == 0 || number > action->parts.size())
    return nullptr;
  return &action->parts[number - 1];
}

// Unless a newer undo has settled it.
void SetUnclear(IndexedPart& part) noexcept {
  if (part.undoneBy != 0 || part.redone) return;
  part.isUnclear = true;
  part.undoTried = true;
}

// The parts of what a damaged undo took back, of which it does not tell any more.
void SetRestUnclear(std::vector<IndexedAction>& index, const IndexedAction& undo) {
  const auto target = std::ranges::lower_bound(index, undo.header.undoes, {}, IdOf);
  if (target == index.end() || target->Id() != undo.header.undoes) return;
  for (IndexedPart& part : target->parts) SetUnclear(part);
}

}  // namespace

// Newest first: whether an undo still holds is known when its turn comes.
void JoinUndos(std::vector<IndexedAction>& index) {
  for (auto action = index.rbegin(); action != index.rend(); ++action) {
    for (const IndexedPart& part : action->parts) {
      IndexedPart* const target =
          FindPart(index, part.record.header.undoesAction, part.record.header.undoesPart);
      if (target == nullptr) continue;
      const bool isComplete = part.redone || part.record.end == PartEnd::kDone;
      if (part.isUnclear) {
        SetUnclear(*target);
      } else if (part.undoneBy != 0) {
        if (isComplete && target->undoneBy == 0) target->redone = true;
      } else if (isComplete) {
        if (target->undoneBy == 0 && !target->redone) target->undoneBy = action->Id();
      } else if (part.record.stepCount != 0) {
        target->undoTried = true;
      }
    }
    if (action->state == CheckpointState::kDamaged) SetRestUnclear(index, *action);
  }
}

CheckpointState StateOf(const IndexedAction& action) {
  const auto standing = static_cast<std::size_t>(std::ranges::count_if(action.parts, &IndexedPart::Stands));
  if (standing == 0) {
    const bool undone =
        std::ranges::any_of(action.parts, [](const IndexedPart& part) { return part.undoneBy != 0; });
    return undone ? CheckpointState::kUndone : CheckpointState::kFailed;
  }
  if (action.end == JournalEnd::kNone) return CheckpointState::kInterrupted;
  return standing == action.parts.size() ? CheckpointState::kDone : CheckpointState::kPartlyDone;
}

void SetStates(std::vector<IndexedAction>& index) {
  for (IndexedAction& action : index) {
    if (action.state == CheckpointState::kDone) action.state = StateOf(action);
  }
}

CheckpointState IndexedAction::StateOfPart(const IndexedPart& part) const noexcept {
  if (part.undoneBy != 0) return CheckpointState::kUndone;
  if (part.record.end == PartEnd::kNone && state == CheckpointState::kOpen) return CheckpointState::kOpen;
  if (part.Stands()) {
    const bool hasEnd = part.redone || part.record.end != PartEnd::kNone;
    return hasEnd ? CheckpointState::kDone : CheckpointState::kInterrupted;
  }
  return state == CheckpointState::kDamaged && part.record.end == PartEnd::kNone ? CheckpointState::kDamaged
                                                                                 : CheckpointState::kFailed;
}

}  // namespace smh
