// File times as OLE dates, which is how Automation counts: days since 30 December 1899, the time of day as
// fraction.
#pragma once

#include <windows.h>

namespace smh {

// Takes UTC and answers local time, with the daylight saving that held at that moment; before the first day
// the sign is the day's alone and the fraction counts forward. Raises EOSError for a time out of range.
double OleDateOfFileTime(const FILETIME& time);

}  // namespace smh
