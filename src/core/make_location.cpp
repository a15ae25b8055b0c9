#include "core/make_location.h"

#include "infra/runtime/assertion.h"
#include "locations/folders/uLocationFolderStd.h"
#include "locations/registry/uLocationRegistryShellExt.h"
#include "locations/registry/uLocationRegistryShellHandlers.h"
#include "locations/registry/uLocationRegistryStd.h"

namespace smh {

std::unique_ptr<TLocationStartup> MakeLocation(const LocationRow& row) {
  switch (row.family) {
    case LocationFamily::kStartupFolder:
      return std::make_unique<TLocationFolderStd>(row);
    case LocationFamily::kRunKey:
      return std::make_unique<TLocationRegistryStd>(row);
    case LocationFamily::kHandlers:
    case LocationFamily::kBrowserObjects:
      return std::make_unique<TLocationRegistryShellHandlers>(row);
    case LocationFamily::kApproved:
    case LocationFamily::kSearchHooks:
      return std::make_unique<TLocationRegistryShellExt>(row);
    case LocationFamily::kNone:
      break;
  }
  SMH_ASSERT(L"make_location", row.family != LocationFamily::kNone);
  return nullptr;
}

}  // namespace smh
