// Times as texts after ISO 8601. Any thread.
#pragma once

#include <windows.h>

#include <optional>
#include <string>

namespace smh {

// "2024-05-31T23:59:59+02:00" for an OLE date in local time, with what this zone was from UTC at that time;
// empty for no date or one that is none.
std::wstring IsoTime(const std::optional<double>& date);
// The same for a time in UTC, and for this moment.
std::wstring IsoTime(const FILETIME& universal);
std::wstring IsoTimeNow();

}  // namespace smh
