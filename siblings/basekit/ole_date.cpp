#include "siblings/basekit/ole_date.h"

#include "infra/runtime/exceptions.h"

#include <cmath>
#include <cstdint>

namespace smh {

namespace {

constexpr double kTicksPerDay = 864e9;
// From 1 January 1601 to 30 December 1899.
constexpr std::int64_t kDaysToOleEpoch = 109205;

}  // namespace

double OleDateOfFileTime(const FILETIME& time) {
  SYSTEMTIME universal;
  SYSTEMTIME local;
  FILETIME localTime;
  if (FileTimeToSystemTime(&time, &universal) == FALSE) RaiseLastOSError();
  if (SystemTimeToTzSpecificLocalTime(nullptr, &universal, &local) == FALSE) RaiseLastOSError();
  if (SystemTimeToFileTime(&local, &localTime) == FALSE) RaiseLastOSError();
  const std::int64_t ticks =
      static_cast<std::int64_t>(localTime.dwHighDateTime) << 32 | localTime.dwLowDateTime;
  const double days = static_cast<double>(ticks) / kTicksPerDay - static_cast<double>(kDaysToOleEpoch);
  const double day = std::floor(days);
  return day < 0 ? day - (days - day) : days;
}

}  // namespace smh
