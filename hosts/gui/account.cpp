#include "hosts/gui/account.h"

#include "core/contracts/intf_general.h"
#include "hosts/common/language.h"
#include "hosts/common/library.h"
#include "infra/runtime/handle.h"
#include "infra/runtime/module_path.h"
#include "infra/runtime/text.h"

#include <shellapi.h>
#include <wtsapi32.h>

namespace smh {

namespace {

// The helper library is loaded by now and stays.
std::wstring ProcessAccount() {
  IHelper& helper = AskService<IHelper>(GetModuleHandleW(IHelper::kLibrary));
  return TakeText([&](BoundaryText* name) { return helper.GetCurrentUserText(name); });
}

bool IsElevated(HANDLE token) noexcept {
  TOKEN_ELEVATION elevation = {};
  DWORD size = 0;
  return GetTokenInformation(token, TokenElevation, &elevation, sizeof(elevation), &size) &&
         elevation.TokenIsElevated != 0;
}

std::wstring SessionText(WTS_INFO_CLASS kind) {
  wchar_t* buffer = nullptr;
  DWORD size = 0;
  if (!WTSQuerySessionInformationW(WTS_CURRENT_SERVER_HANDLE, WTS_CURRENT_SESSION, kind, &buffer, &size))
    return {};
  std::wstring text = buffer == nullptr ? L"" : buffer;
  WTSFreeMemory(buffer);
  return text;
}

std::wstring SessionAccount() {
  const std::wstring user = SessionText(WTSUserName);
  const std::wstring domain = SessionText(WTSDomainName);
  return user.empty() || domain.empty() ? std::wstring() : domain + L"\\" + user;
}

}  // namespace

bool Account::IsForeign() const noexcept {
  // A name may come without its domain.
  const bool bothFull = !FolderPart(name).empty() && !FolderPart(sessionUser).empty();
  const auto compared = [bothFull](const std::wstring& text) {
    return bothFull ? std::wstring_view(text) : FileNamePart(text);
  };
  return !sessionUser.empty() && !name.empty() && !SameText(compared(name), compared(sessionUser));
}

Account CurrentAccount() {
  Account account;
  account.name = ProcessAccount();
  ScopedHandle token;
  if (OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, token.Put())) {
    account.elevated = IsElevated(token.Get());
  }
  account.sessionUser = SessionAccount();
  return account;
}

bool RestartElevated(HWND window) {
  const std::wstring program = ModuleFileName(nullptr);
  const std::wstring arguments = std::wstring(L"--language ") + LanguageName(CurrentLanguage());
  SHELLEXECUTEINFOW info = {};
  info.cbSize = sizeof(info);
  info.fMask = SEE_MASK_NOASYNC;
  info.hwnd = window;
  info.lpVerb = L"runas";
  info.lpFile = program.c_str();
  info.lpParameters = arguments.c_str();
  info.nShow = SW_SHOWNORMAL;
  return ShellExecuteExW(&info) != FALSE;
}

}  // namespace smh
