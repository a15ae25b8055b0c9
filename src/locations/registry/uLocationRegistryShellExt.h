// Keys that hold one value per class identifier: the name is the class, the data a description, and the file
// is the class's in-process server.
#pragma once

#include "locations/registry/registry_location.h"

namespace smh {

// The threads and failures of its operations are those of TLocationStartup.
class TLocationRegistryShellExt final : public TLocationRegistry {
 public:
  // For a row of the families of approved extensions and of URL search hooks. Raises EOSError.
  explicit TLocationRegistryShellExt(const LocationRow& row) : TLocationRegistry(row) {}

  bool ItemExists(const TStartupItem& item) override;
  // Nothing can be moved here.
  bool CanAcceptItem(const TStartupItem&) override { return false; }

 protected:
  bool ReadKey(RegistryLoad& load, const Place& place) override;
  Switch PlanSwitch(const TStartupItem& item, const RegistryData& source, bool enable) override;
  std::unique_ptr<EntryStore> Store(bool recorded) const override;
};

}  // namespace smh
