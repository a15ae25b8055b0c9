#include "siblings/basekit/helper_parts.h"

#include "infra/runtime/exceptions.h"
#include "infra/runtime/text.h"
#include "siblings/basekit/environment.h"

#include <windows.h>
#define SECURITY_WIN32
#include <lmcons.h>
#include <security.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <optional>

namespace smh {

namespace {

constexpr double kTicksPerDay = 864e9;
// From 1 January 1601 to 30 December 1899.
constexpr std::int64_t kDaysToOleEpoch = 109205;

std::optional<std::int32_t> ParseNumber(std::wstring_view text) {
  const std::wstring number = Trim(text.substr(0, text.find_first_of(L";#")));
  const bool negative = number.starts_with(L'-');
  const std::wstring_view digits = std::wstring_view(number).substr(negative ? 1 : 0);
  if (digits.empty()) return std::nullopt;
  std::int64_t value = 0;
  for (const wchar_t digit : digits) {
    if (digit < L'0' || digit > L'9') return std::nullopt;
    value = value * 10 + (digit - L'0');
    if (value > std::numeric_limits<std::int32_t>::max()) return std::nullopt;
  }
  return static_cast<std::int32_t>(negative ? -value : value);
}

}  // namespace

std::wstring CurrentUserText() {
  wchar_t name[UNLEN + DNLEN + 2];
  ULONG length = static_cast<ULONG>(std::size(name));
  if (GetUserNameExW(NameSamCompatible, name, &length) != FALSE) return name;
  DWORD size = static_cast<DWORD>(std::size(name));
  return GetUserNameW(name, &size) != FALSE ? std::wstring(name) : std::wstring();
}

bool IsAdministrator() noexcept {
  alignas(SID) unsigned char administrators[SECURITY_MAX_SID_SIZE];
  DWORD size = sizeof(administrators);
  if (CreateWellKnownSid(WinBuiltinAdministratorsSid, nullptr, administrators, &size) == FALSE) return false;
  BOOL member = FALSE;
  return CheckTokenMembership(nullptr, administrators, &member) != FALSE && member != FALSE;
}

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

IndirectString SplitIndirectString(std::wstring_view text) {
  IndirectString result;
  const std::size_t comma = text.rfind(L',');
  if (comma != std::wstring_view::npos) {
    if (const std::optional<std::int32_t> number = ParseNumber(text.substr(comma + 1))) {
      result.number = *number;
      text = text.substr(0, comma);
    }
  }
  result.file = ExpandEnvironment(DequoteText(Trim(text)));
  return result;
}

}  // namespace smh
