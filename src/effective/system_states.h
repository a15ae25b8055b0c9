// The system's own say in what starts: reads it, watches it, and changes the switches in it.
#pragma once

#include "effective/judgement.h"
#include "infra/runtime/critical_section.h"
#include "infra/runtime/module_global.h"
#include "locations/registry/key_watch.h"
#include "model/effective_states.h"

#include <atomic>
#include <memory>
#include <optional>

namespace smh {

// Threads and failures are those of EffectiveStates.
class SystemStates final : public EffectiveStates {
 public:
  // Asked by every reading and every plan.
  using ReleaseSource = WindowsRelease (*)() noexcept;
  // Another Windows than the one that runs, for tests, while nobody else uses the object.
  void SetRelease(ReleaseSource release) noexcept { release_ = release; }

  EffectiveState StateOf(const TStartupItem& item) const override;
  bool IsChanged() override;
  void Read(bool extensions) override;
  void ReadAgain() override;
  std::unique_ptr<SwitchSteps> PlanCarry(const SwitchOwner* from, const SwitchOwner* to,
                                         bool recorded) override;
  std::unique_ptr<SwitchSteps> PlanSwitch(const SwitchOwner& entry, bool off, bool recorded) override;

 private:
  using SharedRules = std::shared_ptr<const SystemRules>;
  SharedRules Rules() const;
  void Watch();

  ReleaseSource release_ = CurrentRelease;
  std::atomic<bool> readsExtensions_{false};
  // The next three are the reader's thread's.
  std::optional<KeyWatch> watch_;
  std::optional<KeyWatch> extensionWatch_;
  bool owesRead_ = false;
  // A leaf.
  mutable CriticalSection lock_;
  SharedRules rules_ SMH_GUARDED_BY(lock_) = std::make_shared<SystemRules>();
  // Readings by their beginnings: one that began before that which is shown is not shown any more.
  unsigned begun_ SMH_GUARDED_BY(lock_) = 0;
  unsigned shown_ SMH_GUARDED_BY(lock_) = 0;
};

// From the module's start to its stop.
extern ModuleGlobal<SystemStates> g_systemStates;

}  // namespace smh
