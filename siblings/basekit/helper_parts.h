// What the general helper works out by itself: the account, file times as dates, and the parts of a text that
// names a resource. No state: any thread.
#pragma once

#include <windows.h>

#include <cstdint>
#include <string>
#include <string_view>

namespace smh {

// "DOMAIN\user" of the calling thread, or the user's name alone when the domain is not known; empty when
// neither is. Raises std::bad_alloc.
std::wstring CurrentUserText();
// Whether the calling thread has the rights of the administrators' group now: false for an administrator
// without elevation, and when that cannot be told.
bool IsAdministrator() noexcept;

// A file time as OLE date, which is how Automation counts: days since 30 December 1899, the time of day as
// fraction. Takes UTC and answers local time, with the daylight saving that held at that moment; before the
// first day the sign is the day's alone and the fraction counts forward. Raises EOSError for a time out of
// range.
double OleDateOfFileTime(const FILETIME& time);

// A registry text "file,number": the file and, as the shell counts them, an index or (negative) an identifier
// of a resource in it.
struct IndirectString {
  std::wstring file;
  std::int32_t number = 0;
};

// Splits at the last comma. What follows it must be a number, which a remark after ";" or "#" may follow;
// otherwise the whole text is the file and the number 0. The file is trimmed and freed of enclosing quotes,
// and its environment references are expanded. Raises std::bad_alloc.
IndirectString SplitIndirectString(std::wstring_view text);

}  // namespace smh
