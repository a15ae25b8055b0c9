#include "model/location_change.h"

namespace smh {

namespace {

// A target that stays keeps its switch.
void TakeBack(EntryTarget* target, EntrySource* source, SwitchSteps* switches,
              ChangeCheckpoint& checkpoint) noexcept {
  checkpoint.Fail();
  if (source != nullptr && !source->PutBack()) return;
  if (target != nullptr) target->TakeBack();
  if (switches != nullptr) switches->TakeBack();
}

}  // namespace

bool CarryEntry(EntryTarget* target, EntrySource* source, SwitchSteps* switches,
                ChangeCheckpoint& checkpoint) {
  const LastLook arrived = [target] { return target == nullptr || target->Stands(); };
  EntrySource* const removed = target == nullptr || !target->CarriesSource() ? source : nullptr;
  const CopyMark mark = [&](std::size_t place) {
    if (source != nullptr && checkpoint.IsRecorded()) source->MarkCopies(place);
  };
  try {
    if ((switches == nullptr || switches->Prepare()) && (target == nullptr || target->InsertItem(mark)) &&
        (switches == nullptr || switches->Arrive()) &&
        (removed == nullptr || removed->ExtractItem(arrived)) &&
        (switches == nullptr || switches->Finish())) {
      return true;
    }
  } catch (...) {
    TakeBack(target, removed, switches, checkpoint);
    throw;
  }
  TakeBack(target, removed, switches, checkpoint);
  return false;
}

}  // namespace smh
