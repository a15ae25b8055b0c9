#include "infra/intf_DebugLog.h"

#include "infra/uInterfacesRoutines.h"

namespace smh {

IDebugLog* GetDebugLogService() {
  return static_cast<IDebugLog*>(GetSiblingService(SiblingService::kDebugLog));
}

}  // namespace smh
