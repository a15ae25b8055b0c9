// What the window says of an entry, and in which look. Pure, for any thread; literals are valid for ever.
#pragma once

#include "hosts/common/item_record.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace smh {

// Whether the entry names a program that is not there.
bool IsFileMissing(const ItemRecord& item) noexcept;
// Whether it may be there, on a share or network drive that did not answer.
bool IsFileUnreachable(const ItemRecord& item) noexcept;
// Whether it is rated risky, or its signature is broken or withdrawn.
bool IsDanger(const ItemRecord& item) noexcept;
// Whether neither its state nor its existence can be changed by this account.
bool IsLocked(const ItemRecord& item) noexcept;

// Which of the system's own switches can be set: Task Manager's, to off or back to on.
bool CanSwitchOff(const ItemRecord& item) noexcept;
bool CanSwitchOn(const ItemRecord& item) noexcept;
// Whether enabling it would do something: it is disabled, or its switch is off.
bool CanEnable(const ItemRecord& item) noexcept;

// "On", "Off, file missing", "On, locked", "On, but switched off in Task Manager", "On, perhaps blocked by a
// policy" where that cannot be told for sure, and "On, start uncertain" where nothing can be told.
std::wstring StatusText(const ItemRecord& item);
// Whether Windows starts it: "Yes", "Yes, in 64-bit programs only", "No", "Cannot be told".
std::wstring StartsAnswerText(const ItemRecord& item);
// All reasons why it does not, or may not, as whole sentences without an end.
std::vector<std::wstring_view> ReasonSentences(const ItemRecord& item);

// Before it was checked an entry is "Risky", which needs no signature, or "Checking...". Then "Verified",
// "Claimed", "Unknown" or "Risky"; "Broken signature" and "Withdrawn signature" are said first.
std::wstring TrustText(const ItemRecord& item);
// What that word rests on, for the details.
std::wstring TrustReason(const ItemRecord& item);
// Sorts what is a danger first, what is verified last.
int TrustRank(const ItemRecord& item) noexcept;
// A FileRating, whose picture stands for the entry: trusted for what is verified alone, risky for a danger.
std::int32_t TrustPicture(const ItemRecord& item) noexcept;
// What is asked before the entry is run; empty when nothing is. `elevated` when it gets the rights of an
// administrator: it must not even claim a name then.
std::wstring RunQuestion(const ItemRecord& item, bool elevated);

// The file's or, without one, the value's name when the entry has no caption.
std::wstring CaptionText(const ItemRecord& item);

// A date in local time as the user writes it; empty for none.
std::wstring LocalTimeText(const std::optional<double>& date);

// A grey entry is one that Windows does not start; a red one is a danger, or starts what is not there.
enum class RowTone { kPlain, kGrey, kRed };
RowTone ToneOfRow(const ItemRecord& item) noexcept;

}  // namespace smh
