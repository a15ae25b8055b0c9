// State of a module that lives from its start-up to its shut-down, and its row of the start-up table.
#pragma once

#include "infra/runtime/assertion.h"
#include "infra/runtime/module_steps.h"

#include <utility>

namespace smh {

// A global that owns one default-constructed State between Start and Stop. It is itself constant-initialised
// and trivially destroyed, so that it may be defined `constinit` and nothing runs outside the start-up table:
//
//   in the header        struct CheckpointTexts;
//                        extern ModuleGlobal<CheckpointTexts> g_checkpointTexts;
//   in the source        constinit ModuleGlobal<CheckpointTexts> g_checkpointTexts(L"checkpoint");
//   in the table         StepOf<g_checkpointTexts>(L"checkpoint texts"),
//
// State needs to be complete only where the global is defined. Start and Stop are called by one thread while
// no other uses the global; in between any thread may, and what State holds has locks of its own.
template <typename State>
class ModuleGlobal {
 public:
  // `unit` names the unit in assertions; their line is that of the global's definition.
  constexpr explicit ModuleGlobal(const wchar_t* unit, int line = __builtin_LINE()) noexcept
      : make_(Make), destroy_(Destroy), unit_(unit), line_(line) {}
  ModuleGlobal(const ModuleGlobal&) = delete;
  ModuleGlobal& operator=(const ModuleGlobal&) = delete;

  // Makes the state. What its constructor throws goes on, and nothing is left behind. Raises EAssertionFailed
  // when it is started already.
  void Start() {
    if (state_ != nullptr) RaiseAssertion(unit_, line_);
    state_ = make_();
  }
  // Destroys the state; nothing when it is not started. What the destructor asks of this global is answered
  // as after the stop.
  void Stop() noexcept {
    if (State* const state = std::exchange(state_, nullptr)) destroy_(state);
  }

  // For code that must survive being called too early or too late.
  bool IsStarted() const noexcept { return state_ != nullptr; }

  // The state, borrowed. Raise EAssertionFailed before the start and after the stop.
  State& operator*() const {
    if (state_ == nullptr) RaiseAssertion(unit_, line_);
    return *state_;
  }
  State* operator->() const { return &**this; }

 private:
  static State* Make() { return new State; }
  static void Destroy(State* state) noexcept { delete state; }

  State* state_ = nullptr;
  // Known where State is complete.
  State* (*const make_)();
  void (*const destroy_)(State*) noexcept;
  const wchar_t* const unit_;
  const int line_;
};

// The row of a global: started and stopped by it, but left as it is once the mode is broken. `beforeStop`
// comes first, in every mode, and may break it.
template <auto& global, void (*beforeStop)(StopMode& mode) noexcept = nullptr>
constexpr ModuleStep StepOf(const wchar_t* name) noexcept {
  return {name, [] { global.Start(); },
          [](StopMode& mode) noexcept {
            if constexpr (beforeStop != nullptr) beforeStop(mode);
            if (mode == StopMode::kUnload) global.Stop();
          }};
}

}  // namespace smh
