#include "core/contracts/intf_FileRater.h"

#include "infra/siblings/uInterfacesRoutines.h"

namespace smh {

IFileRater* GetFileRater() {
  return static_cast<IFileRater*>(GetSiblingService(SiblingService::kFileRater));
}

}  // namespace smh
