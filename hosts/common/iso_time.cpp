#include "hosts/common/iso_time.h"

#include <oleauto.h>

#include <cstdint>

namespace smh {

namespace {

constexpr std::int64_t kTicksPerMinute = 600'000'000;

std::int64_t MinutesOf(const SYSTEMTIME& time) {
  FILETIME ticks;
  if (SystemTimeToFileTime(&time, &ticks) == FALSE) return 0;
  return (static_cast<std::int64_t>(ticks.dwHighDateTime) << 32 | ticks.dwLowDateTime) / kTicksPerMinute;
}

std::wstring IsoText(const SYSTEMTIME& local, const SYSTEMTIME& universal) {
  const auto offset = static_cast<int>(MinutesOf(local) - MinutesOf(universal));
  const int distance = offset < 0 ? -offset : offset;
  wchar_t text[48];
  wsprintfW(text, L"%04d-%02d-%02dT%02d:%02d:%02d%c%02d:%02d", local.wYear, local.wMonth, local.wDay,
            local.wHour, local.wMinute, local.wSecond, offset < 0 ? L'-' : L'+', distance / 60,
            distance % 60);
  return text;
}

}  // namespace

std::wstring IsoTime(const std::optional<double>& date) {
  SYSTEMTIME local;
  SYSTEMTIME universal;
  if (!date || !VariantTimeToSystemTime(*date, &local)) return {};
  if (TzSpecificLocalTimeToSystemTime(nullptr, &local, &universal) == FALSE) return {};
  return IsoText(local, universal);
}

std::wstring IsoTime(const FILETIME& universal) {
  SYSTEMTIME utc;
  SYSTEMTIME local;
  if (FileTimeToSystemTime(&universal, &utc) == FALSE) return {};
  if (SystemTimeToTzSpecificLocalTime(nullptr, &utc, &local) == FALSE) return {};
  return IsoText(local, utc);
}

std::wstring IsoTimeNow() {
  FILETIME now;
  GetSystemTimeAsFileTime(&now);
  return IsoTime(now);
}

}  // namespace smh
