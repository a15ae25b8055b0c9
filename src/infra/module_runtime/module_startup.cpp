// The entry point of every module: the C runtime's, and behind it the end of what the language's runtime
// keeps. That runtime runs its own end from the C runtime's, and keeps something beyond it.
#include "infra/module_runtime/runtime_threads.h"

#include <windows.h>

extern "C" BOOL WINAPI DllMainCRTStartup(HINSTANCE module, DWORD reason, void* reserved);

// libstdc++ has it in no header.
namespace __gnu_cxx {
// Frees the memory for exceptions that are thrown when there is none: none may be thrown from then on.
void __freeres();
}  // namespace __gnu_cxx

extern "C" BOOL WINAPI ModuleStartup(HINSTANCE module, DWORD reason, void* reserved) {
  const BOOL result = DllMainCRTStartup(module, reason, reserved);
  if (reason == DLL_THREAD_DETACH) smh::ReleaseRuntimeThread();
  // At the end of the process nothing is given back: the other threads may have been ended anywhere.
  if ((reason == DLL_PROCESS_DETACH && reserved == nullptr) ||
      (reason == DLL_PROCESS_ATTACH && result == FALSE)) {
    __gnu_cxx::__freeres();
    smh::ReleaseRuntimeThreads();
  }
  return result;
}
