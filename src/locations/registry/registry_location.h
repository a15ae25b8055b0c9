// What the three families of registry locations share: which keys are read in which order and views, the rule
// for entries that both views show, the watch, and where an entry is opened for a change and goes.
//
// A location has its own key, whose entries are enabled, and side keys, whose entries are disabled. The first
// side key is the one that is written to.
#pragma once

#include "locations/registry/key_watch.h"
#include "locations/registry/registry_entry.h"
#include "model/uLocationStartup.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace smh {

// The base of the three. The threads and failures of the operations are those of TLocationStartup.
class TLocationRegistry : public TLocationStartup {
 public:
  // See TLocationStartup.
  void ReadItems() final;
  bool IsChanged() final;
  // In the registry editor; see RegEditUtils.
  void ShowItemLocation(const TStartupItem& item) final;

 protected:
  // Below each root: the location's own key, and its side keys in the order of reading.
  struct Keys {
    std::vector<HKEY> roots;
    std::wstring own;
    std::vector<std::wstring> side;
  };
  // One key in one view while it is read.
  struct Place {
    HKEY root;
    const std::wstring& path;
    REGSAM view;
    bool isOwn;
  };
  // An entry as it is met in its key. Views of what the reading holds: of entries that are listed nothing is
  // copied.
  struct SeenEntry {
    std::wstring_view key;
    std::wstring_view valueName;
    // Stands for the last part of the entry's path.
    std::wstring_view shownName;
    std::wstring_view caption;
    std::wstring_view command;
    bool isProtected = false;
  };
  struct RegistryLoad : Load {
    // Listed items because of which an entry was passed over. When one of them is pruned, that entry's turn
    // has come.
    std::vector<ItemRef> skipCauses{};
    // The path of the entry at hand, in its view and in the other one.
    std::wstring path{};
    std::wstring otherPath{};
    // That of the entry taken last, for the next ones of its key.
    SharedText key{};
  };

  // Reads root, key and side keys from the row. Arms the change watch; raises EOSError when its event cannot
  // be made.
  explicit TLocationRegistry(const LocationRow& row);

  // The view new entries are made in: the 64-bit one on a 64-bit Windows.
  static REGSAM OwnView();
  HKEY FirstRoot() const noexcept { return keys_.roots.front(); }
  const std::wstring& KeyPath(bool enabled) const noexcept {
    return enabled ? keys_.own : keys_.side.front();
  }

  // Takes every entry of a key; false when a change has overtaken the load. A missing key has none; raises
  // EOSError for one that cannot be read to its end. On the reader's thread, without a lock.
  virtual bool ReadKey(RegistryLoad& load, const Place& place) = 0;
  // Takes one entry over, unless it is the plain view's and the 64-bit one has its name too, or another entry
  // has its path. Answers as ReadKey.
  bool TakeEntry(RegistryLoad& load, const Place& place, const SeenEntry& seen);

  // Changes, as TLocationStartup asks for them.
  std::unique_ptr<EntrySource> OpenSource(const ItemState& listed, bool recorded) override;
  std::unique_ptr<EntryTarget> PlanSwitch(EntrySource& source, bool enable, bool recorded) final;

  // What stands at `to` when an entry has been switched, where nothing else may be. Raises what forbids it.
  struct SwitchPlace {
    RegistryValueAddress to;
    RegistryData data;
  };
  virtual SwitchPlace PlaceToSwitch(const RegistrySource& source, bool enable) const = 0;
  // What reads and writes the entries of this location; `recorded`: through the backup service.
  virtual std::shared_ptr<const EntryStore> Store(bool recorded) const = 0;
  // How ReadKey lists what it finds at an address. Reads what else it takes. Raises EOSError.
  virtual FoundEntry ListAt(const RegistryValueAddress& address, const RegistryData& data) const = 0;
  // Whether another entry than that at `address` is listed under the full path.
  bool IsListedElsewhere(std::wstring_view path, const RegistryValueAddress& address) const;
  // The value that stands for the entry in its key; the key's default value for an empty name.
  virtual std::wstring ValueToShow(const RegistryValueAddress& address) const { return address.valueName; }

 private:
  // What tells that a key has got or lost something. Zeros for one that may not be read.
  struct KeyStamp {
    DWORD subKeys = 0;
    DWORD values = 0;
    // As FILETIME counts.
    std::uint64_t written = 0;
    bool operator==(const KeyStamp&) const = default;
  };

  void LoadItems();
  // In the order of reading.
  std::vector<Place> Places() const;
  bool ReadPlaces(RegistryLoad& load);
  // One for each place.
  std::vector<KeyStamp> Stamps() const;
  bool IsShownByMainView(RegistryLoad& load, const Place& place, const SeenEntry& seen);
  bool Prune(const RegistryLoad& load, bool& again);

  const Keys keys_;
  KeyWatch watch_;
};

}  // namespace smh
