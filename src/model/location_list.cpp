#include "model/uLocationStartup.h"

#include "infra/runtime/critical_section.h"
#include "infra/runtime/lazy.h"

#include <memory>
#include <vector>

namespace smh {

using LocationList = std::vector<std::unique_ptr<TLocationStartup>>;

struct ModuleLocations {
  // The location-list lock: guards nothing but the making of the list. A leaf, except that the constructors
  // of the locations open registry keys and folders under it.
  CriticalSection lock;
  std::vector<LocationClass> classes;
  Lazy<const LocationList> list{lock};
};

constinit ModuleGlobal<ModuleLocations> g_locations(L"location_list");

void RegisterLocationClass(LocationClass locationClass) {
  g_locations->classes.push_back(locationClass);
}

const LocationList& Locations() {
  ModuleLocations& locations = *g_locations;
  return locations.list.Get([&locations] {
    LocationList list;
    for (const LocationClass make : locations.classes) list.push_back(make());
    return list;
  });
}

TLocationStartup* FindLocation(TTypeStartupLocation type) {
  for (const auto& location : Locations()) {
    if (location->LocationType() == type) return location.get();
  }
  return nullptr;
}

}  // namespace smh
