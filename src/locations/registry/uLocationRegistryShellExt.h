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
  bool ReadEntry(RegistryLoad& load, const Place& place, std::wstring_view name,
                 std::wstring_view text) override;
  // Under the same name, with the description that was just read.
  SwitchPlace PlaceToSwitch(const RegistrySource& source, bool enable) const override;
  std::shared_ptr<const EntryStore> Store(bool recorded) const override;
  FoundEntry ListAt(const RegistryValueAddress& address, const RegistryData& data) const override;
  std::wstring NameInPlace(const ItemState& listed) const override;
};

}  // namespace smh
