// What can be done with entries: asks the user what a change needs, has the worker do it, and says how it
// went. For the window's thread.
#pragma once

#include "hosts/gui/entry_dialogs.h"
#include "hosts/gui/entry_rows.h"
#include "hosts/gui/view.h"

#include <functional>
#include <string>
#include <vector>

namespace smh {

// Works on copies of entries that the view picked, one at least, and knows nothing of its list. What the
// worker answers comes after a command has returned, questions and dialogs that need to know something among
// it, and is told through the frame. Before entries of this account are changed while somebody else is logged
// on, the user is asked whether they are meant; before several are changed and older changes can no longer be
// undone after that, whether to go on. While something long is at work nothing else is begun, which the frame
// is told.
class EntryCommands {
 public:
  // `frame` outlives the object, which lives as long as the main window: answers refer to it.
  explicit EntryCommands(const Frame& frame) : frame_(frame) {}

  // Makes them start, or moves them to the place for disabled entries.
  void Switch(bool enable, const std::vector<ItemRecord>& items) const;
  // Sets the system's own switch, as Task Manager does.
  void SwitchInSystem(bool off, const std::vector<ItemRecord>& items) const;
  // Asks first, and says what undo will do.
  void Delete(const std::vector<ItemRecord>& items) const;
  // Offers the locations that take all of them.
  void Move(const std::vector<ItemRecord>& items) const;
  // Does nothing unless it is one entry.
  void ChangeCommand(const std::vector<ItemRecord>& items) const;
  // Asks for a new entry, with the first location of `shown` that takes one when those are two at most.
  // `onAdded` is called with its key when it has been added, on the window's thread; the window may not have
  // seen it in the list yet.
  using OnAdded = std::function<void(const EntryKey& added)>;
  void Add(const LocationSet& shown, const OnAdded& onAdded) const;
  // Checks their files and starts their commands. Asks before that starts what is a danger, and somebody who
  // may change the whole machine before it starts what only claims a name.
  void Execute(std::vector<ItemRecord> items) const;
  // Opens the system's tool at their places.
  void ShowPlace(std::vector<ItemRecord> items) const;
  // Opens the property sheet of the first one's file.
  void ShowFile(const std::vector<ItemRecord>& items) const;
  // Writes them to a file that the user names, who is told whether they are the selected ones or all.
  void Export(std::vector<ItemRecord> items, bool isSelection) const;

 private:
  // Whether nothing long is at work; says so if not.
  bool IsFree() const;
  bool MayChange(const std::vector<ItemRecord>& items) const;
  // `end` is told how it went in the place of the main window, for a dialog that waits.
  void Apply(const std::vector<ItemRecord>& items, Verb verb, const ChangeOrder& order = {},
             const TryEnd& end = {}) const;
  void Begin(std::vector<ItemRecord> items, Verb verb, ChangeOrder order, TryEnd end) const;
  void TryToAdd(const NewEntry& entry, const OnAdded& onAdded, const TryEnd& end) const;
  std::function<void(const std::wstring&)> FaultOf(const TryEnd& end) const;
  bool MayBegin(const std::vector<ItemRecord>& items, Verb verb, const UndoForecast& forecast) const;
  void Ask(std::vector<ItemRecord> items, std::size_t next) const;
  void Open(std::vector<ItemRecord> items, ItemAction action) const;
  void MoveToOneOf(const LocationSet& targets, const std::vector<ItemRecord>& items) const;

  const Frame& frame_;
};

}  // namespace smh
