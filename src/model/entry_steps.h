// The two halves of a change, as a family of locations makes them: where an entry comes from, and where it
// goes.
//
// Both are for the thread of the change, which has the change lock and, for recorded changes, a checkpoint,
// but neither the list's lock nor an item's: disk, registry and journal are at work here. What they were made
// from is the first reading of the entry; nothing that the list says is trusted.
#pragma once

#include "model/last_look.h"
#include "model/uStartupItem.h"

#include <cstddef>
#include <functional>

namespace smh {

// Called before a place of a target is written, with its number from 0: what is written from here on is a
// copy of the source's place of that number.
using CopyMark = std::function<void(std::size_t place)>;

// An entry that stands somewhere. Holds what the first reading found.
class EntrySource {
 public:
  virtual ~EntrySource() = default;
  EntrySource(const EntrySource&) = delete;
  EntrySource& operator=(const EntrySource&) = delete;

  // The entry as a load would list it now.
  virtual FoundEntry Found() const = 0;
  // What an item of it shows as its command: of a shortcut in a folder location what that starts.
  virtual SharedText ShownCommand() const = 0;
  // Whether it stands in the 32-bit view of the registry too, and goes along there.
  virtual bool HasTwin() const noexcept { return false; }
  // The command that another kind of location would hold. Raises, and says why, when the entry is something
  // else or more than a command.
  virtual std::wstring Command() const = 0;
  // Tells the backup service that the thread writes copies of one of its places from here on, of the last one
  // for a number beyond them; what has gone is not told.
  virtual void MarkCopies(std::size_t place) const = 0;
  // Takes the entry away, when it still is what was read first and `arrived` says that its target stands, and
  // looks again. False when it is still there without an error. Raises EChangeRefused when it is something
  // else by now or its target has gone, and what the taking away raises.
  virtual bool ExtractItem(const LastLook& arrived) = 0;
  // Makes of what was read first what is missing; whether it stands there whole then, or what others have put
  // in its place, which stays.
  virtual bool PutBack() noexcept = 0;

 protected:
  EntrySource() = default;
};

// A place that an entry gets, or the new content of its old one.
class EntryTarget {
 public:
  virtual ~EntryTarget() = default;
  EntryTarget(const EntryTarget&) = delete;
  EntryTarget& operator=(const EntryTarget&) = delete;

  // Whether the place holds this very entry already, and nothing will be written there.
  virtual bool StandsAlready() const noexcept { return false; }
  // Writes the entry and reads it back. False when it did not arrive without an error; then, as after what it
  // raises, TakeBack is due.
  virtual bool InsertItem(const CopyMark& mark) = 0;
  // Whether what was written still stands; the source goes only then. May raise.
  virtual bool Stands() const = 0;
  // Removes what was written, when it is still that; whether the place is as it was.
  virtual bool TakeBack() noexcept = 0;
  // The entry as a load lists it after InsertItem.
  virtual FoundEntry Found() const = 0;
  // As of a source.
  virtual bool HasTwin() const noexcept { return false; }
  // Whether InsertItem takes the source along: there is nothing left to remove then.
  virtual bool CarriesSource() const noexcept { return false; }

 protected:
  EntryTarget() = default;
};

}  // namespace smh
