// The abstract location: a place from which Windows starts programs. The locations own nothing but their
// paths and watches; the entries of all of them live in the module-wide item list.
#pragma once

#include "infra/log/uStatisticsLog.h"
#include "infra/runtime/catch_failure.h"
#include "infra/runtime/module_global.h"
#include "model/change_gate.h"
#include "model/item_list.h"

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace smh {

// Any thread may call every operation but the two of the reader. Changes take the gate and the item-list
// lock, and hold that until they are confirmed, while disk, registry and the backup service are at work:
// others wait for the list meanwhile. ExtractItem, InsertItem and PutBackItem run inside the move's
// checkpoint when `checkpoint`; the other changes open one of their own, unless the settings say otherwise.
class TLocationStartup {
 public:
  virtual ~TLocationStartup() = default;
  TLocationStartup(const TLocationStartup&) = delete;
  TLocationStartup& operator=(const TLocationStartup&) = delete;

  // The row of the location table, valid for ever, and what its family allows.
  const LocationRow& Row() const noexcept { return row_; }
  TTypeStartupLocation LocationType() const noexcept { return row_.location; }
  bool CanEnable() const noexcept { return canEnable_; }
  bool CanModify() const noexcept { return canModify_; }
  bool CanDelete() const noexcept { return canDelete_; }
  std::wstring_view MemberName() const noexcept { return row_.memberName; }

  // The operations of a location. Those that a location does not support fail with an assertion; hosts ask
  // CanDo first. A failed load is logged and swallowed, a failed change is logged and raised again.

  // Whether the item is still present in the location itself; asks disk or registry. False also for one that
  // may not be looked at.
  virtual bool ItemExists(const TStartupItem& item) = 0;
  // Brings the list up to date with the location. Runs on the reader's thread, without a lock but for moments
  // of the list's and the item's; EAbort passes when that is asked to end.
  virtual void ReadItems() = 0;
  // Whether the location changed since the last ReadItems, or a load is due. Polled once a second on the
  // reader's thread; never waits.
  virtual bool IsChanged() = 0;
  // First half of a move: removes the entry from this location and the list, and answers the position it had.
  // What it takes to put the entry back is kept until the next ExtractItem or PutBackItem. Raises, and leaves
  // the entry where it is, when it cannot be removed.
  virtual int ExtractItem(bool checkpoint, const ItemRef& item);
  // Second half: creates the entry in this location, under the nearest free name to `entryName` and listed at
  // the position `extracted`, and confirms it by reading it back; raises, and leaves nothing behind, when it
  // did not arrive.
  virtual void InsertItem(bool checkpoint, int extracted, bool enabled, const std::wstring& command,
                          const std::wstring& entryName);
  // Undoes ExtractItem to the byte and confirms it; raises when the entry did not come back.
  virtual void PutBackItem(bool checkpoint);
  // Whether items may be given another command.
  virtual bool GetCanModify() const { return canModify_; }
  // Whether an item of another location may be moved here; here: when the location can be modified and lists
  // nothing of the same entry name. Takes the item-list lock.
  virtual bool CanAcceptItem(const TStartupItem& item);
  // The position of the new entry. One whose name is taken already is answered by its position (Run keys) or
  // raises EOSError (Startup folders); -1 when the registry does not take it without an error, which is
  // logged.
  virtual int AddItem(const std::wstring& name, const std::wstring& command);
  // Nothing for an item that is not listed any more. They raise when the change fails; a registry that does
  // not take a change without an error leaves a line in the log only, and the item as it was. The command is
  // compared with the item's ignoring case: the same one changes nothing.
  virtual void DeleteItem(const ItemRef& item);
  virtual void EnableItem(const ItemRef& item);
  virtual void DisableItem(const ItemRef& item);
  virtual void MoveItem(const ItemRef& item, TTypeStartupLocation target);
  virtual void ChangeItemCommand(const ItemRef& item, const std::wstring& command);
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
      : row_(row),
        canEnable_(abilities.canEnable),
        canModify_(abilities.canModify),
        canDelete_(abilities.canDelete) {}

  ChangeGate& Gate() noexcept { return gate_; }

  // One load of this location. Items that it finds are marked with its number; at its end those without it
  // are removed.
  struct Load {
    unsigned generation = 0;
    unsigned number = 0;
  };
  // Takes the item-list lock and with it waits until a change under way has finished with the list. None, and
  // the load stays due, when a change is under way still.
  std::optional<Load> BeginLoad();
  // Takes over what the load has found. All take the item-list lock for their look and touch disk and
  // registry without; all answer false, and leave the list alone, when a change of this location began after
  // the load.
  bool AddOrUpdateItem(FoundEntry entry, const Load& load);
  // The two halves of AddOrUpdateItem: for an item that is listed, and for an entry that is not.
  bool UpdateItem(TStartupItem& item, std::wstring_view command, const Load& load);
  bool ListEntry(FoundEntry entry, const Load& load);
  // The end of a load: removes the items of this location that it has not found.
  bool RemoveMissingItems(const Load& load);

 private:
  const LocationRow& row_;
  const bool canEnable_;
  const bool canModify_;
  const bool canDelete_;
  bool IsCurrent(const Load& load) const noexcept;

  ChangeGate gate_;
  // Under the item-list lock.
  unsigned loads_ = 0;
};

// Runs a change; when it fails, logs the exception and the line that `message` makes, and raises it again.
// Quiet aborts (EAbort) pass unlogged.
template <typename Body, typename Message>
auto RunLogged(Body&& body, Message&& message) {
  return CatchFailure(std::forward<Body>(body), [&message]() -> decltype(body()) {
    LogCurrentException();
    LogLine(message());
    throw;
  });
}

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
