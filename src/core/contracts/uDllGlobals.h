// The services of the sibling libraries by name, and what the module asks of them everywhere: whether changes
// are recorded, what an indirect string says, and the product's message box.
//
// See Sibling for what all getters share: they may be called from any thread, and what they hand out is
// borrowed and valid until the module stops.
#pragma once

#include "core/contracts/intf_FileRater.h"
#include "core/contracts/intf_general.h"
#include "core/contracts/intf_safeguard.h"
#include "core/contracts/intf_settings.h"
#include "infra/siblings/uInterfacesRoutines.h"

#include <windows.h>

#include <cstdint>
#include <string>
#include <string_view>

namespace smh {

namespace DLLGlobals {

// As Sibling, each of them.
inline IHelper& Helper() {
  return Sibling<IHelper>();
}
inline IGlobals& Globals() {
  return Sibling<IGlobals>();
}
inline IShellHelper& ShellHelper() {
  return Sibling<IShellHelper>();
}
inline IShellDialogsHelper& ShellDialogs() {
  return Sibling<IShellDialogsHelper>();
}
inline IFileRater& FileRater() {
  return Sibling<IFileRater>();
}
inline ISafeguard& Safeguard() {
  return Sibling<ISafeguard>();
}
inline ISettings& Settings() {
  return Sibling<ISettings>();
}

inline constexpr wchar_t kHostFileName[] = L"startupmanager.exe";
// Whether changes are recorded inside backup checkpoints; yes when the settings give no answer. Asked once
// per operation, never cached. From any thread.
bool UseBackupCheckpoints();
// A string resource, of which at most 259 code units are read; a negative number stands for its positive one.
// Empty for a file that cannot be loaded and for one without that string. From any thread; loads the file as
// data, so not from DllMain. Raises std::bad_alloc.
std::wstring LoadStringResource(const std::wstring& file, std::int32_t number);
// The same of "@file,number"; any other text comes back unchanged.
std::wstring LoadIndirectString(std::wstring_view text);

}  // namespace DLLGlobals

// A message box above all windows, captioned with the vendor's and the product's name; `flags` are those of
// MessageBoxW besides. The pressed button, 0 when it cannot be shown. On any thread, which waits meanwhile
// and should hold no lock: the window takes messages of other windows of the thread. Raises std::bad_alloc.
int ShowMessageBox(const std::wstring& text, UINT flags);
// The same before `owner`, which takes no input meanwhile; null is no owner.
int ShowMessageBoxOwned(HWND owner, const std::wstring& text, UINT flags);

}  // namespace smh
