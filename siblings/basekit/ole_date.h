// File times as OLE dates.
#pragma once

#include <windows.h>

namespace smh {

// Local time, with the daylight saving that held at that moment: days since 30 December 1899; before that day
// the sign is the day's alone and the fraction counts forward. Raises EOSError for a time out of range.
double OleDateOfFileTime(const FILETIME& time);

}  // namespace smh
