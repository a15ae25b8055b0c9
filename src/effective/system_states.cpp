#include "effective/system_states.h"

#include "effective/rule_key.h"
#include "effective/switch_steps.h"
#include "model/item_list.h"

#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

namespace smh {

namespace {

std::vector<WatchedKey> BelowBothRoots(std::initializer_list<const wchar_t*> paths) {
  std::vector<WatchedKey> keys;
  for (const wchar_t* path : paths) {
    for (const HKEY root : {HKEY_LOCAL_MACHINE, HKEY_CURRENT_USER}) {
      keys.push_back({root, std::wstring(kCurrentVersion).append(path)});
    }
  }
  return keys;
}

std::vector<WatchedKey> KeysOfExtensions() {
  std::vector<WatchedKey> keys = BelowBothRoots({L"Shell Extensions", L"Policies\\Ext", L"Ext\\Settings"});
  for (const HKEY root : {HKEY_LOCAL_MACHINE, HKEY_CURRENT_USER}) {
    keys.push_back({root, L"Software\\Microsoft\\Internet Explorer\\Main"});
  }
  return keys;
}

// Armed before what it watches is read.
template <typename Keys>
void Arm(std::optional<KeyWatch>& watch, Keys&& keys) {
  if (watch) {
    watch->Accept();
  } else {
    watch.emplace(keys());
  }
}

// One that gets further facts is marked then.
void MarkThoseThatDiffer(const SystemRules& before, const SystemRules& now) {
  std::vector<ItemRef> items;
  {
    ScopedLock lock(Items().Lock());
    items = Items().Snapshot();
  }
  for (const ItemRef& item : items) {
    if (item->NeedsExtendedInfo() || Judge(before, *item) == Judge(now, *item)) continue;
    item->MarkChanged();
  }
}

}  // namespace

constinit ModuleGlobal<SystemStates> g_systemStates(L"system_states");

SystemStates::SharedRules SystemStates::Rules() const {
  ScopedLock lock(lock_);
  return rules_;
}

EffectiveState SystemStates::StateOf(const TStartupItem& item) const {
  return Judge(*Rules(), item);
}

bool SystemStates::IsChanged() {
  if (owesRead_ || (watch_ && watch_->IsDue())) return true;
  return readsExtensions_.load() && extensionWatch_ && extensionWatch_->IsDue();
}

void SystemStates::Watch() {
  Arm(watch_, [] { return BelowBothRoots({L"Explorer\\StartupApproved", L"Policies\\Explorer"}); });
  if (readsExtensions_.load()) Arm(extensionWatch_, KeysOfExtensions);
}

void SystemStates::Read(bool extensions) {
  readsExtensions_.store(extensions);
  owesRead_ = true;
  Watch();
  ReadAgain();
  owesRead_ = false;
}

void SystemStates::ReadAgain() {
  unsigned begun = 0;
  {
    ScopedLock lock(lock_);
    begun = ++begun_;
  }
  const auto fresh = std::make_shared<SystemRules>();
  fresh->isRead = true;
  fresh->release = release_();
  fresh->hasViews = SystemView() != 0;
  fresh->switches.Read();
  fresh->policies.Read();
  if (readsExtensions_.load()) fresh->extensions.Read(fresh->policies.EnforcesApproval() != Told::kNo);
  SharedRules before;
  {
    ScopedLock lock(lock_);
    if (begun < shown_) return;
    shown_ = begun;
    before = std::exchange(rules_, fresh);
  }
  MarkThoseThatDiffer(*before, *fresh);
}

std::unique_ptr<SwitchSteps> SystemStates::PlanCarry(const SwitchOwner* from, const SwitchOwner* to,
                                                     bool recorded) {
  return PlanCarriedSwitch(release_(), from, to, recorded);
}

std::unique_ptr<SwitchSteps> SystemStates::PlanSwitch(const SwitchOwner& entry, bool off, bool recorded) {
  return PlanSetSwitch(release_(), entry, off, recorded);
}

}  // namespace smh
