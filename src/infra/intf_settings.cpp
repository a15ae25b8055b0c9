#include "infra/intf_settings.h"

#include "infra/uInterfacesRoutines.h"

namespace smh {

ISettings* GetSettings() {
  return static_cast<ISettings*>(GetSiblingService(SiblingService::kSettings));
}

}  // namespace smh
