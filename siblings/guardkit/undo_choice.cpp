#include "siblings/guardkit/undo_choice.h"

#include "core/contracts/intf_journal.h"

#include <algorithm>
#include <set>

namespace smh {

namespace {

void NoteAction(const IndexedAction& action, UndoResult& result) {
  result.checkpoint = action.Id();
  result.title = action.header.title;
}

}  // namespace

std::vector<const IndexedAction*> ChooseActions(const std::vector<IndexedAction>& index,
                                                const UndoRequest& request, const std::wstring& user,
                                                UndoResult& result) {
  HRESULT& status = result.status;
  const bool isRedo = request.direction == Direction::kRedo;
  const IndexedAction* const named =
      !isRedo && request.id == 0 ? FindNewestToUndo(index, user) : FindById(index, request.id);
  status = HRESULT_FROM_WIN32(ERROR_NOT_FOUND);
  if (named == nullptr) return {};
  std::vector<const IndexedAction*> found = {named};
  if (isRedo) found = FindToRedo(index, request.id);
  status = IJournal::kWrongState;
  NoteAction(*named, result);
  if (found.empty()) return {};
  found.push_back(named);
  for (const IndexedAction* const action : found) {
    NoteAction(*action, result);
    status = HRESULT_FROM_WIN32(ERROR_BUSY);
    if (action->state == CheckpointState::kOpen) return {};
    status = IJournal::kDamaged;
    if (!action->IsReadable()) return {};
  }
  found.pop_back();
  NoteAction(*found.back(), result);
  status = S_OK;
  return found;
}

bool HasDamaged(const std::vector<const IndexedAction*>& actions) {
  return std::ranges::any_of(
      actions, [](const IndexedAction* action) { return action->state == CheckpointState::kDamaged; });
}

bool IsBeingUndone(const std::vector<IndexedAction>& index, const std::vector<const IndexedAction*>& actions,
                   std::uint32_t own) {
  return std::ranges::any_of(index, [&](const IndexedAction& each) {
    return each.state == CheckpointState::kOpen && each.Id() != own &&
           std::ranges::any_of(
               actions, [&](const IndexedAction* action) { return action->Id() == each.header.undoes; });
  });
}

std::vector<const IndexedPart*> ChooseParts(const IndexedAction& action,
                                            const std::vector<std::uint32_t>& numbers, HRESULT& status) {
  std::vector<const IndexedPart*> chosen;
  for (const std::uint32_t number : numbers) {
    status = HRESULT_FROM_WIN32(ERROR_NOT_FOUND);
    if (number == 0 || number > action.parts.size()) return {};
    status = IJournal::kWrongState;
    if (action.parts[number - 1].undoneBy != 0) return {};
  }
  status = S_OK;
  const std::set<std::uint32_t> wanted(numbers.begin(), numbers.end());
  for (const IndexedPart& part : action.parts) {
    if (part.undoneBy == 0 && (wanted.empty() || wanted.contains(part.record.header.number)))
      chosen.push_back(&part);
  }
  return chosen;
}

}  // namespace smh
