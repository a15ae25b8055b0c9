// Shell extension handlers: every subkey of a handler list names one by its class. Its file is the class's
// in-process server. Every list is read under both roots.
#pragma once

#include "locations/registry/registry_location.h"

namespace smh {

// What tells one handler location from another.
struct HandlerClass {
  const wchar_t* className;
  TTypeStartupLocation type;
  const wchar_t* keyPath;
  const wchar_t* disabledKeyPath;
};

class TLocationRegistryShellHandlers final : public TLocationRegistry {
 public:
  explicit TLocationRegistryShellHandlers(const HandlerClass& row);

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
  bool ReadHandler(RegistryLoad& load, const Place& place, HKEY list, const std::wstring& name);
};

}  // namespace smh
