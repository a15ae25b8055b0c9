// Whether Windows would start an entry, and why not, in words. Any thread.
#pragma once

#include "hosts/common/item_record.h"
#include "hosts/common/phrase.h"

#include <string>

namespace smh {

// "enabled", "disabled"; StateName is the same for programs.
const Text& StateText(bool enabled) noexcept;

// For people, beside the state, which tells what is disabled: "yes", "no: switched off in Task Manager",
// "unknown: perhaps forbidden by a policy", "yes, but not for 32-bit programs: blocked", "yes, but not from
// the 64-bit list: switched off in Task Manager".
std::wstring StartsText(const ItemRecord& item);
// Its reasons but "disabled": "switched off in Task Manager, forbidden by a policy"; empty for none.
Phrase ReasonsText(const ItemRecord& item);

// What a mark in front of a RunOnce entry's name means, as a sentence without an end; empty for any other
// entry. A literal.
const wchar_t* NameMarkText(const ItemRecord& item) noexcept;

// Whether the system's own switch keeps the entry from starting. One of two views that is off does not, nor
// a switch in no known form.
bool IsSwitchedOff(const ItemRecord& item) noexcept;
// Whether the switch of one view at least is off.
bool HasSwitchOff(const ItemRecord& item) noexcept;
// Whether a switch of the entry has to be set that all may be off, or all on.
bool NeedsSwitch(const ItemRecord& item, bool off) noexcept;

// Whether its views are two lists of programs to start; else two kinds of programs load it.
bool IsOfTwoLists(const ItemRecord& item) noexcept;

}  // namespace smh
