// The developer trace: forwarded to tracekit.dll while debug mode is on, swallowed otherwise.
#pragma once

#include "core/contracts/intf_DebugLog.h"
#include "infra/runtime/module_global.h"

#include <initializer_list>

namespace smh {

// The library's log when debug mode is on, else a client that does nothing; borrowed, for any thread. Must
// not be called from DllMain: the first call loads the library. One that cannot be had is named in the
// statistics log, and debug mode is off from then on: nobody is asked, and nothing ends, for want of a trace.
IDebugLog* DebugLog();
// What was decided at the start, or forced since; off while g_debugMode is not started. Any thread.
bool IsDebugMode();
// Switches debug mode and the library's output on, whatever the settings say; not without the library, see
// DebugLog. Raises EAssertionFailed when g_debugMode is not started.
void ForceDebugMode();
// Writes "DebugMode" under HKEY_CURRENT_USER\Software\Quillmark\DebugMode; seen at the next start. Raises
// EOSError.
void SetDebugModeSetting(bool on);
// Whether tracekit.dll lies where siblings are looked for. Asks the disk.
bool CheckDebugLibrary();

// Records a method's entry now and its exit at the end of the scope, on one thread.
class DebugScope {
 public:
  // `context` is shown as a number only; the texts are read before this returns. A line that cannot be
  // written is left out.
  DebugScope(const void* context, const wchar_t* name, std::initializer_list<const wchar_t*> arguments);
  ~DebugScope();
  DebugScope(const DebugScope&) = delete;
  DebugScope& operator=(const DebugScope&) = delete;

 private:
  const void* context_;
};

// Its start takes the debug decision: tracekit.dll is there, and the registry value is 1 or the
// host's first argument is "-debug" in any case. Its stop writes the leak report into the library's log, when
// the mode is on and the log was used.
struct DebugMode;
extern ModuleGlobal<DebugMode> g_debugMode;

}  // namespace smh
