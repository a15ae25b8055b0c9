#include "model/effective_states.h"

#include <atomic>

namespace smh {

namespace {

constinit std::atomic<EffectiveStates*> g_effectiveStates{nullptr};

}  // namespace

void SetEffectiveStates(EffectiveStates* states) noexcept {
  g_effectiveStates.store(states);
}

EffectiveStates* TheEffectiveStates() noexcept {
  return g_effectiveStates.load();
}

EffectiveState EffectiveStateOf(const TStartupItem& item) {
  const EffectiveStates* const states = TheEffectiveStates();
  return states == nullptr ? EffectiveState() : states->StateOf(item);
}

}  // namespace smh
