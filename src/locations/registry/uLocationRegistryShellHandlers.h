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
  bool ReadEntry(RegistryLoad& load, const Place& place, std::wstring_view subKey,
                 std::wstring_view) override;
  // Never the own or the side key itself: raises EOSError for what would be one of them.
  std::unique_ptr<EntrySource> OpenSource(const ItemState& listed, bool recorded) override;
  SwitchPlace PlaceToSwitch(const RegistrySource& source, bool enable) const override;
  std::shared_ptr<const EntryStore> Store(bool recorded) const override;
  FoundEntry ListAt(const RegistryValueAddress& address, const RegistryData& data) const override;
  std::wstring NameInPlace(const ItemState& listed) const override;
  // The last part of a handler's path is the text of its key's default value, no value's name.
  std::wstring ValueToShow(const RegistryValueAddress&) const override { return {}; }

 private:
  // The side key's own name: it lies among the handlers of its own list.
  std::wstring_view SideKeyName() const noexcept;
  // Raises EOSError for a key that is no handler's.
  void RequireHandler(const std::wstring& key) const;
};

}  // namespace smh
