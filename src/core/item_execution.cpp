#include "core/item_execution.h"

#include "infra/uInterfacesRoutines.h"
#include "infra/uStatisticsLog.h"
#include "model/item_list.h"
#include "sysutil/command_file.h"

#include <shellapi.h>

namespace smh {

namespace {

// ShellExecuteW answers more than this when it worked.
constexpr INT_PTR kLastShellError = 32;

}  // namespace

void ExecuteItem(const TStartupItem& item, HWND window) {
  std::wstring command;
  {
    ScopedLock lock(Items().Lock());
    command = item.Get([](const ItemState& state) { return state.details.Command; });
  }
  const CommandParts parts = ResolveCommand(command);
  const auto result = reinterpret_cast<INT_PTR>(
      ShellExecuteW(window, L"open", parts.path.c_str(), parts.arguments.c_str(), nullptr, SW_SHOWNORMAL));
  if (result > kLastShellError) return;
  const DWORD code = GetLastError();
  const std::wstring error = SystemErrorText(code);
  LogFormat(L"Error execute command for item \"%s\". Command: \"%s\". Error: \"%s\".", item.Name(), command,
            error);
  ShowMessageBoxOwned(window, error, MB_ICONERROR);
  // The shell may fail without a last error; its own codes below 32 are system codes too.
  RaiseOSError(code != ERROR_SUCCESS ? code : static_cast<DWORD>(result));
}

}  // namespace smh
