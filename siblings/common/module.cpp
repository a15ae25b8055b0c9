#include "siblings/common/module.h"

#include <windows.h>

extern "C" BOOL WINAPI DllMain(HINSTANCE, DWORD reason, void* reserved) {
  return smh::RunModuleEntry(reason, reserved, smh::SiblingSteps());
}

// The export.
extern "C" IUnknown* STDMETHODCALLTYPE GetInstance(const wchar_t* id, DWORD /*param*/) {
  return smh::FindService(smh::SiblingServices(), id);
}
