// What the three families of registry locations share: which keys are read in which order and views, the rule
// for entries that both views show, the watch, and where an entry is opened for a change and goes.
//
// A location has its own key, whose entries are enabled, and side keys, whose entries are disabled. The first
// side key is the one that is written to.
#pragma once

#include "locations/registry/kept_entry.h"
#include "locations/registry/key_listing.h"
#include "locations/registry/key_watch.h"
#include "locations/registry/registry_entry.h"
#include "model/uLocationStartup.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace smh {

// The base of the three. The threads and failures of the operations are those of TLocationStartup.
class TLocationRegistry : public TLocationStartup {
 public:
  // See TLocationStartup.
  bool IsChanged() final;
  std::wstring_view OwnSide() const noexcept final { return keys_.side.front(); }
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
    // The same key in the 64-bit view; null for one of that.
    Place* main = nullptr;
    KeyListing listing{};
    // Of values, whose key may not be written.
    bool isProtected = false;
    // Its key could not be opened, though it may be there.
    bool isUnread = false;
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
    // Keys that could not be opened, though they may be there. What they may hold stays listed.
    unsigned unread = 0;
    // In the order of reading.
    std::vector<Place> places{};
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

  // Takes the entry that a value or subkey of the place is, if it is one; `text` is the value's. False when a
  // change has overtaken the load. Raises EOSError. On the reader's thread, without a lock.
  virtual bool ReadEntry(RegistryLoad& load, const Place& place, std::wstring_view name,
                         std::wstring_view text) = 0;
  // Takes one entry over, unless it is the plain view's and the 64-bit one has its name too, or another entry
  // that this load has found has its path. Answers as ReadEntry.
  bool TakeEntry(RegistryLoad& load, const Place& place, const SeenEntry& seen);
  // Counts a key that could not be opened for this error as unread, which makes the load incomplete, unless
  // it is gone or denied; whether it counts.
  bool CountUnread(RegistryLoad& load, DWORD error) noexcept;
  // The server of a class in the place's view; empty without one, and for one that is counted as unread.
  std::wstring ServerOf(const std::wstring& identifier, RegistryLoad& load, const Place& place);

  // Changes, as TLocationStartup asks for them.
  std::unique_ptr<EntrySource> OpenSource(const ItemState& listed, bool recorded) override;
  std::unique_ptr<EntryTarget> PlanSwitch(EntrySource& source, bool enable, bool recorded) final;

  // What stands at `to` when an entry has been switched, where nothing else may be. Raises what forbids it.
  struct SwitchPlace {
    RegistryValueAddress to;
    RegistryData data;
    // What stands there by now.
    KeptEntry before;
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
  void LoadItems(Look look) final;
  // None of them is read yet.
  std::vector<Place> Places() const;
  // A missing key is an empty place.
  void ListPlace(RegistryLoad& load, Place& place);
  // An entry's text as it stands now, empty for a subkey; none when it has gone.
  std::optional<std::wstring> TextNow(const Place& place, std::wstring_view name) const;
  // The next five answer as ReadEntry.
  bool TakePlaces(RegistryLoad& load);
  bool TakePlace(RegistryLoad& load, Place& place);
  // Reads one entry by its name, as it stands now, or as it has gone.
  bool AskFor(RegistryLoad& load, const Place& place, std::wstring_view name);
  // One that nobody can tell whether it stands there still stays.
  bool LookFor(RegistryLoad& load, TStartupItem& item);
  bool LookIn(RegistryLoad& load, const Place& place, TStartupItem& item, std::wstring_view name);
  // The plain view's entry that was listed because the 64-bit one was not there then.
  bool DropPlain(RegistryLoad& load, const RegistryValueAddress& main);
  // Whether something may have come to the 64-bit view since it was listed.
  bool HasMainChanged(const Place& place) const;
  // The item of the 64-bit view that an entry of the plain one is listed with; null for one of its own.
  ItemRef ShownByMainView(RegistryLoad& load, const Place& place, const SeenEntry& seen) const;
  void MarkTwin(TStartupItem& main, unsigned load, const SeenEntry& seen) const;
  bool EntriesAreKeys() const noexcept { return FamilyOf(Row()).entriesAreKeys; }

  bool HaveClassesChanged();

  const Keys keys_;
  KeyWatch watch_;
  // Of the reader's thread. Whether the last load has asked for the servers of classes; what ClassChanges has
  // answered, and from when on, by GetTickCount64, it counts again.
  bool asksForClasses_ = false;
  std::uint64_t classesSeen_ = 0;
  ULONGLONG classesAgain_ = 0;
};

}  // namespace smh
