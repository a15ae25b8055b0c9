// Shell extension handlers: every subkey of a handler list names one by its class. Its file is the class's
// in-process server. Every list is read under both roots.
#pragma once

#include "locations/registry/registry_location.h"

namespace smh {

// The threads and failures of its operations are those of TLocationStartup.
class TLocationRegistryShellHandlers final : public TLocationRegistry {
 public:
  // For a row of the families of handlers and of browser helper objects. Raises EOSError.
  explicit TLocationRegistryShellHandlers(const LocationRow& row) : TLocationRegistry(row) {}

  bool ItemExists(const TStartupItem& item) override;
  // Nothing can be moved here.
  bool CanAcceptItem(const TStartupItem&) override { return false; }

 protected:
  bool ReadKey(RegistryLoad& load, const Place& place) override;
  Switch PlanSwitch(const TStartupItem& item, const RegistryData& source, bool enable) override;
  std::unique_ptr<EntryStore> Store(bool recorded) const override;
  // The last part of a handler's path is the text of its key's default value, no value's name.
  std::wstring ValueToShow(const RegistryValueAddress&) const override { return {}; }

 private:
  // The side key's own name: it lies among the handlers of its own list.
  std::wstring_view SideKeyName() const noexcept;
  bool ReadHandler(RegistryLoad& load, const Place& place, HKEY list, const std::wstring& name);
};

}  // namespace smh
