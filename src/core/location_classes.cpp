#include "core/location_classes.h"

#include "locations/folders/folder_classes.h"
#include "locations/registry/run_key_classes.h"
#include "locations/registry/shell_extension_classes.h"

namespace smh {

namespace {

constexpr LocationClass kLocationClasses[] = {
    MakeFolderLocation<0>,   MakeFolderLocation<1>,   MakeShellExtLocation<0>, MakeHandlerLocation<0>,
    MakeHandlerLocation<1>,  MakeHandlerLocation<2>,  MakeHandlerLocation<3>,  MakeHandlerLocation<4>,
    MakeHandlerLocation<5>,  MakeHandlerLocation<6>,  MakeHandlerLocation<7>,  MakeHandlerLocation<8>,
    MakeHandlerLocation<9>,  MakeHandlerLocation<10>, MakeHandlerLocation<11>, MakeHandlerLocation<12>,
    MakeHandlerLocation<13>, MakeHandlerLocation<14>, MakeHandlerLocation<15>, MakeHandlerLocation<16>,
    MakeHandlerLocation<17>, MakeHandlerLocation<18>, MakeHandlerLocation<19>, MakeHandlerLocation<20>,
    MakeHandlerLocation<21>, MakeHandlerLocation<22>, MakeHandlerLocation<23>, MakeHandlerLocation<24>,
    MakeRunKeyLocation<0>,   MakeRunKeyLocation<1>,   MakeRunKeyLocation<2>,   MakeRunKeyLocation<3>,
    MakeRunKeyLocation<4>,   MakeRunKeyLocation<5>,   MakeRunKeyLocation<6>,   MakeRunKeyLocation<7>,
    MakeHandlerLocation<25>, MakeShellExtLocation<1>, MakeShellExtLocation<2>,
};
static_assert(std::size(kLocationClasses) == kLocationCount - 1);

}  // namespace

void RegisterLocationClasses() {
  for (const LocationClass locationClass : kLocationClasses) RegisterLocationClass(locationClass);
}

}  // namespace smh
