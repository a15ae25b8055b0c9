#include "core/contracts/intf_settings.h"

#include "infra/siblings/uInterfacesRoutines.h"

namespace smh {

ISettings* GetSettings() {
  return static_cast<ISettings*>(GetSiblingService(SiblingService::kSettings));
}

}  // namespace smh
