// The one course of every command that changes entries.
//
// All locations are read, every ITEM is found and checked before the first change, and after every change the
// entry is looked up again: a change that did not happen is a failure.
#pragma once

#include "hosts/cli/arguments.h"
#include "hosts/common/item_record.h"
#include "hosts/common/library.h"
#include "hosts/common/refusal.h"

#include <functional>
#include <string>
#include <string_view>

namespace smh {

// What a check says before anything is changed. Refused by one entry, the whole command changes nothing.
struct Verdict {
  enum class Kind { kProceed, kNothingToDo, kRefused };
  Kind kind = Kind::kProceed;
  // Why; for the user.
  std::wstring reason;
};

// How one command changes an entry. The functions are called on the thread of ChangeItems, without the list's
// lock; what they raise ends the command.
struct Change {
  std::wstring_view verb;                  // "disable": behind "Cannot"
  std::wstring_view done;                  // "Disabled"
  std::wstring target;                     // " to ..." behind the entry, or empty
  LibrarySlot slot = LibrarySlot::kOther;  // the one that `apply` calls
  // Whether the entry may and needs to be changed; called for every ITEM before the first change.
  std::function<Verdict(const ItemRecord& item, IStartupItem& listed)> check;
  // The change itself; anything but S_OK ends the command.
  std::function<HRESULT(IStartupItem& listed)> apply;
  // Whether `now` is what `before` has to become; empty when the entry has to be gone. Without this function
  // only the old entry has to be gone.
  std::function<bool(const ItemRecord& before, const ItemRecord& now)> isOutcome;
  // Called first, for functions that ask the library; it lives until the end of ChangeItems.
  std::function<void(const Library& library)> prepare = {};
};

// Runs a change of every ITEM of `arguments`, in their order and each entry once; loads the library and reads
// all locations for it. Raises HostError for the first failure; the entries changed until then stay changed,
// and a message has named each.
void ChangeItems(const Arguments& arguments, const Change& change);

// Makes the change of one entry. Raises HostError, with the reason, unless the library says that it is done.
void ApplyChange(const Change& change, const ItemRecord& item, IStartupItem& listed);

// Looks for the outcome of a change of `before` between two snapshots of the list. Empty when it happened,
// else what is wrong.
std::wstring FindFault(const Change& change, const ItemRecord& before, std::span<const ItemRecord> listBefore,
                       std::span<const ItemRecord> listNow);

// Why an action that the library refuses is refused, as far as the entry shows it.
std::wstring RefusalReason(const ItemRecord& item);

}  // namespace smh
