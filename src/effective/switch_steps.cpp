#include "effective/switch_steps.h"

#include "core/contracts/uDllGlobals.h"
#include "effective/judgement.h"
#include "effective/rule_key.h"
#include "infra/runtime/embedded_nul.h"
#include "infra/runtime/text.h"
#include "locations/registry/entry_store.h"
#include "model/change_refused.h"
#include "model/item_list.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace smh {

namespace {

// The value of one switch, and what is to stand there; nothing for one that goes.
struct SwitchStep {
  RegistryValueAddress address;
  KeptEntry before;
  std::optional<RegistryData> after;
  bool isBegun = false;
};

// A switch as it stands.
struct FoundSwitch {
  RegistryValueAddress address;
  KeptEntry kept;

  Told IsOff() const {
    const std::optional<RegistryData> data = DataOf(kept);
    return data ? ReadSwitchValue(data->type, data->bytes).isOff : Told::kNo;
  }
};

class RegistrySwitchSteps final : public SwitchSteps {
 public:
  explicit RegistrySwitchSteps(bool recorded) noexcept : recorded_(recorded), store_(recorded) {}

  void AtPrepare(SwitchStep step) { first_.push_back(std::move(step)); }
  void AtArrive(SwitchStep step) { then_.push_back(std::move(step)); }
  void AtFinish(SwitchStep step) { last_.push_back(std::move(step)); }
  bool IsEmpty() const noexcept { return first_.empty() && then_.empty() && last_.empty(); }

  bool Prepare() override { return Run(first_); }
  bool Arrive() override { return RunBehindEntry(then_); }
  bool Finish() override { return RunBehindEntry(last_); }
  void TakeBack() noexcept override {
    TakeBack(last_);
    TakeBack(then_);
    TakeBack(first_);
  }

 private:
  // What is changed now is no copy of the entry.
  bool RunBehindEntry(std::vector<SwitchStep>& steps) const {
    if (recorded_ && !steps.empty()) DLLGlobals::Safeguard().SetSource(nullptr, nullptr, nullptr);
    return Run(steps);
  }
  bool Run(std::vector<SwitchStep>& steps) const {
    return std::ranges::all_of(steps, [this](SwitchStep& step) {
      if (!step.after)
        return store_.Delete(
            step.address, step.before, [] { return true; }, step.isBegun);
      step.isBegun = true;
      return store_.Write(step.address, *step.after, step.before);
    });
  }
  void TakeBack(const std::vector<SwitchStep>& steps) const noexcept {
    for (auto step = steps.rbegin(); step != steps.rend(); ++step) {
      if (!step->isBegun) continue;
      if (step->after) {
        store_.TakeBack(step->address, *step->after, step->before);
      } else {
        store_.PutBack(step->before, true);
      }
    }
  }

  const bool recorded_;
  const ValueStore store_;
  std::vector<SwitchStep> first_;
  std::vector<SwitchStep> then_;
  std::vector<SwitchStep> last_;
};

// Whether an enabled entry of that name stands in the location, too: then the switch is that one's.
bool IsOwnedByAnother(const SwitchOwner& owner, std::wstring_view name) {
  if (owner.entry.isEnabled) return false;
  const LocationRow& row = LocationRowOf(owner.location);
  if (row.family != LocationFamily::kStartupFolder) {
    RegistryValueAddress place(owner.entry.address);
    place.key = row.place;
    ValueKeys keys(false);
    return !KeepValue(place, keys).empty();
  }
  std::vector<ItemRef> items;
  {
    ScopedLock lock(Items().Lock());
    items = Items().Snapshot();
  }
  return std::ranges::any_of(items, [&](const ItemRef& item) {
    return item->Location() == owner.location && item->Get([&](const ItemState& state) {
      return state.isEnabled && SameText(FileNamePart(state.name), name);
    });
  });
}

// Where the switches of an entry are; none for one that has none.
std::vector<FoundSwitch> SwitchesOf(const SwitchOwner& owner) {
  const StartRow row = StartRowOf(owner.location);
  const SharedValueAddress& address = owner.entry.address;
  const std::wstring_view name = SwitchName(owner.entry.name, address);
  std::vector<FoundSwitch> found;
  if (row.switches == SwitchList::kNone || HoldsNul(name) || IsOwnedByAnother(owner, name)) return found;
  const HKEY root =
      SwitchRoot(owner.location) == LocationRoot::kUser ? HKEY_CURRENT_USER : HKEY_LOCAL_MACHINE;
  ValueKeys keys(false);
  const auto add = [&](SwitchList list) {
    FoundSwitch one;
    one.address = {SystemView(), root, SwitchKeyPath(list), std::wstring(name)};
    one.kept = KeepValue(one.address, keys);
    found.push_back(std::move(one));
  };
  const bool isViewed = SystemView() != 0 && row.switches32 != SwitchList::kNone;
  const bool isPlain = isViewed && address.viewBits != SystemView();
  if (!isPlain) add(row.switches);
  if (isPlain || (isViewed && owner.hasTwin)) add(row.switches32);
  return found;
}

// The one that says whether the entry is off: it starts when one of them is on.
const FoundSwitch* Telling(const std::vector<FoundSwitch>& switches) {
  const FoundSwitch* telling = nullptr;
  for (const Told wanted : {Told::kNo, Told::kUntold, Told::kYes}) {
    for (const FoundSwitch& one : switches) {
      if (telling == nullptr && one.IsOff() == wanted) telling = &one;
    }
  }
  return telling;
}

[[noreturn]] void RefuseUnknownForm() {
  throw EChangeRefused(ERROR_NOT_SUPPORTED, L"The form of the entry's switch in Windows is not known.");
}

// Enabled or disabled it has the same switch.
bool IsSameOwner(const SwitchOwner& a, const SwitchOwner& b) {
  const SharedValueAddress& from = a.entry.address;
  const SharedValueAddress& to = b.entry.address;
  return a.location == b.location && from.viewBits == to.viewBits && a.hasTwin == b.hasTwin &&
         SameText(SwitchName(a.entry.name, from), SwitchName(b.entry.name, to));
}

bool IsAmong(const FoundSwitch& one, const std::vector<FoundSwitch>& others) {
  return std::ranges::any_of(others, [&](const FoundSwitch& other) {
    return one.address.key == other.address.key && one.address.root == other.address.root &&
           SameText(one.address.valueName, other.address.valueName);
  });
}

}  // namespace

