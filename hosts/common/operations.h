// What hosts do to entries: one table of all changes, and the one course of each of them. A host asks what
// stands in the way, makes the change, and hears what became of it; nothing here prints or asks people.
//
// That the library has said "done" is not enough: the outcome is looked for at the entry's old and new place,
// without reading all locations again. After the last change of a command the host reads everything once more
// and has it compared.
#pragma once

#include "hosts/common/entry_place.h"
#include "hosts/common/item_record.h"
#include "hosts/common/library.h"
#include "hosts/common/phrase.h"
#include "hosts/common/refusal.h"

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace smh::texts {
struct OperationTexts;
}

namespace smh {

// kEnable makes an entry start: it takes the system's own switch back, too. kSwitchOff and kSwitchOn set that
// switch alone, as Task Manager does.
enum class Verb { kEnable, kDisable, kDelete, kAdd, kMove, kChange, kSwitchOff, kSwitchOn };

// What a change needs besides its entry; the rest is empty.
struct ChangeOrder {
  std::int32_t target = sulNone;  // kMove: the location
  std::wstring command{};         // kChange: the new one
  // The state in which the entry has to be behind the change, also where that finds nothing to do. A new
  // entry that cannot be brought into it does not stay.
  std::optional<bool> enabled{};
  // The same for the system's switch of an enabled entry; none leaves it to the verb.
  std::optional<bool> switchedOff{};
};

enum class OutcomeKind {
  kDone,
  kNothingToDo,  // it is so already
  kRefused,      // by the host or the library, before anything was changed
  kFailed,       // it went wrong, or what should stand now does not
};

// What became of one entry, or would become of it.
struct Outcome {
  OutcomeKind kind = OutcomeKind::kDone;
  Phrase text{};                    // why, behind "Cannot disable X: " or "X: "; empty for kDone
  std::optional<ItemRecord> now{};  // the entry as it is now, where it can be told

  bool IsGood() const noexcept { return kind == OutcomeKind::kDone || kind == OutcomeKind::kNothingToDo; }
};

// One change of one entry.
struct EntryChange {
  Verb verb = Verb::kEnable;
  ChangeOrder order{};
  // As it was read; for kAdd location, caption (the name) and command of the new one.
  ItemRecord before{};
  ComPtr<IStartupItem> listed{};  // none for kAdd, and for an entry that has gone
  std::optional<Outcome> outcome{};
};

// A row of the table. Texts are literals.
struct Operation {
  Verb verb;
  std::wstring_view name;  // "disable", for programs
  const texts::OperationTexts& texts;
  std::optional<ItemAction> ability;
  LibrarySlot slot;
  // The three steps of MakeChange. `ask`: what stands in the way, none when nothing does. `apply`: the
  // library's answer; `position` is the entry's in the list, of an addition what the library answers. `see`:
  // the entry as it is now, none for one that has to be gone; raises HostError, whose message is the end of a
  // sentence, when the outcome is not there.
  std::optional<Outcome> (*ask)(const Library& library, const EntryChange& change);
  HRESULT (*apply)(const Library& library, const EntryChange& change, std::int32_t& position);
  std::optional<ItemRecord> (*see)(const Library& library, EntryPlaces& places, const EntryChange& change,
                                   std::int32_t position);
};

// Valid for ever.
const Operation& OperationOf(Verb verb) noexcept;

// What would refuse the change, or have nothing to do; none when it can be made. Changes nothing, and raises
// nothing but std::bad_alloc.
std::optional<Outcome> AskFirst(const Library& library, const EntryChange& change);
// Asks first, makes the change, and looks for what it has to have made; the answer is its outcome, which it
// is given too. Takes the list's lock only to find a moved entry. `places` is for the changes of one command.
// Raises nothing but std::bad_alloc.
const Outcome& MakeChange(const Library& library, EntryPlaces& places, EntryChange& change);
// The journal's title, in English: "Deleting 251 entries", of those that have no outcome yet; "Changing 3
// entries" when the verbs differ. Empty for one change, whose own title tells more, and for none.
std::wstring TitleOf(std::span<const EntryChange> changes);

// "Caption" in sulRegistryUserRun: how messages name an entry to people. Not yet printable.
std::wstring Describe(const ItemRecord& item);

}  // namespace smh
