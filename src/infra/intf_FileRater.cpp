#include "infra/intf_FileRater.h"

#include "infra/uInterfacesRoutines.h"

namespace smh {

IFileRater* GetFileRater() {
  return static_cast<IFileRater*>(GetSiblingService(SiblingService::kFileRater));
}

}  // namespace smh
