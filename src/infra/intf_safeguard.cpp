#include "infra/intf_safeguard.h"

#include "infra/uInterfacesRoutines.h"

namespace smh {

ISafeguard* GetSafeguard() {
  return static_cast<ISafeguard*>(GetSiblingService(SiblingService::kSafeguard));
}

}  // namespace smh
