#include "core/contracts/intf_DebugLog.h"

#include "infra/siblings/uInterfacesRoutines.h"

namespace smh {

IDebugLog* GetDebugLogService() {
  return static_cast<IDebugLog*>(GetSiblingService(SiblingService::kDebugLog));
}

}  // namespace smh
