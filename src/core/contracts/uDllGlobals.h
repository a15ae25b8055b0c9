// The module-wide cache of the sibling libraries' services, and what the module asks of them everywhere.
//
// Safe from any thread through one lock. A first fetch loads a library while holding it, so that under it
// come the lock of the sibling libraries' list and the loader's, and no other. References handed out are
// borrowed and valid until the module stops.
#pragma once

#include "core/contracts/intf_FileRater.h"
#include "core/contracts/intf_general.h"
#include "core/contracts/intf_safeguard.h"
#include "core/contracts/intf_settings.h"

#include <string>
#include <string_view>

namespace smh {

class DLLGlobals {
 public:
  static IHelper& Helper();
  static IGlobals& Globals();
  static IShellHelper& ShellHelper();
  // Initialised by its first own operation, once, right after it was obtained.
  static IShellDialogsHelper& ShellDialogs();
  static IFileRater& FileRater();
  static ISafeguard& Safeguard();
  static ISettings& Settings();

  static constexpr wchar_t kHostFileName[] = L"startupmanager.exe";
  // Whether changes are recorded inside backup checkpoints. Asked once per operation, never cached.
  static bool UseBackupCheckpoints();
  // Resolves "@file,number" to the string resource; any other text comes back unchanged, a file that cannot
  // be loaded gives the empty text.
  static std::wstring LoadIndirectString(std::wstring_view text);
};

void StartDllGlobals();
// Releases the references under the lock, then the lock.
void StopDllGlobals() noexcept;

}  // namespace smh
