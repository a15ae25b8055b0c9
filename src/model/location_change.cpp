#include "model/location_change.h"

namespace smh {

namespace {

void TakeBack(EntryTarget* target, EntrySource* source, ChangeCheckpoint& checkpoint) noexcept {
  checkpoint.Fail();
  const bool isBack = source == nullptr || source->PutBack();
  if (isBack && target != nullptr) target->TakeBack();
}

}  // namespace

bool CarryEntry(EntryTarget* target, EntrySource* source, ChangeCheckpoint& checkpoint) {
  const LastLook arrived = [target] { return target == nullptr || target->Stands(); };
  const bool removes = source != nullptr && (target == nullptr || !target->CarriesSource());
  const CopyMark mark = [&](std::size_t place) {
    if (source != nullptr && checkpoint.IsRecorded()) source->MarkCopies(place);
  };
  try {
    if ((target == nullptr || target->InsertItem(mark)) && (!removes || source->ExtractItem(arrived)))
      return true;
  } catch (...) {
    TakeBack(target, removes ? source : nullptr, checkpoint);
    throw;
  }
  TakeBack(target, removes ? source : nullptr, checkpoint);
  return false;
}

}  // namespace smh
