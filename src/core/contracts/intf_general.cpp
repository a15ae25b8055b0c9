#include "core/contracts/intf_general.h"

#include "infra/siblings/uInterfacesRoutines.h"

namespace smh {

IHelper* GetHelper() {
  return static_cast<IHelper*>(GetSiblingService(SiblingService::kHelper));
}

IGlobals* GetGlobals() {
  return static_cast<IGlobals*>(GetSiblingService(SiblingService::kGlobals));
}

IShellHelper* GetShellHelper() {
  return static_cast<IShellHelper*>(GetSiblingService(SiblingService::kShellHelper));
}

IShellDialogsHelper* GetShellDialogsHelper() {
  return static_cast<IShellDialogsHelper*>(GetSiblingService(SiblingService::kShellDialogsHelper));
}

}  // namespace smh
