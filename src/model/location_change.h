// What a change of a location comes to, and the order of its steps: the target is written and confirmed
// before the source is compared and removed, and what fails leaves everything as it was.
#pragma once

#include "model/checkpoint.h"
#include "model/effective_states.h"
#include "model/entry_steps.h"

#include <string>

namespace smh {

// What a change came to, for the host.
struct ChangeAnswer {
  enum class Kind {
    kDone,     // it was read back and is there
    kNothing,  // there was nothing to do
    kRefused,  // it did not come about, without an error of the system
    kGone,     // there is no such entry any more
  };
  Kind kind = Kind::kDone;
  // For people; empty for what is done and for nothing to do.
  std::wstring text{};
  // Of an added entry in the list; -1 for none.
  int position = -1;

  static ChangeAnswer Nothing() { return {.kind = Kind::kNothing}; }
  static ChangeAnswer Refused() {
    return {.kind = Kind::kRefused, .text = L"the change was refused without an error"};
  }
  static ChangeAnswer Gone() { return {.kind = Kind::kGone, .text = L"the entry has gone"}; }
};

// Writes `target`, then removes `source`; `switches` go along, step by step. Each may
// be null. Whether all is done. When it is not, or when a
// step raises, which is raised again, what was done is taken back: through the journal when the change is
// recorded, the rest by the steps themselves. A source that cannot be put back keeps its target: the entry
// stands in one place at least. For the thread of the change, without the list's lock or an item's.
bool CarryEntry(EntryTarget* target, EntrySource* source, SwitchSteps* switches,
                ChangeCheckpoint& checkpoint);

}  // namespace smh
