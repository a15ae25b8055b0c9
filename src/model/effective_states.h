// Whether Windows would start what is listed: what the model knows of that. The switches, policies and lists
// that decide it are read and written above this layer (effective/), which is given in at the module's start.
#pragma once

#include "core/contracts/StartupManagerHelper.h"
#include "infra/runtime/module_global.h"
#include "model/uStartupItem.h"

#include <cstdint>
#include <memory>
#include <optional>

namespace smh {

// Of one entry.
struct EffectiveState {
  StartsAnswer starts = kStartsUnknown;
  // StartReason flags.
  std::int32_t reasons = 0;
  // UTC; 0 when the switch is on, or does not say.
  FILETIME switchedOffSince = {};
  bool canSwitch = false;
  // By themselves; none for those that do not read the entry.
  std::optional<StartsAnswer> starts64{};
  std::optional<StartsAnswer> starts32{};

  bool operator==(const EffectiveState& other) const noexcept {
    return starts == other.starts && reasons == other.reasons &&
           CompareFileTime(&switchedOffSince, &other.switchedOffSince) == 0 && canSwitch == other.canSwitch &&
           starts64 == other.starts64 && starts32 == other.starts32;
  }
};

// An entry as the owner of a switch: where it stands, or will stand.
struct SwitchOwner {
  TTypeStartupLocation location = sulNone;
  FoundEntry entry;
  // It stands in the 32-bit view of the registry too.
  bool hasTwin = false;
};

// What a change does to switches, besides the entry itself. For the thread of the change, in its checkpoint
// when it is recorded. Each step answers false when the switch did not arrive without an error; then, as
// after what they raise, TakeBack is due.
class SwitchSteps {
 public:
  virtual ~SwitchSteps() = default;
  SwitchSteps(const SwitchSteps&) = delete;
  SwitchSteps& operator=(const SwitchSteps&) = delete;

  // Before the entry is written: what is off must not be on for a moment.
  virtual bool Prepare() = 0;
  // Once it stands in its new place, and still in the old one: what is on there is so only now.
  virtual bool Arrive() = 0;
  // Once the entry has gone from where it was.
  virtual bool Finish() = 0;
  // Where a step was made, puts back what stood there.
  virtual void TakeBack() noexcept = 0;

 protected:
  SwitchSteps() = default;
};

// What reads and writes the system's switches.
class EffectiveStates {
 public:
  virtual ~EffectiveStates() = default;
  EffectiveStates(const EffectiveStates&) = delete;
  EffectiveStates& operator=(const EffectiveStates&) = delete;

  // By what was read last. Any thread; takes the item's lock and a leaf, neither disk nor registry.
  virtual EffectiveState StateOf(const TStartupItem& item) const = 0;

  // Whether something has changed since the last Read. The reader's thread only; one call of the system as
  // long as there is nothing.
  virtual bool IsChanged() = 0;
  // Begins to watch, once, and reads anew; marks the listed items for which the answer changes. `extensions`:
  // also what decides about extensions, which are read on request only. The reader's thread only, without a
  // lock; raises what reading raises.
  virtual void Read(bool extensions) = 0;
  // The same for the thread of a change, behind it: reads anew what is read, without the watches.
  virtual void ReadAgain() = 0;

  // What is to be done when an entry comes, goes or is moved: `from` or `to` may be null. Null when nothing
  // is. Reads, and writes nothing. Raises EChangeRefused for what is off and would not be in its new place.
  virtual std::unique_ptr<SwitchSteps> PlanCarry(const SwitchOwner* from, const SwitchOwner* to,
                                                 bool recorded) = 0;
  // The same to put the switch of a listed entry off or on; null when it is that already. Raises
  // EChangeRefused for one that cannot be set.
  virtual std::unique_ptr<SwitchSteps> PlanSwitch(const SwitchOwner& entry, bool off, bool recorded) = 0;

 protected:
  EffectiveStates() = default;
};

// For module start-up, before any call below; borrowed until the module's stop.
void SetEffectiveStates(EffectiveStates* states) noexcept;
// Null before that.
EffectiveStates* TheEffectiveStates() noexcept;
// Of an item; unknown without them.
EffectiveState EffectiveStateOf(const TStartupItem& item);

}  // namespace smh
