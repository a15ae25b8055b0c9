// The abstract location: a place from which Windows starts programs. The locations own nothing but their
// paths and watches; the entries of all of them live in the module-wide item list.
#pragma once

#include "infra/runtime/module_global.h"
#include "model/location_change.h"
#include "model/location_loading.h"

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace smh {

// Any thread may call every operation but the three of the reader. A change waits for others (change_lock.h),
// counts itself in at the gate, reads the entry anew, and does its work on disk, registry and journal without
// the list's lock or an item's; the list shows the outcome when it returns. It is recorded in a checkpoint of
// its own unless the settings say otherwise. A thread that holds the item-list lock gives it up for the
// length of a change's wait for others.
class TLocationStartup : public LocationLoading {
 public:
  virtual ~TLocationStartup() = default;

  // What its family allows.
  bool CanEnable() const noexcept { return canEnable_; }
  bool CanModify() const noexcept { return canModify_; }
  bool CanDelete() const noexcept { return canDelete_; }

  // The operations of a location. Those that a location does not support fail with an assertion; hosts ask
  // CanDo first. A failed load is logged and swallowed, a failed change is logged and raised again.

  // Whether the item is still present in the location itself; asks disk or registry. False also for one that
  // may not be looked at.
  virtual bool ItemExists(const TStartupItem& item) = 0;
  // Brings the list up to date with the location. Runs on the reader's thread, without a lock but for moments
  // of the list's and the item's; EAbort passes when that is asked to end.
  void ReadItems(Look look = Look::kForChanges);
  // Whether the location changed since the last ReadItems, or a load is due. Polled once a second on the
  // reader's thread; never waits.
  virtual bool IsChanged() = 0;
  // Asked once a poll: whether a load that failed, or was incomplete, is to be tried again, first at the next
  // one, then each time after twice as many.
  bool IsRetryDue() noexcept;
  // Whether items may be given another command.
  bool GetCanModify() const noexcept { return canModify_; }
  // Whether an item of another location, listed or not, may be moved here; here: when the location can be
  // modified and lists nothing of the same entry name. Takes the item-list lock.
  virtual bool CanAcceptItem(const TStartupItem& item);
  // Adds an entry and answers its position. One whose name is taken already is answered by its position (Run
  // keys) or raises EOSError (Startup folders).
  ChangeAnswer AddItem(const std::wstring& name, const std::wstring& command);
  // Changes of a listed item; one that is not listed any more, or another location's, is left alone. The
  // entry is what stands there now. DeleteItem, MoveItem and ChangeItemCommand raise EChangeRefused when that
  // is not what the list shows, which they bring up to date: the user has agreed to something else. The
  // command is compared with the entry's ignoring case: the same one changes nothing; an empty one is
  // EChangeRefused.
  ChangeAnswer DeleteItem(const ItemRef& item);
  ChangeAnswer EnableItem(const ItemRef& item) { return SwitchItem(item, true); }
  ChangeAnswer DisableItem(const ItemRef& item) { return SwitchItem(item, false); }
  ChangeAnswer MoveItem(const ItemRef& item, TTypeStartupLocation target);
  // Puts the system's own switch of an item off or on; see SwitchSteps.
  ChangeAnswer SetItemSwitchedOff(const ItemRef& item, bool off);
  ChangeAnswer ChangeItemCommand(const ItemRef& item, const std::wstring& command);
  // The side key or folder that this system keeps disabled entries in, without a trailing backslash; empty
  // without one. Constant, valid as long as the location.
  virtual std::wstring_view OwnSide() const noexcept { return {}; }
  // Shows the entry where it lies, in another program; without a lock. Nothing by default.
  virtual void ShowItemLocation(const TStartupItem& item);

 protected:
  // What the location allows all of its items.
  struct Abilities {
    bool canEnable = true;
    bool canModify = true;
    bool canDelete = true;
  };
  // `row` lives as long as the module.
  TLocationStartup(const LocationRow& row, Abilities abilities) noexcept
      : LocationLoading(row),
        canEnable_(abilities.canEnable),
        canModify_(abilities.canModify),
        canDelete_(abilities.canDelete) {}

  // What ReadItems does, of the family; what it raises is logged.
  virtual void LoadItems(Look look) = 0;

  // The steps of a change, of the family. They run on the thread of the change, as entry_steps.h says, in its
  // checkpoint when it is recorded. Each plan reads everything anew and writes nothing: what forbids the
  // change raises there, EChangeRefused where it is for people.

  // The entry of a listed item as it stands now; null when it does not. The first step of every change.
  virtual std::unique_ptr<EntrySource> OpenSource(const ItemState& listed, bool recorded) = 0;
  // Where an entry of this location goes when it is switched, and what is written there.
  virtual std::unique_ptr<EntryTarget> PlanSwitch(EntrySource& source, bool enable, bool recorded) = 0;
  // The next three are for locations that can be modified. A new, enabled entry:
  virtual std::unique_ptr<EntryTarget> PlanAdd(const std::wstring& name, const std::wstring& command,
                                               bool recorded);
  // the place of an entry of another location, under the nearest free name, where `entry` is what an item of
  // it shows now:
  virtual std::unique_ptr<EntryTarget> PlanInsert(EntrySource& source, const ItemState& entry, bool recorded);
  // and another command in the place of an entry.
  virtual std::unique_ptr<EntryTarget> PlanCommand(EntrySource& source, const std::wstring& command,
                                                   bool recorded);
  // What an assertion of a move names.
  virtual const wchar_t* Unit() const noexcept;
  // The name of an entry that has no text of its own, for titles.
  virtual std::wstring NameInPlace(const ItemState& listed) const = 0;

 private:
  // What a change does between the first reading and the last line of the log.
  using ChangeWork =
      std::function<ChangeAnswer(EntrySource& source, const ItemState& listed, ChangeCheckpoint& checkpoint)>;
  // Logs what failed.
  using ErrorLine = std::function<void(const std::wstring& itemName)>;

  // The course that every change of an item takes.
  ChangeAnswer RunChange(ChangeKind kind, const ItemRef& item, const ErrorLine& line, const ChangeWork& work);
  ChangeAnswer ChangeEntry(ChangeKind kind, const ItemRef& item, const ItemState& listed,
                           const ChangeWork& work);
  ChangeAnswer SwitchItem(const ItemRef& item, bool enable);
  ChangeAnswer MoveEntry(const ItemRef& item, TLocationStartup& destination, EntrySource& source,
                         const ItemState& listed, ChangeCheckpoint& checkpoint);
  ChangeAnswer AddEntry(const std::wstring& name, const std::wstring& command);
  // CarryEntry with the switches of what comes and goes; a target comes to `to`. After a failure a load is
  // due.
  bool Carry(EntryTarget* target, const TLocationStartup& to, EntrySource* source,
             ChangeCheckpoint& checkpoint);
  bool CarryWith(EntryTarget* target, EntrySource* source, SwitchSteps* switches,
                 ChangeCheckpoint& checkpoint);
  void RequireAsListed(const ItemRef& item, const ItemState& listed, const EntrySource& source);
  std::wstring TitleOf(const ItemState& listed) const;

  // These enter the outcome of a change in the list. The change is done: what fails here is logged, and a
  // load is due.
  template <typename Enter>
  void EnterOutcome(Enter&& enter) noexcept;
  void EnterRemoval(TStartupItem& item) noexcept;
  // `isOther`: the entry starts something else than the list has shown.
  void EnterSwitch(const ItemRef& item, const EntryTarget& target, bool isOther) noexcept;
  void EnterCommand(const ItemRef& item, const FoundEntry& now) noexcept;
  // Answers its position, that of the item it replaces if there is one.
  int EnterNew(const FoundEntry& entry, TStartupItem* replaced) noexcept;

  const bool canEnable_;
  const bool canModify_;
  const bool canDelete_;
  // Of the reader's thread: failures in a row.
  unsigned failedLoads_ = 0;
  unsigned pollsToRetry_ = 0;
};

// Makes the location of a row; never null. Raises what its making raises.
using LocationMaker = std::unique_ptr<TLocationStartup> (*)(const LocationRow& row);

// How locations are made: their classes lie above this layer. For module start-up, before any call below.
void SetLocationMaker(LocationMaker maker);

// Every location of the table, in the order of the list; made together on first use, under the location-list
// lock. Any thread may ask; the locations live until the module stops. Raises what the maker raises, and then
// the next call tries again.
const std::vector<std::unique_ptr<TLocationStartup>>& Locations();
// The location of that type; null for a value that names none. As above.
TLocationStartup* FindLocation(TTypeStartupLocation type);

// The maker and the locations, which its stop destroys.
struct ModuleLocations;
extern ModuleGlobal<ModuleLocations> g_locations;

}  // namespace smh
