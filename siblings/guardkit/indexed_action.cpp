#include "siblings/guardkit/indexed_action.h"

#include <algorithm>
#include <set>

namespace smh {

namespace {

std::uint32_t IdOf(const IndexedAction& action) noexcept {
  return action.Id();
}

// What it takes back; only an older one can have been meant.
const IndexedAction* FindOlder(const std::vector<IndexedAction>& index, const IndexedAction& undo) {
  const auto found = std::ranges::lower_bound(index, undo.header.undoes, {}, IdOf);
  const bool isOlder = found != index.end() && found->Id() == undo.header.undoes && found->Id() < undo.Id();
  return isOlder ? &*found : nullptr;
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

std::vector<std::uint32_t> PartsLeft(const IndexedAction& action) {
  const bool isUnsettled =
      action.state == CheckpointState::kOpen || action.state == CheckpointState::kDamaged;
  std::vector<std::uint32_t> left;
  for (std::size_t i = 0; i < action.parts.size(); ++i) {
    const IndexedPart& part = action.parts[i];
    const bool mayStand = isUnsettled && part.record.end == PartEnd::kNone && part.undoneBy == 0;
    if (part.record.stepCount != 0 && (part.Stands() || mayStand))
      left.push_back(static_cast<std::uint32_t>(i + 1));
  }
  return left;
}

bool IsRedo(const std::vector<IndexedAction>& index, const IndexedAction& action) {
  std::size_t links = 0;
  for (const IndexedAction* each = &action; each != nullptr && each->header.undoes != 0; ++links) {
    each = FindOlder(index, *each);
  }
  return links != 0 && links % 2 == 0;
}

UndoGoal GoalOf(const std::vector<IndexedAction>& index, const IndexedAction& action) {
  const IndexedAction* const goal = FindOlder(index, action);
  if (goal == nullptr) return {};
  UndoGoal result{goal, PartsLeft(*goal)};
  const std::set<std::uint32_t> chosen(action.header.chosen.begin(), action.header.chosen.end());
  if (!chosen.empty()) std::erase_if(result.left, [&](std::uint32_t part) { return !chosen.contains(part); });
  return result;
}

void SetStates(std::vector<IndexedAction>& index) {
  for (IndexedAction& action : index) {
    if (action.state == CheckpointState::kDone) action.state = StateOf(action);
  }
  for (IndexedAction& action : index) {
    if (action.state != CheckpointState::kInterrupted) continue;
    const UndoGoal goal = GoalOf(index, action);
    if (goal.action != nullptr && goal.left.empty()) action.state = CheckpointState::kDone;
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
