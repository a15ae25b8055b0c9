// The Run-key locations: every value of a Run key is an entry, its name the entry's name, its data the
// command line. Disabled entries live in side keys; the first is this system's own and the only one it
// writes, the others hold what other tools have disabled, listed as disabled and enabled the same way.
#pragma once

#include "locations/registry/registry_location.h"

namespace smh {

// The threads and failures of its operations are those of TLocationStartup.
class TLocationRegistryStd final : public TLocationRegistry {
 public:
  // For a row of the Run-key family. Raises EOSError.
  explicit TLocationRegistryStd(const LocationRow& row) : TLocationRegistry(row) {}

  bool ItemExists(const TStartupItem& item) override;
  // Refuses an entry whose file is missing, too, unless it comes from a Run or RunOnce key.
  bool CanAcceptItem(const TStartupItem& item) override;

 protected:
  bool ReadEntry(RegistryLoad& load, const Place& place, std::wstring_view name,
                 std::wstring_view text) override;
  SwitchPlace PlaceToSwitch(const RegistrySource& source, bool enable) const override;
  std::shared_ptr<const EntryStore> Store(bool recorded) const override;
  FoundEntry ListAt(const RegistryValueAddress& address, const RegistryData& data) const override;
  std::wstring NameInPlace(const ItemState& listed) const override;
  // A value of that name that is there already stands for the new one.
  std::unique_ptr<EntryTarget> PlanAdd(const std::wstring& name, const std::wstring& command,
                                       bool recorded) override;
  std::unique_ptr<EntryTarget> PlanInsert(EntrySource& source, const ItemState& entry,
                                          bool recorded) override;
  std::unique_ptr<EntryTarget> PlanCommand(EntrySource& source, const std::wstring& command,
                                           bool recorded) override;

 private:
  std::wstring FreeName(const EntryStore& store, const RegistryValueAddress& wanted, bool bothViews) const;
};

}  // namespace smh
