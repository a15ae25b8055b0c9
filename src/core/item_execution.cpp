#include "core/item_execution.h"

#include "core/contracts/uDllGlobals.h"
#include "infra/log/uStatisticsLog.h"
#include "model/item_list.h"
#include "sysutil/command_line.h"

namespace smh {

void ExecuteItem(const TStartupItem& item, HWND window) {
  SharedText command;
  {
    ScopedLock lock(Items().Lock());
    command = item.Get([](const ItemState& state) { return state.details.Command; });
  }
  const CommandParts parts = ResolveCommand(command.c_str());
  const DWORD code = OpenWithShell(window, parts.path, parts.arguments);
  if (code == ERROR_SUCCESS) return;
  const std::wstring error = SystemErrorText(code);
  LogFormat(L"Error execute command for item \"%s\". Command: \"%s\". Error: \"%s\".", item.Name(), command,
            error);
  ShowMessageBoxOwned(window, error, MB_ICONERROR);
  RaiseOSError(code);
}

}  // namespace smh
