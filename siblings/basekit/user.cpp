#include "siblings/basekit/user.h"

#include <windows.h>
#define SECURITY_WIN32
#include <lmcons.h>
#include <security.h>

namespace smh {

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

}  // namespace smh
