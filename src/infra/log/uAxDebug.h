// The developer trace: forwarded to tracekit.dll while debug mode is on, swallowed otherwise.
#pragma once

#include "core/contracts/intf_DebugLog.h"

#include <initializer_list>

namespace smh {

// The library's log when debug mode is on, else a client that does nothing. Must not be called from DllMain:
// the first call loads the library.
IDebugLog* DebugLog();
bool IsDebugMode();
// Switches debug mode and the library's output on, whatever the settings say; ends the process with a message
// when the library is missing.
void ForceDebugMode();
// Writes "DebugMode" under HKEY_CURRENT_USER\Software\Quillmark\DebugMode; seen at the next start. Raises
// EOSError.
void SetDebugModeSetting(bool on);
// Whether the host's folder holds tracekit.dll.
bool CheckDebugLibrary();

// Records a method's entry now and its exit at the end of the scope.
class DebugScope {
 public:
  DebugScope(const void* context, const wchar_t* name, std::initializer_list<const wchar_t*> arguments);
  ~DebugScope();
  DebugScope(const DebugScope&) = delete;
  DebugScope& operator=(const DebugScope&) = delete;

 private:
  const void* context_;
};

// Start-up takes the debug decision: tracekit.dll lies beside the host, and the registry value is 1 or the
// host's first argument is "-debug" in any case.
void StartDebugLog();
void StopDebugLog() noexcept;

}  // namespace smh
