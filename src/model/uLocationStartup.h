// The abstract location: a place from which Windows starts programs. The locations own nothing but their
// paths and watches; the entries of all of them live in the module-wide item list.
#pragma once

#include "infra/siblings/uInterfacesRoutines.h"
#include "infra/log/uStatisticsLog.h"
#include "infra/runtime/catch_failure.h"
#include "infra/runtime/module_global.h"
#include "model/change_gate.h"
#include "model/item_list.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace smh {

class TLocationStartup {
 public:
  virtual ~TLocationStartup() = default;
  TLocationStartup(const TLocationStartup&) = delete;
  TLocationStartup& operator=(const TLocationStartup&) = delete;

  const LocationRow& Row() const noexcept { return row_; }
  TTypeStartupLocation LocationType() const noexcept { return row_.location; }
  bool CanEnable() const noexcept { return canEnable_; }
  bool CanModify() const noexcept { return canModify_; }
  bool CanDelete() const noexcept { return canDelete_; }
  std::wstring_view MemberName() const noexcept { return row_.memberName; }

  // The operations of a location. Those that a location does not support fail with an assertion; hosts ask
  // CanDo first. A failed load is logged and swallowed, a failed change is logged and raised again.

  // Whether the item is still present in the location itself.
  virtual bool ItemExists(const TStartupItem& item) = 0;
  // Brings the list up to date with the location. Runs on the read thread.
  virtual void ReadItems() = 0;
  // Whether the location changed since the last ReadItems. Polled once a second by the read thread.
  virtual bool IsChanged() = 0;
  // First half of a move: removes the entry from this location and the list, and answers the position it had.
  // What it takes to put the entry back is kept until the next ExtractItem or PutBackItem.
  virtual int ExtractItem(bool checkpoint, const ItemRef& item);
  // Second half: creates the entry in this location and confirms it by reading it back; raises, and leaves
  // nothing behind, when it did not arrive. An empty entry name stands for the text given at creation.
  virtual void InsertItem(bool checkpoint, int extracted, bool enabled, const std::wstring& command,
                          const std::wstring& entryName);
  // Undoes ExtractItem to the byte and confirms it; raises when the entry did not come back.
  virtual void PutBackItem(bool checkpoint);
  virtual bool GetCanModify() const { return canModify_; }
  virtual bool CanAcceptItem(const TStartupItem& item);
  // The position of the new entry, or of the one that has the name already.
  virtual int AddItem(const std::wstring& name, const std::wstring& command);
  virtual void DeleteItem(const ItemRef& item);
  virtual void EnableItem(const ItemRef& item);
  virtual void DisableItem(const ItemRef& item);
  virtual void MoveItem(const ItemRef& item, TTypeStartupLocation target);
  virtual void ChangeItemCommand(const ItemRef& item, const std::wstring& command);
  virtual void ShowItemLocation(const TStartupItem& item);

 protected:
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
  // Waits until a change under way has finished with the list. None, and the load stays due, when a change is
  // under way.
  std::optional<Load> BeginLoad();
  // All answer false, and leave the list alone, when a change of this location began after the load.
  bool AddOrUpdateItem(FoundEntry entry, const Load& load);
  // The two halves of AddOrUpdateItem: for an item that is listed, and for an entry that is not.
  bool UpdateItem(TStartupItem& item, std::wstring_view command, const Load& load);
  bool ListEntry(FoundEntry entry, const Load& load);
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

// Runs a change; when it fails, logs the exception and the line that `message` makes, and raises it again.
// Quiet aborts pass unlogged.
template <typename Body, typename Message>
auto RunLogged(Body&& body, Message&& message) {
  return CatchFailure(std::forward<Body>(body), [&message]() -> decltype(body()) {
    LogCurrentException();
    LogLine(message());
    throw;
  });
}

// The maker and the locations, which its stop destroys.
struct ModuleLocations;
extern ModuleGlobal<ModuleLocations> g_locations;

}  // namespace smh
