#include "model/location_list.h"

#include "infra/runtime/critical_section.h"
#include "infra/runtime/lazy.h"

namespace smh {

using LocationList = std::vector<std::unique_ptr<TLocationStartup>>;

struct ModuleLocations {
  // The location-list lock: guards nothing but the making of the list. A leaf, except that the constructors
  // of the locations open registry keys and folders under it.
  CriticalSection lock;
  LocationMaker make = nullptr;
  Lazy<const LocationList> list{lock};
};

constinit ModuleGlobal<ModuleLocations> g_locations(L"location_list");

void SetLocationMaker(LocationMaker maker) {
  g_locations->make = maker;
}

const LocationList& Locations() {
  ModuleLocations& locations = *g_locations;
  return locations.list.Get([&locations] {
    LocationList list;
    for (const TTypeStartupLocation type : kLocationListOrder) {
      list.push_back(locations.make(LocationRowOf(type)));
    }
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
