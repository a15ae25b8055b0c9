#include "core/contracts/message_box.h"

#include "core/contracts/intf_general.h"
#include "infra/siblings/uInterfacesRoutines.h"

namespace smh {

int ShowMessageBox(const std::wstring& text, UINT flags) {
  return ShowMessageBoxOwned(nullptr, text, flags);
}

int ShowMessageBoxOwned(HWND owner, const std::wstring& text, UINT flags) {
  IGlobals& globals = Sibling<IGlobals>();
  std::wstring caption = TakeText([&](BoundaryText* name) { return globals.GetVendorName(name); });
  caption.append(1, L' ');
  caption.append(TakeText([&](BoundaryText* name) { return globals.GetProductName(name); }));
  return MessageBoxW(owner, text.c_str(), caption.c_str(), flags | MB_TOPMOST | MB_TASKMODAL);
}

}  // namespace smh
