#include "core/contracts/intf_safeguard.h"

#include "infra/siblings/uInterfacesRoutines.h"

namespace smh {

ISafeguard* GetSafeguard() {
  return static_cast<ISafeguard*>(GetSiblingService(SiblingService::kSafeguard));
}

}  // namespace smh
