#include "core/location_classes.h"

#include "locations/folders/folder_classes.h"
#include "locations/registry/run_key_classes.h"

namespace smh {

namespace {

constexpr LocationClass kLocationClasses[] = {
    MakeFolderLocation<0>, MakeFolderLocation<1>, MakeRunKeyLocation<0>, MakeRunKeyLocation<1>,
    MakeRunKeyLocation<2>, MakeRunKeyLocation<3>, MakeRunKeyLocation<4>, MakeRunKeyLocation<5>,
    MakeRunKeyLocation<6>, MakeRunKeyLocation<7>,
};
static_assert(std::size(kLocationClasses) == kFolderClassCount + kRunKeyClassCount);

}  // namespace

void RegisterLocationClasses() {
  for (const LocationClass locationClass : kLocationClasses) RegisterLocationClass(locationClass);
}

}  // namespace smh
