#include "model/uLocationStartup.h"

#include "infra/runtime/critical_section.h"
#include "model/checkpoint.h"
#include "model/reading.h"

#include <atomic>
#include <utility>

namespace smh {

namespace {

using LocationList = std::vector<std::unique_ptr<TLocationStartup>>;

struct LocationState {
  // The location-list lock: guards nothing but the making of the list. A leaf, except that the constructors
  // of the locations open registry keys and folders under it.
  CriticalSection lock;
  std::vector<LocationClass> classes;
  LocationList list;
  // Published once the list is complete.
  std::atomic<const LocationList*> ready{nullptr};
};

LocationState* g_locations = nullptr;

}  // namespace

void RegisterLocationClass(LocationClass locationClass) {
  g_locations->classes.push_back(locationClass);
}

const LocationList& Locations() {
  LocationState& state = *g_locations;
  if (const LocationList* const ready = state.ready.load(std::memory_order_acquire)) return *ready;
  ScopedLock lock(state.lock);
  if (state.ready.load(std::memory_order_relaxed) == nullptr) {
    LocationList list;
    for (const LocationClass make : state.classes) list.push_back(make());
    state.list = std::move(list);
    state.ready.store(&state.list, std::memory_order_release);
  }
  return state.list;
}

TLocationStartup* FindLocation(TTypeStartupLocation type) {
  for (const auto& location : Locations()) {
    if (location->LocationType() == type) return location.get();
  }
  return nullptr;
}

void StartLocations() {
  g_locations = new LocationState();
  StartCheckpointTexts();
  StartReader();
}

void FreeLocations() noexcept {
  StopCheckpointTexts();
  delete std::exchange(g_locations, nullptr);
}

}  // namespace smh
