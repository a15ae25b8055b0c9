// The system's own say in what starts: reads it, watches it, and changes the switches in it.
#pragma once

#include "effective/judgement.h"
#include "infra/runtime/critical_section.h"
#include "infra/runtime/module_global.h"
#include "model/effective_states.h"

#include <memory>

namespace smh {

// Threads and failures are those of EffectiveStates.
class SystemStates final : public EffectiveStates {
 public:
  using ReleaseSource = WindowsRelease (*)();
  // `release` is asked by every Read.
  explicit SystemStates(ReleaseSource release = CurrentRelease) noexcept : release_(release) {}

  EffectiveState StateOf(const TStartupItem& item) const override;
  bool IsChanged() override { return false; }
  void Read(bool extensions) override;
  void ReadAgain() override {}
  std::unique_ptr<SwitchSteps> PlanCarry(const SwitchOwner* from, const SwitchOwner* to,
                                         bool recorded) override;
  std::unique_ptr<SwitchSteps> PlanSwitch(const SwitchOwner& entry, bool off, bool recorded) override;

 private:
  std::shared_ptr<const SystemRules> Rules() const;

  const ReleaseSource release_;
  // A leaf.
  mutable CriticalSection lock_;
  std::shared_ptr<const SystemRules> rules_ SMH_GUARDED_BY(lock_) = std::make_shared<SystemRules>();
};

// From the module's start to its stop.
extern ModuleGlobal<SystemStates> g_systemStates;

}  // namespace smh
