// The Run-key locations: every value of a Run key is an entry, its name the entry's name, its data the
// command line. Disabled entries live in side keys; the first is this system's own and the only one it
// writes, the others hold what other tools have disabled, listed as disabled and enabled the same way.
#pragma once

#include "locations/registry/registry_location.h"

#include <optional>

namespace smh {

// The threads and failures of its operations are those of TLocationStartup.
class TLocationRegistryStd final : public TLocationRegistry {
 public:
  // For a row of the Run-key family. Raises EOSError.
  explicit TLocationRegistryStd(const LocationRow& row) : TLocationRegistry(row) {}

  bool ItemExists(const TStartupItem& item) override;
  int ExtractItem(bool checkpoint, const ItemRef& item) override;
  void InsertItem(bool checkpoint, int extracted, bool enabled, const std::wstring& command,
                  const std::wstring& entryName) override;
  void PutBackItem(bool checkpoint) override;
  // Refuses an entry whose file is missing, too, unless it comes from a Run or RunOnce key.
  bool CanAcceptItem(const TStartupItem& item) override;
  // A value of that name that is there already stays as it is and is listed.
  int AddItem(const std::wstring& name, const std::wstring& command) override;
  void ChangeItemCommand(const ItemRef& item, const std::wstring& command) override;

 protected:
  bool ReadKey(RegistryLoad& load, const Place& place) override;
  Switch PlanSwitch(const TStartupItem& item, const RegistryData& source, bool enable) override;
  std::unique_ptr<EntryStore> Store(bool recorded) const override;

 private:
  // What an extracted entry was.
  struct Extracted {
    ItemRef item;
    int position;
    RegistryValueAddress address;
    KeptEntry kept;
  };

  ItemRef MakeItem(FoundEntry entry) const;
  int AddValue(const std::wstring& name, const std::wstring& command);
  void RewriteValue(const ItemRef& item, const std::wstring& command);

  std::optional<Extracted> extracted_;
};

}  // namespace smh