std::unique_ptr<SwitchSteps> PlanCarriedSwitch(const WindowsRelease& release, const SwitchOwner* from,
                                               const SwitchOwner* to, bool recorded) {
  if (release < kWindows8 || (from != nullptr && to != nullptr && IsSameOwner(*from, *to))) return nullptr;
  std::vector<FoundSwitch> old;
  std::vector<FoundSwitch> now;
  if (from != nullptr) old = SwitchesOf(*from);
  if (to != nullptr) now = SwitchesOf(*to);
  const FoundSwitch* const telling = Telling(old);
  const Told isOff = telling == nullptr ? Told::kNo : telling->IsOff();
  if (to != nullptr && to->entry.isEnabled && now.empty() && isOff != Told::kNo) {
    throw EChangeRefused(ERROR_NOT_SUPPORTED,
                         L"The entry is switched off in Task Manager, and the new place has no such switch.");
  }
  auto steps = std::make_unique<RegistrySwitchSteps>(recorded);
  for (FoundSwitch& one : now) {
    // In its own place it has its switch already.
    if (IsAmong(one, old) || (isOff == Told::kNo && one.IsOff() == Told::kNo)) continue;
    SwitchStep step;
    step.address = one.address;
    step.before = one.kept;
    if (telling != nullptr) step.after = DataOf(telling->kept);
    if (DataOf(one.kept) == step.after) continue;
    // What nobody knows may be lost only where an undo has it.
    if (!recorded && one.IsOff() == Told::kUntold) RefuseUnknownForm();
    isOff == Told::kNo ? steps->AtArrive(std::move(step)) : steps->AtPrepare(std::move(step));
  }
  for (FoundSwitch& one : old) {
    if (one.kept.empty() || IsAmong(one, now)) continue;
    SwitchStep step;
    step.address = one.address;
    step.before = one.kept;
    steps->AtFinish(std::move(step));
  }
  if (steps->IsEmpty()) return nullptr;
  return steps;
}

std::unique_ptr<SwitchSteps> PlanSetSwitch(const WindowsRelease& release, const SwitchOwner& entry, bool off,
                                           bool recorded) {
  std::vector<FoundSwitch> switches;
  if (release >= kWindows8) switches = SwitchesOf(entry);
  if (switches.empty()) throw EChangeRefused(ERROR_NOT_SUPPORTED, L"Windows has no switch for the entry.");
  FILETIME time;
  GetSystemTimeAsFileTime(&time);
  auto steps = std::make_unique<RegistrySwitchSteps>(recorded);
  for (FoundSwitch& one : switches) {
    if (one.IsOff() == (off ? Told::kYes : Told::kNo)) continue;
    SwitchStep step;
    step.address = one.address;
    step.before = one.kept;
    step.after = WithSwitch(DataOf(one.kept), off, time);
    if (!step.after) RefuseUnknownForm();
    steps->AtPrepare(std::move(step));
  }
  if (steps->IsEmpty()) return nullptr;
  return steps;
}

}  // namespace smh
