// Keys that hold one value per class identifier: the name is the class, the data a description, and the file
// is the class's in-process server.
#pragma once

#include "locations/registry/registry_location.h"

namespace smh {

// What tells one such location from another.
struct ShellExtClass {
  const wchar_t* className;
  TTypeStartupLocation type;
  RegistryRoot root;
  const wchar_t* keyPath;
  const wchar_t* disabledKeyPath;
  // Lists values whose data is empty, too.
  bool listsWithoutDescription;
};

class TLocationRegistryShellExt final : public TLocationRegistry {
 public:
  explicit TLocationRegistryShellExt(const ShellExtClass& row);

  bool ItemExists(const TStartupItem& item) override;
  // Nothing can be moved here.
  bool CanAcceptItem(const TStartupItem&) override { return false; }

 protected:
  bool ReadKey(RegistryLoad& load, const Place& place) override;
  Switch PlanSwitch(const TStartupItem& item, const RegistryData& source, bool enable) override;
  std::unique_ptr<EntryStore> Store(bool recorded) const override;

 private:
  const bool listsWithoutDescription_;
};

}  // namespace smh
