#include "effective/system_states.h"

#include "model/change_refused.h"

#include <utility>

namespace smh {

constinit ModuleGlobal<SystemStates> g_systemStates(L"system_states");

std::shared_ptr<const SystemRules> SystemStates::Rules() const {
  ScopedLock lock(lock_);
  return rules_;
}

EffectiveState SystemStates::StateOf(const TStartupItem& item) const {
  return Judge(*Rules(), item);
}

void SystemStates::Read(bool) {
  auto fresh = std::make_shared<SystemRules>();
  fresh->release = release_();
  ScopedLock lock(lock_);
  rules_ = std::move(fresh);
}

std::unique_ptr<SwitchSteps> SystemStates::PlanCarry(const SwitchOwner*, const SwitchOwner*, bool) {
  return nullptr;
}

std::unique_ptr<SwitchSteps> SystemStates::PlanSwitch(const SwitchOwner&, bool, bool) {
  throw EChangeRefused(ERROR_NOT_SUPPORTED, L"The entry has no switch.");
}

}  // namespace smh
